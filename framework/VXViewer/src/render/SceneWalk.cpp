#include "render/SceneWalk.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

namespace VX
{

namespace
{

void walk(const VisibleObject& visible, ViewportMask viewport, const std::function<void(const VisibleObject&)>& visit)
{
    if ((visible.object.visibilityMask() & viewport).isEmpty())
        return;
    visit(visible);
    for (const auto& child : visible.object.children())
        walk({*child, visible.world * child->transform(), visible.selected || child->isSelected()}, viewport, visit);
}

} // namespace

const std::vector<Vector3f>* pointsOf(const Object& object)
{
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object); mesh != nullptr && mesh->mesh())
        return &mesh->mesh()->points;
    if (const auto* points = dynamic_cast<const ObjectPoints*>(&object); points != nullptr && points->pointCloud())
        return &points->pointCloud()->points;
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object); lines != nullptr && lines->lines())
        return &lines->lines()->points;
    return nullptr;
}

void visitVisible(const Object& root, ViewportMask viewport, const std::function<void(const VisibleObject&)>& visit)
{
    walk({root, root.worldTransform(), root.isSelected()}, viewport, visit);
}

bool isEdgeOfPart(const ObjectLines& lines)
{
    return dynamic_cast<const ObjectMesh*>(lines.parent()) != nullptr;
}

Box3d ownWorldBox(const VisibleObject& visible)
{
    // Objects keep the boxes of their geometry; only one with children has to be asked for its own alone.
    if (visible.object.children().empty())
        return visible.object.worldBox();
    const std::vector<Vector3f>* points = pointsOf(visible.object);
    if (points == nullptr)
        return {};
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, points->size(), 1 << 14), Box3d(),
        [&](const tbb::blocked_range<std::size_t>& range, Box3d box)
        {
            for (std::size_t i = range.begin(); i != range.end(); ++i)
                box.extend(visible.world * (*points)[i].cast<double>());
            return box;
        },
        [](const Box3d& a, const Box3d& b) { return a.merged(b); });
}

} // namespace VX
