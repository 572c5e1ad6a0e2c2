#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>
#include <VXViewer/SceneJson.h>

#include <fmt/format.h>

namespace VX
{

namespace
{

struct GeometryCount
{
    std::size_t points = 0;
    std::size_t triangles = 0;
};

GeometryCount countGeometry(const Object& object)
{
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object); mesh && mesh->mesh())
        return {mesh->mesh()->points.size(), mesh->mesh()->triangles.size()};
    if (const auto* points = dynamic_cast<const ObjectPoints*>(&object); points && points->pointCloud())
        return {points->pointCloud()->points.size(), 0};
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object); lines && lines->lines())
        return {lines->lines()->points.size(), 0};
    return {};
}

} // namespace

Json::Value toJson(const Vector3d& vector)
{
    Json::Value array(Json::arrayValue);
    for (const double coordinate : vector)
        array.append(coordinate);
    return array;
}

Json::Value toJson(const Box3d& box)
{
    if (box.isEmpty())
        return {};
    Json::Value value;
    value["min"] = toJson(Vector3d(box.min()));
    value["max"] = toJson(Vector3d(box.max()));
    return value;
}

Json::Value toJson(const Transform& transform)
{
    Json::Value array(Json::arrayValue);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            array.append(transform.matrix()(row, column));
    return array;
}

std::string colorText(Color color)
{
    return fmt::format("#{:02x}{:02x}{:02x}", color.r, color.g, color.b);
}

Json::Value objectJson(const Object& object)
{
    const auto count = countGeometry(object);
    Json::Value value;
    value["id"] = Json::UInt64(object.id());
    value["name"] = object.name();
    value["type"] = std::string(object.typeName());
    value["points"] = Json::UInt64(count.points);
    value["triangles"] = Json::UInt64(count.triangles);
    value["box"] = toJson(object.worldBox());
    value["transform"] = toJson(object.transform());
    value["visible"] = object.isVisible();
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
        value["color"] = colorText(visual->color());
    return value;
}

} // namespace VX
