#include "SceneFacts.h"

#include "Translate.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

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

NumberSigns numberSigns()
{
    // The translation is this number as the language writes it; what stands between thousands may be several bytes.
    const std::string number = tr("1,234.5");
    const std::size_t group = number.find("234");
    if (group == std::string::npos || group < 1 || number.size() != group + 5)
        return {};
    return {number.substr(1, group - 1), number[group + 3]};
}

std::string countText(std::uint64_t count)
{
    std::string text = std::to_string(count);
    const std::string thousands = numberSigns().thousands;
    for (int i = static_cast<int>(text.size()) - 3; i > 0; i -= 3)
        text.insert(static_cast<std::size_t>(i), thousands);
    return text;
}

std::string lengthText(double length)
{
    constexpr int digits = 5;
    const double size = std::abs(length);
    const int before = size >= 1 ? static_cast<int>(std::log10(size)) + 1 : 1;
    std::string text = fmt::format("{:.{}f}", length, std::clamp(digits - before, 0, digits - 1));
    if (text.find('.') != std::string::npos)
        text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    std::ranges::replace(text, '.', numberSigns().decimal);
    return text == "-0" ? "0" : text;
}

} // namespace VX
