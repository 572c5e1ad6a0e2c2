#include "render/ConnectedParts.h"

#include "render/VertexSets.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

/// Six times the signed volume between the triangle and the origin.
double volumeOf(const Mesh& mesh, const Triangle& t, const Vector3f& origin)
{
    const Vector3f a = mesh.points[t[0]] - origin;
    const Vector3f b = mesh.points[t[1]] - origin;
    const Vector3f c = mesh.points[t[2]] - origin;
    return static_cast<double>(a.dot(b.cross(c)));
}

void uniteTriangles(const Mesh& mesh, VertexSets& sets)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, mesh.triangles.size(), 1 << 14),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                          {
                              const Triangle& t = mesh.triangles[i];
                              sets.unite(t[0], t[1]);
                              sets.unite(t[0], t[2]);
                          }
                      });
}

/// The volume of each part; `roots` are sorted.
std::vector<double> volumesOf(const Mesh& mesh, const VertexSets& sets, const std::vector<std::uint32_t>& roots)
{
    std::vector<double> volumes(roots.size(), 0.0);
    const auto add = [&](std::uint32_t root, double volume)
    {
        const auto part = std::lower_bound(roots.begin(), roots.end(), root) - roots.begin();
        std::atomic_ref(volumes[static_cast<std::size_t>(part)]).fetch_add(volume, std::memory_order_relaxed);
    };
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, mesh.triangles.size(), 1 << 14),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          // Neighbours in the list are mostly of one part: their sum is handed on when that changes.
                          std::uint32_t current = sets.find(mesh.triangles[range.begin()][0]);
                          double sum = 0;
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                          {
                              const Triangle& t = mesh.triangles[i];
                              if (const std::uint32_t root = sets.find(t[0]); root != current)
                              {
                                  add(current, std::exchange(sum, 0.0));
                                  current = root;
                              }
                              // A point of the part itself as the origin keeps the digits of small parts.
                              sum += volumeOf(mesh, t, mesh.points[current]);
                          }
                          add(current, sum);
                      });
    return volumes;
}

} // namespace

bool allPartsFaceOutwards(const Mesh& mesh)
{
    const auto pointCount = static_cast<std::uint32_t>(mesh.points.size());
    VertexSets sets(pointCount);
    uniteTriangles(mesh, sets);
    // A vertex that no triangle uses is a root of its own; it encloses nothing and does no harm.
    std::vector<std::uint32_t> roots;
    for (std::uint32_t i = 0; i < pointCount; ++i)
    {
        if (sets.isRoot(i))
            roots.push_back(i);
    }
    const std::vector<double> volumes = volumesOf(mesh, sets, roots);
    return std::all_of(volumes.begin(), volumes.end(), [](double volume) { return volume >= 0; });
}

} // namespace VX
