#include "SceneSnapshot.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

namespace VX
{

namespace
{

std::shared_ptr<Object> copyGeometry(const Object& object)
{
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
    {
        auto copy = std::make_shared<ObjectMesh>(mesh->mesh());
        copy->setFlatShaded(mesh->isFlatShaded());
        return copy;
    }
    if (const auto* points = dynamic_cast<const ObjectPoints*>(&object))
        return std::make_shared<ObjectPoints>(points->pointCloud());
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object))
        return std::make_shared<ObjectLines>(lines->lines());
    return std::make_shared<Object>();
}

} // namespace

std::shared_ptr<Object> copyTree(const Object& object)
{
    std::shared_ptr<Object> copy = copyGeometry(object);
    copy->setName(object.name());
    copy->setTransform(object.transform());
    copy->setVisibilityMask(object.visibilityMask());
    const auto* visual = dynamic_cast<const VisualObject*>(&object);
    auto* visualCopy = dynamic_cast<VisualObject*>(copy.get());
    if (visual && visualCopy)
        visualCopy->setColor(visual->color());
    for (const std::shared_ptr<Object>& child : object.children())
        copy->addChild(copyTree(*child));
    return copy;
}

} // namespace VX
