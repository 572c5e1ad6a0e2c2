#include "MeshMeasure.h"

#include "render/EdgeTerm.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace VX
{

namespace
{

struct Sums
{
    double area = 0;
    double volume = 0;
    std::uint64_t edges = 0; ///< 0 when the edges cancel out
};

} // namespace

MeshMeasure measureMesh(const Mesh& mesh, const Transform& toScene)
{
    if (mesh.triangles.empty())
        return {};
    // Far from the origin, the tetrahedra would be large and nearly cancel.
    const Vector3d origin = mesh.points[mesh.triangles.front()[0]].cast<double>();
    const Eigen::Matrix3d linear = toScene.linear();
    const auto add = [&](const tbb::blocked_range<std::size_t>& range, Sums sums)
    {
        for (std::size_t i = range.begin(); i != range.end(); ++i)
        {
            const Triangle& t = mesh.triangles[i];
            const auto corner = [&](int k) { return Vector3d(linear * (mesh.points[t[k]].cast<double>() - origin)); };
            const Vector3d a = corner(0);
            const Vector3d b = corner(1);
            const Vector3d c = corner(2);
            sums.area += (b - a).cross(c - a).norm() / 2;
            sums.volume += a.dot(b.cross(c)) / 6;
            sums.edges += edgeTerm(t[0], t[1]) + edgeTerm(t[1], t[2]) + edgeTerm(t[2], t[0]);
        }
        return sums;
    };
    constexpr std::size_t grain = 16384;
    const Sums sums = tbb::parallel_deterministic_reduce(
        tbb::blocked_range<std::size_t>(0, mesh.triangles.size(), grain), Sums(), add,
        [](const Sums& x, const Sums& y) { return Sums{x.area + y.area, x.volume + y.volume, x.edges + y.edges}; });
    // A mirror image turns the triangles round, and not the surface inside out.
    const double volume = linear.determinant() < 0 ? -sums.volume : sums.volume;
    return {sums.area, sums.edges == 0 ? std::optional(volume) : std::nullopt};
}

} // namespace VX
