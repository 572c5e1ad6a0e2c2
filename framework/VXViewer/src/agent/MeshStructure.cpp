#include "MeshStructure.h"

#include <VXMesh/MeshTopology.h>

#include <tbb/parallel_sort.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

/// Which points belong together.
class PointSets
{
public:
    explicit PointSets(std::size_t points)
        : parents_(points)
    {
        std::iota(parents_.begin(), parents_.end(), 0U);
    }

    /// @return true when they were apart
    bool join(std::uint32_t a, std::uint32_t b)
    {
        a = find_(a);
        b = find_(b);
        parents_[std::max(a, b)] = std::min(a, b);
        return a != b;
    }

private:
    [[nodiscard]] std::uint32_t find_(std::uint32_t point)
    {
        while (parents_[point] != point)
            point = parents_[point] = parents_[parents_[point]];
        return point;
    }

    std::vector<std::uint32_t> parents_;
};

/// Counts the sets that the points seen so far are in.
class SetCount
{
public:
    explicit SetCount(std::size_t points)
        : sets_(points)
        , seen_(points, false)
    {
    }

    void join(std::uint32_t a, std::uint32_t b)
    {
        see_(a);
        see_(b);
        count_ -= sets_.join(a, b) ? 1 : 0;
    }

    [[nodiscard]] std::size_t count() const { return count_; }

private:
    void see_(std::uint32_t point)
    {
        count_ += seen_[point] ? 0 : 1;
        seen_[point] = true;
    }

    PointSets sets_;
    std::vector<bool> seen_;
    std::size_t count_ = 0;
};

} // namespace

Mesh joinEqualPoints(const Mesh& mesh)
{
    std::vector<std::uint32_t> order(mesh.points.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto coordinates = [&](std::uint32_t i)
    { return std::tuple(mesh.points[i].x(), mesh.points[i].y(), mesh.points[i].z(), i); };
    tbb::parallel_sort(order.begin(), order.end(),
                       [&](std::uint32_t a, std::uint32_t b) { return coordinates(a) < coordinates(b); });
    std::vector<std::uint32_t> first(mesh.points.size());
    for (std::size_t i = 0; i < order.size(); ++i)
    {
        const bool same = i > 0 && mesh.points[order[i]] == mesh.points[order[i - 1]];
        first[order[i]] = same ? first[order[i - 1]] : order[i];
    }
    Mesh joined;
    joined.points = mesh.points;
    joined.triangles.reserve(mesh.triangles.size());
    for (const Triangle& t : mesh.triangles)
        joined.triangles.emplace_back(first[t[0]], first[t[1]], first[t[2]]);
    return joined;
}

std::optional<MeshStructure> findMeshStructure(const Mesh& mesh, const std::function<bool()>& isToStop)
{
    MeshStructure structure;
    SetCount parts(mesh.points.size());
    for (const Triangle& triangle : mesh.triangles)
    {
        parts.join(triangle[0], triangle[1]);
        parts.join(triangle[0], triangle[2]);
    }
    structure.components = parts.count();
    if (isToStop && isToStop())
        return std::nullopt;

    const MeshTopology topology(mesh);
    SetCount borders(mesh.points.size());
    for (std::uint32_t face = 0; face < topology.faceCount(); ++face)
    {
        for (std::uint32_t k = 0; k < 3; ++k)
        {
            const std::uint32_t side = 3 * face + k;
            const std::uint32_t from = mesh.triangles[face][k];
            const std::uint32_t to = mesh.triangles[face][(k + 1) % 3];
            if (from == to || topology.nextOnEdge(side) != side)
                continue;
            borders.join(from, to);
            ++structure.borderEdges;
        }
    }
    structure.holes = borders.count();
    if (isToStop && isToStop())
        return std::nullopt;
    return structure;
}

} // namespace VX
