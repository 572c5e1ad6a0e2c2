#pragma once

#include "render/PickTree.h"

#include <VXMesh/Object.h>
#include <VXViewer/ScenePicker.h>

#include <atomic>
#include <map>
#include <vector>

namespace VX
{

/// The visible objects at the moment of a pick, as values that a worker may read.
struct PickScene
{
    struct Item
    {
        std::weak_ptr<Object> object;
        Transform world;
        std::shared_ptr<const Mesh> mesh; ///< one of these three
        std::shared_ptr<const PointCloud> points;
        std::shared_ptr<const Lines> lines;
    };

    std::vector<Item> items;
    Camera camera;
    PixelSize size;
    Vector2d pixel;
    float scale = 1;

    /// @threads the UI thread
    explicit PickScene(const ScenePicker::Request& request);
};

/// The search trees of the meshes that were picked, as long as the meshes live.
/// @threads any, one at a time
class PickTrees
{
public:
    PickTrees();
    ~PickTrees();
    PickTrees(const PickTrees&) = delete;
    PickTrees& operator=(const PickTrees&) = delete;

    /// The nearest hit, building the trees that are missing.
    /// @param stop  ends the building when it becomes true
    [[nodiscard]] std::optional<PickResult> pick(const PickScene& scene, std::atomic<bool>& stop);

private:
    struct Entry
    {
        std::weak_ptr<const Mesh> mesh;
        std::unique_ptr<PickTree> tree;
    };

    [[nodiscard]] const PickTree& treeOf_(const std::shared_ptr<const Mesh>& mesh, std::atomic<bool>& stop);

    RTCDevice device_;
    std::map<const Mesh*, Entry> trees_;
};

} // namespace VX
