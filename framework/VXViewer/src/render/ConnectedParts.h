#pragma once

#include <VXMesh/Geometry.h>

namespace VX
{

/// Whether every connected part of a closed mesh encloses a positive volume, which means that its triangles are
/// counter-clockwise seen from outside. The volume is the sum over its triangles of the signed tetrahedra with the
/// origin (Zhang and Chen, 2001).
/// @threads any; uses the TBB pool
[[nodiscard]] bool allPartsFaceOutwards(const Mesh& mesh);

} // namespace VX
