#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <cstdint>
#include <vector>

namespace VX
{

/// Which faces of a mesh meet along which edges. Side k of a face runs from its corner k to corner (k + 1) % 3 and has
/// the number 3 * face + k. All sides along one edge, whichever way they run, form a ring: two where the surface is
/// simple, one at its border, more where several sheets meet. Points at the same place count as one.
class VXMESH_API MeshTopology
{
public:
    /// One pass to sort the sides by their lower point, and one to link each ring.
    /// @param mesh  M triangles, at most a third of 2^32; sides of no length have no edge
    /// @threads any; uses the TBB pool
    explicit MeshTopology(const Mesh& mesh);

    /// The triangles of the mesh, M.
    [[nodiscard]] std::size_t faceCount() const { return nextOnEdge_.size() / 3; }

    /// The next side along the same edge: `side` itself when there is no other.
    [[nodiscard]] std::uint32_t nextOnEdge(std::uint32_t side) const { return nextOnEdge_[side]; }

    /// The memory it takes up, in bytes.
    [[nodiscard]] std::size_t heapBytes() const { return nextOnEdge_.capacity() * sizeof(std::uint32_t); }

private:
    std::vector<std::uint32_t> nextOnEdge_;
};

} // namespace VX
