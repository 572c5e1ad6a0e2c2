#include "render/StandInMaker.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t mostTriangles = 250000;
constexpr std::size_t reduction = 8;

/// A colour for each triangle of the stand-in: that of some full triangle at its first point.
std::vector<Color> standInColors(const Mesh& mesh, const std::vector<Triangle>& triangles)
{
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

} // namespace

StandIn makeStandIn(const Mesh& mesh)
{
    const std::size_t target = std::min(mostTriangles, mesh.triangles.size() / reduction);
    std::vector<std::uint32_t> indices(mesh.triangles.size() * 3);
    const std::size_t count = meshopt_simplifySloppy(indices.data(), mesh.triangles.front().data(), indices.size(),
                                                     mesh.points.front().data(), mesh.points.size(), sizeof(Vector3f),
                                                     target * 3, 1.0F, nullptr);
    StandIn result;
    result.triangles.reserve(count / 3);
    for (std::size_t i = 0; i + 2 < count; i += 3)
        result.triangles.emplace_back(indices[i], indices[i + 1], indices[i + 2]);
    if (!mesh.faceColors.empty())
        result.faceColors = standInColors(mesh, result.triangles);
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

void StandInMaker::request(const std::shared_ptr<const Mesh>& mesh)
{
    {
        const MutexLock lock(mutex_);
        queue_.push_back(mesh);
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
        {
            MutexLock lock(mutex_);
            while (!stopping_ && queue_.empty())
                wanted_.wait(lock);
            if (stopping_)
                return;
            mesh = queue_.front().lock();
            queue_.pop_front();
        }
        if (!mesh)
            continue;
        Finished finished{mesh, makeStandIn(*mesh)};
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
