#include "RegionFinder.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/MeshTopology.h>
#include <VXViewer/CommandLoop.h>

#include <spdlog/spdlog.h>

#include <atomic>
#include <new>
#include <utility>

namespace VX
{

struct RegionFinder::State
{
    /// The number of the last call, and of the one that was answered last.
    std::atomic<std::uint64_t> last = 0;
    std::uint64_t answered = 0;

    // The worker's alone.
    std::weak_ptr<const Mesh> mesh;
    std::unique_ptr<MeshTopology> topology;
};

RegionFinder::RegionFinder()
    : state_(std::make_shared<State>())
    , worker_(1)
{
}

RegionFinder::~RegionFinder()
{
    ++state_->last;
}

void RegionFinder::find(std::shared_ptr<const Mesh> mesh, std::uint32_t face, double angleToleranceDegrees,
                        Callback done)
{
    const std::uint64_t number = ++state_->last;
    const auto work =
        [state = state_, number, mesh = std::move(mesh), face, angleToleranceDegrees, done = std::move(done)]
    {
        const auto isReplaced = [&] { return state->last != number; };
        if (isReplaced())
            return;
        // Without enough memory no face is found.
        FaceSet faces;
        try
        {
            if (!state->topology || state->mesh.lock() != mesh)
            {
                state->topology = std::make_unique<MeshTopology>(*mesh);
                state->mesh = mesh;
            }
            faces = growRegion(*mesh, *state->topology, face, angleToleranceDegrees, isReplaced);
        }
        catch (const std::bad_alloc&)
        {
            state->topology.reset();
            spdlog::error("There is not enough memory to find a region of faces.");
        }
        const auto answer = [state, number, done, faces = std::move(faces)]
        {
            if (state->last != number)
                return;
            state->answered = number;
            if (faces.size() > 0)
                done(faces);
        };
        CommandLoop::appendCommand(answer);
    };
    worker_.start(work);
}

bool RegionFinder::isBusy() const
{
    return state_->answered != state_->last;
}

void RegionFinder::clear()
{
    state_->answered = ++state_->last;
    worker_.start(
        [state = state_]
        {
            state->topology.reset();
            state->mesh.reset();
        });
}

} // namespace VX
