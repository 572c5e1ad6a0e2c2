#include "render/SceneDrawing.h"

namespace VX
{

SceneContents::SceneContents(const SceneFrame& frame, GpuScene& gpu, const Box3d& sceneBox)
    : box(sceneBox)
{
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
            if (frame.options.featureEdges || !isEdgeOfPart(*segments))
                lines.push_back({segments, &gpu.lines.get(segments->lines()), visible.world, visible.selected});
        }
    };
    for (const Object* root : {frame.root, frame.preview})
    {
        if (root != nullptr)
            visitVisible(*root, frame.options.viewport, add);
    }
}

} // namespace VX
