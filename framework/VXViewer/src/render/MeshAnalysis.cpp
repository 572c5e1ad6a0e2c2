#include "render/MeshAnalysis.h"

#include "render/ConnectedParts.h"
#include "render/EdgeTerm.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <array>
#include <limits>

namespace VX
{

namespace
{

constexpr std::size_t clustersPerTask = 64;

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

/// Triangles whose shapes are computed at once.
constexpr int batchTriangles = 8;
using Batch = VectorLanes<batchTriangles>;

constexpr float leastFloat = std::numeric_limits<float>::lowest();
constexpr float greatestFloat = std::numeric_limits<float>::max();

/// The least and greatest of vectors.
class Extent
{
public:
    void add(const Batch& v) { add(v, v); }

    void add(const Batch& forLeast, const Batch& forGreatest)
    {
        least_ = least_.min(forLeast);
        greatest_ = greatest_.max(forGreatest);
    }

    [[nodiscard]] Box3f box() const
    {
        const Vector3f least(least_.x.minCoeff(), least_.y.minCoeff(), least_.z.minCoeff());
        const Vector3f greatest(greatest_.x.maxCoeff(), greatest_.y.maxCoeff(), greatest_.z.maxCoeff());
        return least.x() <= greatest.x() ? Box3f(least, greatest) : Box3f();
    }

private:
    static Batch all_(float value)
    {
        const Lanes<batchTriangles> lanes = Lanes<batchTriangles>::Constant(value);
        return {lanes, lanes, lanes};
    }

    Batch least_ = all_(greatestFloat);
    Batch greatest_ = all_(leastFloat);
};

/// Adds up what `analyzeCluster` wants to know.
class ClusterAnalysis
{
public:
    ClusterAnalysis(const std::vector<Vector3f>& points, const std::vector<Triangle>& triangles, NormalSums* sums)
        : points_(points)
        , triangles_(triangles)
        , sums_(sums)
    {
    }

    /// Takes `count` triangles, 1 to `batchTriangles`, from `first` on.
    void add(std::uint32_t first, std::uint32_t count)
    {
        std::array<Batch, 3> corners;
        for (int lane = 0; lane < batchTriangles; ++lane)
        {
            // A batch that is not full has its last triangle several times.
            const Triangle& t = triangles_[first + std::min(static_cast<std::uint32_t>(lane), count - 1)];
            for (int k = 0; k < 3; ++k)
                corners[static_cast<std::size_t>(k)].set(lane, points_[t[k]]);
        }
        for (const Batch& corner : corners)
            places_.add(corner);
        const TriangleShapes<batchTriangles> shapes = shapesOf<batchTriangles>(corners[0], corners[1], corners[2]);
        const Eigen::Array<bool, batchTriangles, 1> isSound = shapes.normal.dot(shapes.normal) > 0;
        normals_.add(shapes.normal.where(isSound, greatestFloat), shapes.normal.where(isSound, leastFloat));
        for (std::uint32_t i = 0; i < count; ++i)
        {
            const Triangle& t = triangles_[first + i];
            edges_ += edgeTerm(t[0], t[1]) + edgeTerm(t[1], t[2]) + edgeTerm(t[2], t[0]);
            if (sums_ == nullptr || !isSound[i])
                continue;
            const Vector3f normal = shapes.normal.get(static_cast<int>(i));
            for (int k = 0; k < 3; ++k)
                sums_->add(t[k], normal, shapes.angles[static_cast<std::size_t>(k)][i]);
        }
    }

    [[nodiscard]] Box3f places() const { return places_.box(); }

    [[nodiscard]] Box3f normals() const { return normals_.box(); }

    [[nodiscard]] std::uint64_t edges() const { return edges_; }

private:
    const std::vector<Vector3f>& points_;
    const std::vector<Triangle>& triangles_;
    NormalSums* sums_;
    Extent places_;
    Extent normals_;
    std::uint64_t edges_ = 0;
};

Totals analyzeCluster(const std::vector<Vector3f>& points, const std::vector<Triangle>& triangles, MeshCluster& cluster,
                      NormalSums* sums)
{
    ClusterAnalysis analysis(points, triangles, sums);
    const std::uint32_t end = cluster.firstTriangle + cluster.triangleCount;
    for (std::uint32_t i = cluster.firstTriangle; i < end; i += batchTriangles)
        analysis.add(i, std::min<std::uint32_t>(batchTriangles, end - i));
    cluster.box = analysis.places();
    cluster.normals = analysis.normals();
    return {analysis.edges(), cluster.box};
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
