#include "formats/SaveItems.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

namespace VX
{

namespace
{

template <typename Geometry>
void add(std::vector<SaveItem<Geometry>>& items, const VisualObject& object, const Geometry* geometry,
         const Transform& toScene)
{
    if (!geometry || geometry->points.empty())
        return;
    SaveItem<Geometry> item;
    item.geometry = geometry;
    item.name = object.name();
    item.toScene = toScene;
    item.color = object.color();
    item.mirrored = toScene.linear().determinant() < 0.0;
    if (!items.empty())
        item.firstPoint = items.back().firstPoint + items.back().geometry->points.size();
    items.push_back(std::move(item));
}

void collect(const Object& object, const Transform& parentToScene, SaveItems& items)
{
    if (!object.isVisible())
        return;
    const Transform toScene = parentToScene * object.transform();
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
        add(items.meshes, *mesh, mesh->mesh().get(), toScene);
    else if (const auto* points = dynamic_cast<const ObjectPoints*>(&object))
        add(items.clouds, *points, points->pointCloud().get(), toScene);
    else if (const auto* lines = dynamic_cast<const ObjectLines*>(&object))
        add(items.lines, *lines, lines->lines().get(), toScene);
    for (const auto& child : object.children())
        collect(*child, toScene, items);
}

} // namespace

SaveItems collectSaveItems(const Object& root)
{
    SaveItems items;
    collect(root, root.parent() ? root.parent()->worldTransform() : Transform::Identity(), items);
    return items;
}

std::vector<PointsPart> pointsParts(const SaveItems& items)
{
    std::vector<PointsPart> parts;
    parts.reserve(items.meshes.size() + items.clouds.size());
    for (const MeshItem& item : items.meshes)
        parts.push_back(
            {item.geometry->points, item.geometry->normals, item.geometry->vertexColors, item.toScene, item.color});
    for (const PointsItem& item : items.clouds)
        parts.push_back(
            {item.geometry->points, item.geometry->normals, item.geometry->colors, item.toScene, item.color});
    return parts;
}

Eigen::Matrix3d normalMatrix(const Transform& toScene)
{
    // The cofactors are the inverse transposed times the determinant, and exist for every matrix.
    const Eigen::Matrix3d m = toScene.linear();
    Eigen::Matrix3d cofactors;
    cofactors << m.col(1).cross(m.col(2)), m.col(2).cross(m.col(0)), m.col(0).cross(m.col(1));
    return m.determinant() < 0.0 ? Eigen::Matrix3d(-cofactors) : cofactors;
}

Vector3f sceneNormal(const Eigen::Matrix3d& normalMatrix, const Vector3f& normal)
{
    const Vector3d result = normalMatrix * normal.cast<double>();
    const double length = result.norm();
    return length > 0.0 ? Vector3f((result / length).cast<float>()) : Vector3f(0.0F, 0.0F, 1.0F);
}

} // namespace VX
