#include "StepStructure.h"

#include "StepPlacement.h"
#include "StepRelations.h"
#include "StepUnits.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace VX
{

namespace
{

enum class ItemKind
{
    Other,
    Solid,
    Tessellated,
    Mapped
};

/// Sets of loose geometry hold construction aids for the most part; only bounded surfaces can be drawn.
bool holdsBoundedSurface(const StepFile& file, StepIndex set)
{
    return std::ranges::any_of(file.references(file.record(set)[1]),
                               [&](StepIndex element)
                               {
                                   return file.is(element, "CURVE_BOUNDED_SURFACE"_step) ||
                                          file.is(element, "RECTANGULAR_TRIMMED_SURFACE"_step);
                               });
}

ItemKind itemKind(const StepFile& file, StepIndex item)
{
    switch (file.type(item))
    {
    case "MANIFOLD_SOLID_BREP"_step:
    case "BREP_WITH_VOIDS"_step:
    case "FACETED_BREP"_step:
    case "SHELL_BASED_SURFACE_MODEL"_step:
    case "FACE_BASED_SURFACE_MODEL"_step:
    case "ADVANCED_FACE"_step:
    case "FACE_SURFACE"_step:
        return ItemKind::Solid;
    case "GEOMETRIC_SET"_step:
        return holdsBoundedSurface(file, item) ? ItemKind::Solid : ItemKind::Other;
    case "TESSELLATED_SOLID"_step:
    case "TESSELLATED_SHELL"_step:
    case "TRIANGULATED_FACE"_step:
    case "COMPLEX_TRIANGULATED_FACE"_step:
        return ItemKind::Tessellated;
    case "MAPPED_ITEM"_step:
        return ItemKind::Mapped;
    case complexStepType:
        return file.is(item, "MANIFOLD_SOLID_BREP"_step) ? ItemKind::Solid : ItemKind::Other;
    default:
        return ItemKind::Other;
    }
}

/// Builds the nodes one after the other, each when another one first needs it.
class StructureReader
{
public:
    explicit StructureReader(const StepFile& file)
        : file_(file)
        , relations_(file)
    {
        for (const StepUsage& usage : relations_.usages())
            usages_[usage.assembly].push_back(usage);
    }

    StepStructure read()
    {
        std::vector<std::size_t> candidates;
        std::unordered_set<StepIndex> components;
        for (const StepUsage& usage : relations_.usages())
            components.insert(usage.component);
        for (const bool isComponent : {false, true})
            for (const StepIndex product : relations_.products())
                if (components.contains(product) == isComponent)
                    candidates.push_back(nodeOf_(product));
        fillNodes_();
        chooseRoots_(candidates);
        if (structure_.roots.empty())
            readLooseRepresentations_();
        return std::move(structure_);
    }

private:
    /// The node of a product definition or a representation.
    std::size_t nodeOf_(StepIndex key)
    {
        const auto [found, isNew] = nodes_.emplace(key, structure_.nodes.size());
        if (isNew)
        {
            structure_.nodes.emplace_back();
            unfilled_.emplace_back(key, found->second);
        }
        return found->second;
    }

    void fillNodes_()
    {
        while (!unfilled_.empty())
        {
            const auto [key, index] = unfilled_.back();
            unfilled_.pop_back();
            StepNode node;
            fillNode_(key, node);
            structure_.nodes[index] = std::move(node);
        }
    }

    void fillNode_(StepIndex key, StepNode& node)
    {
        const std::optional<StepRepresentation> shape = isProduct_(key) ? std::nullopt : relations_.representation(key);
        node.name = usableStepName(shape ? shape->name : relations_.productName(key));

        std::vector<StepUsage> unplaced;
        std::unordered_set<StepIndex> components;
        for (const StepUsage& usage : usages_[key])
        {
            components.insert(usage.component);
            if (const std::optional<Transform> transform = relations_.placedBy(usage))
                addUsage_(node, usage, *transform);
            else
                unplaced.push_back(usage);
        }
        const std::vector<StepIndex> start = shape ? std::vector{key} : relations_.representationsOf(key);
        readRepresentations_(key, start, node, [&](StepIndex item, StepIndex parent)
                             { addMapped_(node, item, parent, components, unplaced); });
        for (const StepUsage& usage : unplaced)
            addUsage_(node, usage, Transform::Identity());
    }

    [[nodiscard]] bool isProduct_(StepIndex key) const
    {
        return file_.type(key) == "PRODUCT_DEFINITION"_step ||
               file_.type(key) == "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS"_step;
    }

    void addUsage_(StepNode& node, const StepUsage& usage, const Transform& transform)
    {
        node.children.push_back({nodeOf_(usage.component), usage.usage, true,
                                 usableStepName(stepString(file_.record(usage.usage)[1])), transform});
    }

    /// Gathers the items of the representations and of those that hold more of the same.
    template <typename AddMapped>
    void readRepresentations_(StepIndex key, const std::vector<StepIndex>& start, StepNode& node, AddMapped addMapped)
    {
        std::vector<StepIndex> open = start;
        std::unordered_set<StepIndex> reached(start.begin(), start.end());
        std::unordered_set<StepIndex> items;
        for (std::size_t k = 0; k < open.size(); ++k)
        {
            const std::optional<StepRepresentation> shape = relations_.representation(open[k]);
            if (!shape)
                continue;
            gathered_.insert(open[k]);
            for (const StepIndex item : file_.references(shape->items))
                if (items.insert(item).second)
                    addItem_(node, {item, open[k], shape->context}, [&] { addMapped(item, shape->context); });
            for (const StepNeighbour& neighbour : relations_.neighboursOf(open[k]))
            {
                const StepIndex owner = relations_.ownerOf(neighbour.representation);
                const bool isElsewhere = owner != noStepInstance && owner != key;
                if (isElsewhere || !reached.insert(neighbour.representation).second)
                    continue;
                if (!neighbour.isPlaced)
                    open.push_back(neighbour.representation);
                else if (neighbour.toNeighboured.matrix().allFinite())
                    node.children.push_back(
                        {nodeOf_(neighbour.representation), noStepInstance, false, {}, neighbour.toNeighboured});
            }
        }
    }

    template <typename AddMapped>
    void addItem_(StepNode& node, const StepItem& item, AddMapped addMapped)
    {
        switch (itemKind(file_, item.item))
        {
        case ItemKind::Solid:
            node.solids.push_back(item);
            break;
        case ItemKind::Tessellated:
            node.tessellated.push_back(item);
            break;
        case ItemKind::Mapped:
            addMapped();
            break;
        case ItemKind::Other:
            break;
        }
    }

    void addMapped_(StepNode& node, StepIndex item, StepIndex parentContext,
                    const std::unordered_set<StepIndex>& components, std::vector<StepUsage>& unplaced)
    {
        const StepRecord mapped = file_.record(item);
        const StepRecord map =
            file_.record(file_.reference(mapped[1]), "REPRESENTATION_MAP"_step).value_or(StepRecord());
        const StepIndex representation = file_.reference(map[1]);
        const std::optional<StepRepresentation> shape = relations_.representation(representation);
        if (!shape)
            return;
        const auto source = stepPlacement(file_, file_.reference(map[0]), stepLengthUnit(file_, shape->context));
        const auto target = stepPlacement(file_, file_.reference(mapped[2]), stepLengthUnit(file_, parentContext));
        Transform transform = Transform::Identity();
        if (source && target)
            transform = *target * source->inverse();
        if (!transform.matrix().allFinite())
            return;

        const StepIndex owner = relations_.ownerOf(representation);
        if (!components.contains(owner))
        {
            const bool isProduct = owner != noStepInstance;
            const std::size_t child = nodeOf_(isProduct ? owner : representation);
            node.children.push_back({child, item, isProduct, usableStepName(stepString(mapped[0])), transform});
            return;
        }
        // The mapped item is how this file places a usage of its product.
        const auto usage = std::ranges::find(unplaced, owner, &StepUsage::component);
        if (usage == unplaced.end())
            return;
        addUsage_(node, *usage, transform);
        unplaced.erase(usage);
    }

    /// Makes the first candidates roots that no other reaches, breaks circles and drops what holds no geometry.
    void chooseRoots_(const std::vector<std::size_t>& candidates)
    {
        states_.resize(structure_.nodes.size(), State::Unseen);
        for (const std::size_t candidate : candidates)
            if (states_[candidate] == State::Unseen)
            {
                visitFrom_(candidate);
                if (states_[candidate] == State::Full)
                    structure_.roots.push_back(candidate);
            }
        // A node below one root that was visited as another before stays a root no longer.
        std::unordered_set<std::size_t> below;
        for (const StepNode& node : structure_.nodes)
            for (const StepChild& child : node.children)
                below.insert(child.node);
        std::erase_if(structure_.roots, [&](std::size_t root) { return below.contains(root); });
    }

    /// Visits everything below `start` depth first, without recursion: files may nest deeply.
    void visitFrom_(std::size_t start)
    {
        struct Visit
        {
            std::size_t node;
            std::size_t next;
        };

        std::vector<Visit> path{{start, 0}};
        states_[start] = State::Open;
        while (!path.empty())
        {
            const std::size_t node = path.back().node;
            std::vector<StepChild>& children = structure_.nodes[node].children;
            if (path.back().next < children.size())
            {
                StepChild& child = children[path.back().next++];
                if (states_[child.node] == State::Unseen)
                {
                    states_[child.node] = State::Open;
                    path.push_back({child.node, 0});
                }
                else if (states_[child.node] == State::Open)
                    child.node = circle;
                continue;
            }
            std::erase_if(children, [&](const StepChild& child)
                          { return child.node == circle || states_[child.node] != State::Full; });
            const StepNode& done = structure_.nodes[node];
            const bool isFull = !done.solids.empty() || !done.tessellated.empty() || !children.empty();
            states_[node] = isFull ? State::Full : State::Empty;
            path.pop_back();
        }
    }

    void readLooseRepresentations_()
    {
        std::vector<std::size_t> candidates;
        for (StepIndex index = 0; index < file_.size(); ++index)
            if (isLooseRepresentation_(index) && !gathered_.contains(index))
            {
                candidates.push_back(nodeOf_(index));
                fillNodes_();
            }
        chooseRoots_(candidates);
    }

    /// By name: representations have many types, and complex instances have the name among their parts.
    [[nodiscard]] bool isLooseRepresentation_(StepIndex index) const
    {
        const StepInstance& instance = file_[index];
        if (instance.type == complexStepType)
            return file_.is(index, "SHAPE_REPRESENTATION"_step) && !file_.is(index, "DRAUGHTING_MODEL"_step);
        const StepToken keyword = StepTokenizer(instance.text).next();
        return keyword.text.ends_with("SHAPE_REPRESENTATION") && !keyword.text.starts_with("CONTEXT_DEPENDENT_");
    }

    enum class State
    {
        Unseen,
        Open,
        Empty,
        Full
    };
    static constexpr std::size_t circle = ~std::size_t{0};

    const StepFile& file_;
    StepRelations relations_;
    std::unordered_map<StepIndex, std::vector<StepUsage>> usages_;
    std::unordered_map<StepIndex, std::size_t> nodes_;
    std::vector<std::pair<StepIndex, std::size_t>> unfilled_;
    std::unordered_set<StepIndex> gathered_; ///< representations whose items some node has
    std::vector<State> states_;
    StepStructure structure_;
};

} // namespace

std::string usableStepName(const std::string& name)
{
    static constexpr std::array standIns{"NONE", "none", "None", "UNNAMED"};
    const bool isStandIn = std::ranges::find(standIns, name) != standIns.end() || name.starts_with("=>[");
    return isStandIn ? std::string() : name;
}

StepStructure readStepStructure(const StepFile& file)
{
    return StructureReader(file).read();
}

} // namespace VX
