#include "render/MeshAnalysis.h"

#include "render/ConnectedParts.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <limits>

namespace VX
{

namespace
{

constexpr std::size_t clustersPerTask = 64;

/// Scrambles an edge into a number; equal edges give equal numbers (the finalizer of MurmurHash3, A. Appleby).
std::uint64_t scramble(std::uint64_t x)
{
    x ^= x >> 33;
    x *= 0xff51afd7ed558ccdULL;
    x ^= x >> 33;
    x *= 0xc4ceb9fe1a85ec53ULL;
    return x ^ (x >> 33);
}

/// A term that cancels against that of the same edge run through the other way.
std::uint64_t edgeTerm(std::uint64_t from, std::uint64_t to)
{
    if (from == to)
        return 0;
    return from < to ? scramble(from << 32 | to) : 0 - scramble(to << 32 | from);
}

/// Sums over triangles.
struct Totals
{
    std::uint64_t edges = 0; ///< 0: each edge runs as often one way as the other
    Box3f box;

    void add(const Totals& other)
    {
        edges += other.edges;
        box.extend(other.box);
    }
};

/// The least and greatest of vectors. Plain numbers: this runs for every corner of every triangle.
class Extent
{
public:
    void add(const Vector3f& v)
    {
        least_ = least_.min(v.array());
        greatest_ = greatest_.max(v.array());
    }

    [[nodiscard]] Box3f box() const { return least_.x() <= greatest_.x() ? Box3f(least_, greatest_) : Box3f(); }

private:
    Eigen::Array3f least_ = Eigen::Array3f::Constant(std::numeric_limits<float>::max());
    Eigen::Array3f greatest_ = Eigen::Array3f::Constant(std::numeric_limits<float>::lowest());
};

Totals analyzeCluster(const std::vector<Vector3f>& points, const std::vector<Triangle>& triangles, MeshCluster& cluster,
                      NormalSums* sums)
{
    Totals totals;
    Extent places;
    Extent normals;
    const std::uint32_t end = cluster.firstTriangle + cluster.triangleCount;
    for (std::uint32_t i = cluster.firstTriangle; i < end; ++i)
    {
        const Triangle& t = triangles[i];
        const Vector3f& a = points[t[0]];
        const Vector3f& b = points[t[1]];
        const Vector3f& c = points[t[2]];
        places.add(a);
        places.add(b);
        places.add(c);
        totals.edges += edgeTerm(t[0], t[1]) + edgeTerm(t[1], t[2]) + edgeTerm(t[2], t[0]);
        const TriangleShape shape = shapeOf(a, b, c);
        if (shape.normal.isZero(0))
            continue;
        normals.add(shape.normal);
        if (sums == nullptr)
            continue;
        for (int k = 0; k < 3; ++k)
            sums->add(t[k], shape.normal, shape.angles[k]);
    }
    cluster.box = places.box();
    cluster.normals = normals.box();
    totals.box = cluster.box;
    return totals;
}

/// Runs of consecutive triangles, their boxes still empty.
std::vector<MeshCluster> cutIntoClusters(std::size_t triangleCount)
{
    constexpr std::uint32_t step = MeshAnalysis::clusterTriangles;
    std::vector<MeshCluster> clusters((triangleCount + step - 1) / step);
    std::uint32_t first = 0;
    for (MeshCluster& cluster : clusters)
    {
        cluster.firstTriangle = first;
        cluster.triangleCount = std::min(step, static_cast<std::uint32_t>(triangleCount) - first);
        first += step;
    }
    return clusters;
}

} // namespace

std::vector<MeshCluster> makeClusters(const std::vector<Vector3f>& points, const std::vector<Triangle>& triangles)
{
    std::vector<MeshCluster> clusters = cutIntoClusters(triangles.size());
    for (MeshCluster& cluster : clusters)
        analyzeCluster(points, triangles, cluster, nullptr);
    return clusters;
}

MeshAnalysis analyzeMesh(const Mesh& mesh)
{
    MeshAnalysis result;
    result.clusters = cutIntoClusters(mesh.triangles.size());
    if (mesh.normals.empty())
        result.normalSums.emplace(mesh.points.size());
    NormalSums* sums = result.normalSums ? &*result.normalSums : nullptr;

    const Totals totals = tbb::parallel_deterministic_reduce(
        tbb::blocked_range<std::size_t>(0, result.clusters.size(), clustersPerTask), Totals{},
        [&](const tbb::blocked_range<std::size_t>& range, Totals partial)
        {
            for (std::size_t i = range.begin(); i != range.end(); ++i)
                partial.add(analyzeCluster(mesh.points, mesh.triangles, result.clusters[i], sums));
            return partial;
        },
        [](Totals a, const Totals& b)
        {
            a.add(b);
            return a;
        });
    result.box = totals.box;
    result.solid = !mesh.triangles.empty() && totals.edges == 0 && allPartsFaceOutwards(mesh);
    return result;
}

} // namespace VX
