#include "FaceColors.h"

#include <VXMesh/ObjectMesh.h>

#include <algorithm>
#include <functional>

namespace VX
{

Color defaultBodyColor()
{
    return ObjectMesh().color();
}

std::optional<Color> applyFaceColors(Mesh& mesh, std::span<const std::size_t> firstTriangles,
                                     const std::vector<std::optional<Color>>& colors)
{
    if (std::ranges::adjacent_find(colors, std::ranges::not_equal_to()) == colors.end())
        return colors.front();
    mesh.faceColors.resize(mesh.triangles.size());
    for (std::size_t face = 0; face < colors.size(); ++face)
    {
        const std::size_t end = face + 1 < colors.size() ? firstTriangles[face + 1] : mesh.triangles.size();
        std::fill(mesh.faceColors.begin() + static_cast<std::ptrdiff_t>(firstTriangles[face]),
                  mesh.faceColors.begin() + static_cast<std::ptrdiff_t>(end),
                  colors[face].value_or(defaultBodyColor()));
    }
    return std::nullopt;
}

} // namespace VX
