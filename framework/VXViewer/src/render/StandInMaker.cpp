#include "render/StandInMaker.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <utility>

namespace VX
{

namespace
{

struct Level
{
    double part;      ///< of the triangles of a mesh
    double mostOfAll; ///< triangles for all meshes of a scene
};

constexpr std::array<Level, 2> levels{{{1.0 / 4, 1'000'000}, {1.0 / 16, 250'000}}};

/// A result with more than this part of the triangles is not worth the memory.
constexpr double worthwhile = 0.75;

/// A colour for each triangle: that of some triangle of the mesh at its first point.
std::vector<Color> faceColorsOf(const std::vector<Triangle>& triangles, const Mesh& mesh)
{
    if (mesh.faceColors.empty())
        return {};
    std::vector<Color> atPoint(mesh.points.size());
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i)
    {
        for (int k = 0; k < 3; ++k)
            atPoint[mesh.triangles[i][k]] = mesh.faceColors[i];
    }
    std::vector<Color> colors;
    colors.reserve(triangles.size());
    for (const Triangle& t : triangles)
        colors.push_back(atPoint[t[0]]);
    return colors;
}

std::vector<Triangle> simplify(const std::vector<Triangle>& triangles, const Mesh& mesh, std::size_t target)
{
    static_assert(sizeof(Triangle) == 3 * sizeof(std::uint32_t));
    std::vector<Triangle> result(triangles.size());
    const std::size_t count = meshopt_simplifySloppy(result.data()->data(), triangles.data()->data(),
                                                     triangles.size() * 3, mesh.points.data()->data(),
                                                     mesh.points.size(), sizeof(Vector3f), target * 3, 1.0F, nullptr);
    result.resize(count / 3);
    result.shrink_to_fit();
    return result;
}

} // namespace

std::vector<StandIn> makeStandIns(const Mesh& mesh, std::uint64_t sceneTriangles)
{
    std::vector<StandIn> result;
    const auto count = static_cast<double>(mesh.triangles.size());
    const auto whole = std::max(static_cast<double>(sceneTriangles), count);
    for (const Level& level : levels)
    {
        const std::vector<Triangle>& from = result.empty() ? mesh.triangles : result.back().triangles;
        const double target = count * std::min(level.part, level.mostOfAll / whole);
        std::vector<Triangle> triangles = simplify(from, mesh, static_cast<std::size_t>(target));
        if (triangles.empty() || static_cast<double>(triangles.size()) > worthwhile * static_cast<double>(from.size()))
            continue;
        std::vector<Color> colors = faceColorsOf(triangles, mesh);
        std::vector<MeshCluster> clusters = makeClusters(mesh.points, triangles);
        result.push_back({std::move(triangles), std::move(clusters), std::move(colors)});
    }
    return result;
}

StandInMaker::StandInMaker(std::function<void()> ready)
    : ready_(std::move(ready))
{
}

StandInMaker::~StandInMaker()
{
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
    }
    wanted_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void StandInMaker::request(const std::shared_ptr<const Mesh>& mesh, std::uint64_t sceneTriangles)
{
    {
        const MutexLock lock(mutex_);
        queue_.push_back({mesh, sceneTriangles});
    }
    if (!thread_.joinable())
        thread_ = std::thread([this] { work_(); });
    wanted_.notify_all();
}

std::vector<StandInMaker::Finished> StandInMaker::takeFinished()
{
    const MutexLock lock(mutex_);
    return std::exchange(finished_, {});
}

void StandInMaker::work_()
{
    while (true)
    {
        std::shared_ptr<const Mesh> mesh;
        std::uint64_t sceneTriangles = 0;
        {
            MutexLock lock(mutex_);
            while (!stopping_ && queue_.empty())
                wanted_.wait(lock);
            if (stopping_)
                return;
            mesh = queue_.front().mesh.lock();
            sceneTriangles = queue_.front().sceneTriangles;
            queue_.pop_front();
        }
        if (!mesh)
            continue;
        Finished finished{mesh, makeStandIns(*mesh, sceneTriangles)};
        mesh.reset();
        {
            const MutexLock lock(mutex_);
            finished_.push_back(std::move(finished));
        }
        if (ready_)
            ready_();
    }
}

} // namespace VX
