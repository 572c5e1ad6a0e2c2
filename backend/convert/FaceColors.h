#pragma once

#include <VXMesh/Geometry.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace VX
{

/// What a body without a colour of its own is drawn in.
[[nodiscard]] Color defaultBodyColor();

/// Gives `mesh` a colour for each triangle where its faces differ in colour.
/// @param firstTriangles  the index of each face's first triangle
/// @param colors          one each for the faces, at least one
/// @return the colour of all faces where they do not differ; nothing where they do, or none has a colour
std::optional<Color> applyFaceColors(Mesh& mesh, std::span<const std::size_t> firstTriangles,
                                     const std::vector<std::optional<Color>>& colors);

} // namespace VX
