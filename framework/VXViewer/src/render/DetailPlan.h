#pragma once

#include <VXViewer/Export.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace VX
{

/// How much of a mesh is drawn.
struct MeshDetail
{
    std::size_t level = 0;  ///< 0 is the mesh itself, then come its stand-ins, each simpler
    std::uint32_t step = 1; ///< only each so many triangles

    friend bool operator==(const MeshDetail&, const MeshDetail&) = default;
};

/// Shares out the triangles that may be drawn among the meshes in the picture, each after the part of it that shows:
/// all of them in full where that is enough; else each by the best of its stand-ins that keeps to its share. A mesh
/// without stand-ins is thinned out, and no mesh is left out.
/// @param visible  for each mesh, for each of its levels, how many triangles show
[[nodiscard]] VXVIEWER_API std::vector<MeshDetail> planDetail(const std::vector<std::vector<std::uint64_t>>& visible,
                                                              std::uint64_t budget);

} // namespace VX
