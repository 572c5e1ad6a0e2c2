#pragma once

#include "render/GpuGeometry.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Export.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace VX
{

/// Meshes of fewer triangles are drawn as they are.
constexpr std::uint64_t standInLeastTriangles = 1024;

/// Two simplified forms of a mesh, with its points drawn together in a fine and in a coarse grid (meshoptimizer): a
/// quarter and a sixteenth of the triangles, or fewer, so that those of a whole scene have at most a million and a
/// quarter of a million. Empty for a mesh that does not get simpler. Where a fold turns a triangle over, others that
/// look outwards still cover its place: the backs of a solid's stand-in can be left out.
/// @param sceneTriangles  of all meshes of the scene
/// @threads any
[[nodiscard]] VXVIEWER_API std::vector<StandIn> makeStandIns(const Mesh& mesh, std::uint64_t sceneTriangles);

/// Makes the stand-ins of meshes, one after another, on a thread of its own.
/// @threads the UI thread
class StandInMaker
{
public:
    struct Finished
    {
        std::weak_ptr<const Mesh> mesh;
        std::vector<StandIn> standIns;
    };

    /// @param ready  called on the worker thread after each one; may be empty
    explicit StandInMaker(std::function<void()> ready);

    /// Waits for the one under way and drops the others.
    ~StandInMaker();

    StandInMaker(const StandInMaker&) = delete;
    StandInMaker& operator=(const StandInMaker&) = delete;

    /// Asks for the stand-ins of `mesh`.
    void request(const std::shared_ptr<const Mesh>& mesh, std::uint64_t sceneTriangles);

    /// What was finished since the last call.
    [[nodiscard]] std::vector<Finished> takeFinished();

private:
    struct Job
    {
        std::weak_ptr<const Mesh> mesh;
        std::uint64_t sceneTriangles = 0;
    };

    void work_();

    std::function<void()> ready_;
    Mutex mutex_;
    std::condition_variable_any wanted_;
    std::deque<Job> queue_ VX_GUARDED_BY(mutex_);
    std::vector<Finished> finished_ VX_GUARDED_BY(mutex_);
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

} // namespace VX
