#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace VX
{

/// For each point the index of the first that is equal to it.
/// @param points  at most `Welder::kMaxCorners`, with no coordinate of -0
/// @threads any; uses the TBB pool
template <typename Vector>
[[nodiscard]] std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector>& points);

extern template std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector3f>& points);
extern template std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector3d>& points);

/// Triangles over points of which no two are equal.
template <typename Vector>
struct WeldedTriangles
{
    std::vector<Vector> points;
    std::vector<Triangle> triangles;
};

/// Turns triangles that each have corners of their own into triangles over shared points: corners with the same
/// coordinates, bit by bit and with -0 equal to +0, become one point. The points come out in the order in which they
/// first occur, whatever the number of threads.
///
/// The triangles arrive in chunks. Each chunk is welded by itself in a small table that stays in the cache, which
/// leaves little more than the final number of points for the one large table that joins the chunks; there is no
/// scratch memory of the size of all corners.
/// @tparam Vector  Vector3f or Vector3d
template <typename Vector>
class Welder
{
public:
    static constexpr std::size_t kMaxCorners = std::size_t{1} << 31U;

    explicit Welder(std::size_t chunkCount)
        : chunks_(chunkCount)
    {
    }

    /// Takes the triangles of one chunk.
    /// @param corners  three finite points a triangle
    /// @threads any; chunks may be added side by side
    void add(std::size_t chunk, std::span<const Vector> corners);

    /// The triangles of all chunks in their order; the welder is empty afterwards. The chunks must have had at
    /// most `kMaxCorners` corners together.
    /// @threads any; uses the TBB pool
    [[nodiscard]] WeldedTriangles<Vector> finish();

private:
    struct Chunk
    {
        std::vector<Vector> points;
        std::vector<Triangle> triangles;
    };

    std::vector<Chunk> chunks_;
};

extern template class VXMESH_API Welder<Vector3f>;
extern template class VXMESH_API Welder<Vector3d>;

} // namespace VX
