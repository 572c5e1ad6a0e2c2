#pragma once

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

#include <algorithm>
#include <string>

namespace VX::Test
{

/// Every field of `object` and of what is below it, for comparison: equal texts, equal trees. Geometry counts by its
/// identity, selected faces by value.
inline std::string sceneText(const Object& object, int depth = 0)
{
    std::string text = fmt::format("{:{}}{} {} visible {:x} selected {} [", "", 2 * depth, object.id(), object.name(),
                                   object.visibilityMask().bits(), object.isSelected());
    for (const double value : object.transform().matrix().reshaped())
        text += fmt::format("{} ", value);
    text += ']';
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
    {
        const Color color = visual->color();
        text += fmt::format(" color {} {} {} {}", color.r, color.g, color.b, color.a);
    }
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
    {
        text += fmt::format(" mesh {} flat {} faces", fmt::ptr(mesh->mesh().get()), mesh->isFlatShaded());
        if (mesh->selectedFaces())
            mesh->selectedFaces()->forEach([&](std::size_t face) { text += fmt::format(" {}", face); });
    }
    if (const auto* points = dynamic_cast<const ObjectPoints*>(&object))
        text += fmt::format(" points {}", fmt::ptr(points->pointCloud().get()));
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object))
        text += fmt::format(" lines {}", fmt::ptr(lines->lines().get()));
    text += '\n';
    for (const auto& child : object.children())
        text += sceneText(*child, depth + 1);
    return text;
}

} // namespace VX::Test
