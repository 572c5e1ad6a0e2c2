#include "SceneFacts.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

namespace VX
{

void SceneFacts::add(const Object& object)
{
    visitObjects(object,
                 [this](const Object& each)
                 {
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&each); mesh && mesh->mesh())
                     {
                         ++objects;
                         triangles += mesh->mesh()->triangles.size();
                         vertices += mesh->mesh()->points.size();
                     }
                     else if (const auto* cloud = dynamic_cast<const ObjectPoints*>(&each);
                              cloud && cloud->pointCloud())
                     {
                         ++objects;
                         points += cloud->pointCloud()->points.size();
                     }
                     else if (const auto* lines = dynamic_cast<const ObjectLines*>(&each); lines && lines->lines())
                     {
                         ++objects;
                         segments += lines->lines()->segments.size();
                     }
                 });
    box.extend(object.worldBox());
}

std::string countText(std::uint64_t count)
{
    std::string text = std::to_string(count);
    for (int i = static_cast<int>(text.size()) - 3; i > 0; i -= 3)
        text.insert(static_cast<std::size_t>(i), ",");
    return text;
}

std::string lengthText(double length)
{
    return fmt::format("{:.6g}", length);
}

} // namespace VX
