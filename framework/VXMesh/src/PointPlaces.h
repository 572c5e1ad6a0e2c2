#pragma once

#include <VXMesh/Geometry.h>

#include <cstdint>
#include <vector>

namespace VX
{

/// For each point the number of the first one at the same place. A surface is one for the user also where the points
/// along a line are there twice: between the faces of a converted part, or at a seam of normals or colours.
/// @threads any; uses the TBB pool
[[nodiscard]] std::vector<std::uint32_t> placesOf(const std::vector<Vector3f>& points);

} // namespace VX
