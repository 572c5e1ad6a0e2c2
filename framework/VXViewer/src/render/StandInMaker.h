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

/// Meshes of fewer triangles are fast enough as they are.
constexpr std::uint32_t standInLeastTriangles = 16384;

/// About an eighth of the triangles, 250,000 at most: the mesh with its points drawn together in a grid
/// (meshoptimizer).
/// @threads any
[[nodiscard]] VXVIEWER_API StandIn makeStandIn(const Mesh& mesh);

/// Makes stand-ins one after another on a thread of its own.
/// @threads the UI thread
class StandInMaker
{
public:
    struct Finished
    {
        std::weak_ptr<const Mesh> mesh;
        StandIn standIn;
    };

    /// @param ready  called on the worker thread after each one; may be empty
    explicit StandInMaker(std::function<void()> ready);

    /// Waits for the one under way and drops the others.
    ~StandInMaker();

    StandInMaker(const StandInMaker&) = delete;
    StandInMaker& operator=(const StandInMaker&) = delete;

    /// Asks for the stand-in of `mesh`.
    void request(const std::shared_ptr<const Mesh>& mesh);

    /// What was finished since the last call.
    [[nodiscard]] std::vector<Finished> takeFinished();

private:
    void work_();

    std::function<void()> ready_;
    Mutex mutex_;
    std::condition_variable_any wanted_;
    std::deque<std::weak_ptr<const Mesh>> queue_ VX_GUARDED_BY(mutex_);
    std::vector<Finished> finished_ VX_GUARDED_BY(mutex_);
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

} // namespace VX
