#include "render/SceneDrawing.h"

#include <algorithm>

namespace VX
{

namespace
{

bool isMesh(const Object& object)
{
    return dynamic_cast<const ObjectMesh*>(&object) != nullptr;
}

/// Whether lines are the edges of a part: they hang below its mesh or lie beside it.
bool areEdges(const ObjectLines& lines)
{
    const Object* parent = lines.parent();
    if (parent == nullptr)
        return false;
    return isMesh(*parent) || std::any_of(parent->children().begin(), parent->children().end(),
                                          [](const auto& child) { return isMesh(*child); });
}

} // namespace

SceneContents::SceneContents(const SceneFrame& frame, GpuScene& gpu, const Box3d& sceneBox)
    : box(sceneBox)
{
    if (frame.root == nullptr)
        return;
    const auto add = [&](const VisibleObject& visible)
    {
        const Object& object = visible.object;
        if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object); mesh != nullptr && mesh->mesh())
        {
            meshes.push_back({mesh, &gpu.meshes.get(mesh->mesh()), visible.world, visible.selected});
        }
        else if (const auto* cloud = dynamic_cast<const ObjectPoints*>(&object);
                 cloud != nullptr && cloud->pointCloud())
        {
            points.push_back({cloud, &gpu.points.get(cloud->pointCloud()), visible.world, visible.selected});
            pointCount += cloud->pointCloud()->points.size();
        }
        else if (const auto* segments = dynamic_cast<const ObjectLines*>(&object);
                 segments != nullptr && segments->lines())
        {
            if (frame.options.featureEdges || !areEdges(*segments))
                lines.push_back({segments, &gpu.lines.get(segments->lines()), visible.world, visible.selected});
        }
    };
    visitVisible(*frame.root, frame.options.viewport, add);
}

} // namespace VX
