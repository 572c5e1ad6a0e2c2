#include "StepConversion.h"

#include "SceneBuilder.h"
#include "SolidGeometry.h"
#include "StepExcerpt.h"
#include "StepReader.h"
#include "StepScanner.h"
#include "StepStructure.h"
#include "StepStyles.h"
#include "StepTessellation.h"
#include "TessellatedGeometry.h"

#include <VXMesh/MappedFile.h>
#include <VXMesh/ObjectFile.h>

#include <tbb/parallel_for.h>

#include <algorithm>
#include <set>
#include <unordered_map>

namespace VX
{

namespace
{

/// Measures from one call to the next.
class StageClock
{
public:
    explicit StageClock(StageTimes* times)
        : times_(times)
    {
    }

    void finish(const char* stage)
    {
        const auto now = std::chrono::steady_clock::now();
        if (times_)
            times_->emplace_back(stage, now - begin_);
        begin_ = now;
    }

private:
    StageTimes* times_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// The exact geometry of a file: each solid once, however many parts use it.
class SolidReader
{
public:
    SolidReader(const StepFile& file, const StepStructure& structure, const StepStyles& styles)
        : file_(file)
        , styles_(styles)
    {
        for (const StepNode& node : structure.nodes)
            for (const StepItem& item : node.solids)
                if (indices_.emplace(item.item, items_.size()).second)
                    items_.push_back(item);
        solids_.resize(items_.size());
    }

    tl::expected<void, std::string> read(StageClock& clock)
    {
        const StepExcerpt excerpt = makeStepExcerpt(file_, items_);
        clock.finish("reduce");
        if (excerpt.text.empty())
            return {};
        if (auto done = reader_.read(excerpt); !done)
            return done;
        clock.finish("read");
        for (std::size_t k = 0; k < items_.size(); ++k)
            translate_(excerpt, k);
        clock.finish("translate");
        healStepSolids(solids_);
        clock.finish("heal");
        return {};
    }

    void tessellate(const StepStructure& structure)
    {
        std::vector<TessellationTask> tasks;
        std::set<const StepSolid*> taken;
        for (const StepNode& node : structure.nodes)
        {
            const std::vector<const StepSolid*> solids = solidsOf(node.solids);
            const double diagonal = diagonalOf(solids);
            for (const StepItem& item : node.solids)
                if (StepSolid& solid = solids_[indices_.at(item.item)]; taken.insert(&solid).second)
                    tasks.push_back({&solid, diagonal});
        }
        tessellateStepSolids(tasks);
    }

    [[nodiscard]] std::vector<const StepSolid*> solidsOf(const std::vector<StepItem>& items) const
    {
        std::vector<const StepSolid*> solids;
        solids.reserve(items.size());
        for (const StepItem& item : items)
            solids.push_back(&solids_[indices_.at(item.item)]);
        return solids;
    }

private:
    void translate_(const StepExcerpt& excerpt, std::size_t index)
    {
        const StepItem& item = items_[index];
        StepSolid& solid = solids_[index];
        solid.shape = reader_.translate(excerpt.items[index]);
        solid.color = styles_.colorOf(item.item, item.representation);
        for (const auto& [face, color] : styles_.faceColorsOf(item.item))
            if (const auto number = excerpt.numbers.find(face); color != solid.color && number != excerpt.numbers.end())
                if (TopoDS_Shape shape = reader_.find(number->second); !shape.IsNull())
                    solid.faceColors.emplace_back(std::move(shape), color);
    }

    const StepFile& file_;
    const StepStyles& styles_;
    StepReader reader_;
    std::vector<StepItem> items_;
    std::unordered_map<StepIndex, std::size_t> indices_; ///< of an item in `items_` and `solids_`
    std::vector<StepSolid> solids_;
};

/// Splits a node's items into bodies: each its own where the file tells them apart by name, else all in one.
std::vector<std::vector<StepItem>> splitBodies(const StepFile& file, const std::vector<StepItem>& items)
{
    std::set<std::string> names;
    for (const StepItem& item : items)
        names.insert(usableStepName(stepString(file.record(item.item)[0])));
    names.erase("");
    if (names.size() < 2)
        return {items};
    std::vector<std::vector<StepItem>> bodies;
    bodies.reserve(items.size());
    for (const StepItem& item : items)
        bodies.push_back({item});
    return bodies;
}

/// Makes the bodies of a node, with `makeGeometry` for the items of each.
template <typename MakeGeometry>
std::vector<NodeBody> makeBodies(const StepFile& file, const StepStyles& styles, const std::vector<StepItem>& items,
                                 MakeGeometry makeGeometry)
{
    std::vector<NodeBody> bodies;
    if (items.empty())
        return bodies;
    for (const std::vector<StepItem>& bodyItems : splitBodies(file, items))
        if (std::optional<BodyGeometry> geometry = makeGeometry(bodyItems))
        {
            const bool isHidden =
                std::ranges::all_of(bodyItems, [&](const StepItem& item) { return styles.isHidden(item.item); });
            std::string name = usableStepName(stepString(file.record(bodyItems.front().item)[0]));
            bodies.push_back({std::move(name), bodyItems, std::move(*geometry), isHidden});
        }
    return bodies;
}

/// The bodies of each node. Where a part has exact geometry, its tessellated geometry is a coarser copy.
std::vector<std::vector<NodeBody>> makeAllBodies(const StepFile& file, const StepStructure& structure,
                                                 const StepStyles& styles, const SolidReader& solids)
{
    std::vector<std::vector<NodeBody>> bodies(structure.nodes.size());
    tbb::parallel_for(std::size_t{0}, bodies.size(),
                      [&](std::size_t k)
                      {
                          const StepNode& node = structure.nodes[k];
                          bodies[k] = makeBodies(file, styles, node.solids, [&](const std::vector<StepItem>& items)
                                                 { return makeSolidGeometry(solids.solidsOf(items)); });
                          if (bodies[k].empty())
                              bodies[k] =
                                  makeBodies(file, styles, node.tessellated, [&](const std::vector<StepItem>& items)
                                             { return readTessellatedBody(file, styles, items); });
                      });
    return bodies;
}

} // namespace

tl::expected<std::shared_ptr<Object>, std::string> readStepFile(const std::filesystem::path& path, StageTimes* times)
{
    StageClock clock(times);
    const tl::expected<MappedFile, std::string> mapped = MappedFile::open(path);
    if (!mapped)
        return tl::unexpected(mapped.error());
    const tl::expected<StepFile, std::string> file = scanStepFile(mapped->text());
    if (!file)
        return tl::unexpected(file.error());
    clock.finish("scan");

    const StepStructure structure = readStepStructure(*file);
    const StepStyles styles(*file);
    clock.finish("structure");
    SolidReader solids(*file, structure, styles);
    if (auto done = solids.read(clock); !done)
        return tl::unexpected(done.error());
    solids.tessellate(structure);
    clock.finish("mesh");
    const std::vector<std::vector<NodeBody>> bodies = makeAllBodies(*file, structure, styles, solids);
    clock.finish("bodies");
    tl::expected<std::shared_ptr<Object>, std::string> scene = buildScene(structure, styles, bodies);
    clock.finish("scene");
    if (scene && (*scene)->children().empty())
        return tl::unexpected<std::string>("The STEP file holds no shape that can be shown.");
    return scene;
}

tl::expected<void, std::string> convertStepFile(const std::filesystem::path& input, const std::filesystem::path& output,
                                                StageTimes* times)
{
    const tl::expected<std::shared_ptr<Object>, std::string> scene = readStepFile(input, times);
    if (!scene)
        return tl::unexpected(scene.error());
    const auto format = std::ranges::find_if(fileFormats(), [](const FileFormat& candidate)
                                             { return candidate.save && candidate.extensions.front() == ".vxu"; });
    if (format == fileFormats().end())
        return tl::unexpected<std::string>("This program cannot write scene files.");
    StageClock clock(times);
    auto saved = format->save(**scene, output, {}, AtomicFile::Existing::Replace);
    clock.finish("save");
    return saved;
}

} // namespace VX
