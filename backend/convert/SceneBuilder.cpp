#include "SceneBuilder.h"

#include "FaceColors.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>

#include <algorithm>
#include <unordered_map>

namespace VX
{

namespace
{

constexpr std::size_t maxDepth = 256;
constexpr std::size_t maxObjects = 1'000'000;
constexpr Color edgeColor{38, 40, 44, 255};

class SceneBuilder
{
public:
    SceneBuilder(const StepStructure& structure, const StepStyles& styles,
                 const std::vector<std::vector<NodeBody>>& bodies)
        : structure_(structure)
        , styles_(styles)
        , bodies_(bodies)
    {
        for (const StepInstanceColor& color : styles.instanceColors())
            instanceColors_[color.usages.back()].push_back(&color);
    }

    tl::expected<std::shared_ptr<Object>, std::string> build()
    {
        auto scene = std::make_shared<Object>();
        for (const std::size_t root : structure_.roots)
        {
            StepChild use;
            use.node = root;
            add_(*scene, use, std::nullopt);
        }
        if (isTooDeep_)
            return tl::unexpected<std::string>("The STEP file's assemblies are nested too deeply.");
        if (objectCount_ > maxObjects)
            return tl::unexpected<std::string>("The STEP file has more than a million parts.");
        return scene;
    }

private:
    /// Adds an instance of a node below `parent`.
    /// @param above  the colour that an instance further up gives to everything below it
    void add_(Object& parent, const StepChild& use, std::optional<Color> above)
    {
        isTooDeep_ = isTooDeep_ || path_.size() > maxDepth;
        if (isTooDeep_ || objectCount_ > maxObjects)
            return;
        path_.push_back(use.usage);
        if (const std::optional<Color> own = styles_.colorOf(use.usage); own && !above)
            above = own;

        const StepNode& node = structure_.nodes[use.node];
        const std::vector<NodeBody>& bodies = bodies_[use.node];
        const std::string& name = use.name.empty() ? node.name : use.name;
        if (node.children.empty() && bodies.size() == 1)
            addBody_(parent, bodies.front(), name, use.transform, above);
        else if (bodies.empty() && node.children.size() == 1 && !node.children.front().isProduct)
        {
            // How the file places the node's own geometry.
            StepChild only = node.children.front();
            only.name = name;
            only.transform = use.transform * only.transform;
            add_(parent, only, above);
        }
        else if (!node.children.empty() || !bodies.empty())
            addGroup_(parent, use, name, above);
        path_.pop_back();
    }

    void addGroup_(Object& parent, const StepChild& use, const std::string& name, std::optional<Color> above)
    {
        const auto group = std::make_shared<Object>();
        group->setName(name.empty() ? "Assembly" : name);
        group->setTransform(use.transform);
        ++objectCount_;
        for (const NodeBody& body : bodies_[use.node])
            addBody_(*group, body, body.name.empty() ? name : body.name, Transform::Identity(), above);
        for (const StepChild& child : structure_.nodes[use.node].children)
            add_(*group, child, above);
        if (!group->children().empty())
            parent.addChild(group);
    }

    void addBody_(Object& parent, const NodeBody& body, const std::string& name, const Transform& transform,
                  std::optional<Color> above)
    {
        const BodyGeometry& geometry = body.geometry;
        const std::optional<Color> instanceColor = above ? above : instanceColor_(body);
        const auto part = std::make_shared<ObjectMesh>(instanceColor ? withoutColors_(geometry.mesh) : geometry.mesh);
        part->setName(name.empty() ? "Part" : name);
        part->setTransform(transform * Eigen::Translation3d(geometry.offset));
        part->setColor(instanceColor ? *instanceColor : geometry.color.value_or(defaultBodyColor()));
        if (geometry.edges)
        {
            const auto edges = std::make_shared<ObjectLines>(geometry.edges);
            edges->setName("Edges");
            edges->setColor(edgeColor);
            part->addChild(edges);
        }
        part->setVisible(!body.isHidden);
        parent.addChild(part);
        ++objectCount_;
    }

    /// The colour that the file gives to this instance of the body.
    [[nodiscard]] std::optional<Color> instanceColor_(const NodeBody& body) const
    {
        std::optional<Color> color;
        for (const StepIndex usage : path_)
            if (const auto found = instanceColors_.find(usage); found != instanceColors_.end())
                for (const StepInstanceColor* candidate : found->second)
                    if (appliesTo_(*candidate, body))
                        color = candidate->color;
        return color;
    }

    [[nodiscard]] bool appliesTo_(const StepInstanceColor& color, const NodeBody& body) const
    {
        return std::ranges::all_of(color.usages,
                                   [&](StepIndex usage) { return std::ranges::find(path_, usage) != path_.end(); }) &&
               std::ranges::any_of(body.items, [&](const StepItem& item)
                                   { return item.item == color.item || item.representation == color.item; });
    }

    /// The same mesh for instances whose own colour replaces those of the faces.
    std::shared_ptr<const Mesh> withoutColors_(const std::shared_ptr<const Mesh>& mesh)
    {
        if (mesh->faceColors.empty())
            return mesh;
        std::shared_ptr<const Mesh>& plain = plainMeshes_[mesh.get()];
        if (!plain)
        {
            const auto copy = std::make_shared<Mesh>(*mesh);
            copy->faceColors.clear();
            plain = copy;
        }
        return plain;
    }

    const StepStructure& structure_;
    const StepStyles& styles_;
    const std::vector<std::vector<NodeBody>>& bodies_;
    std::unordered_map<StepIndex, std::vector<const StepInstanceColor*>> instanceColors_; ///< by their last usage
    std::unordered_map<const Mesh*, std::shared_ptr<const Mesh>> plainMeshes_;
    std::vector<StepIndex> path_; ///< usages from the root to the instance being added
    std::size_t objectCount_ = 0;
    bool isTooDeep_ = false;
};

} // namespace

tl::expected<std::shared_ptr<Object>, std::string> buildScene(const StepStructure& structure, const StepStyles& styles,
                                                              const std::vector<std::vector<NodeBody>>& bodies)
{
    return SceneBuilder(structure, styles, bodies).build();
}

} // namespace VX
