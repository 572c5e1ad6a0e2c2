#include "render/PickScene.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/ScenePicker.h>

#include <atomic>
#include <condition_variable>
#include <thread>
#include <utility>

namespace VX
{

/// The worker, started by the first pick, and what waits for it.
struct ScenePicker::State
{
    struct Job
    {
        PickScene scene;
        Callback done;
    };

    ~State()
    {
        stop = true;
        {
            const MutexLock lock(mutex);
            ending = true;
        }
        changed.notify_one();
        if (worker.joinable())
            worker.join();
    }

    void enqueue(Job job, const Poster& poster)
    {
        {
            const MutexLock lock(mutex);
            next = std::move(job);
        }
        changed.notify_one();
        if (!worker.joinable())
            worker = std::thread([this, poster] { work_(poster); });
    }

    std::optional<PickResult> pick(const PickScene& scene)
    {
        const MutexLock lock(treesMutex);
        return trees.pick(scene, stop);
    }

    Mutex mutex;
    std::condition_variable_any changed;
    std::optional<Job> next VX_GUARDED_BY(mutex);
    bool ending VX_GUARDED_BY(mutex) = false;

    /// Ends the building of a tree.
    std::atomic<bool> stop = false;

    Mutex treesMutex;
    PickTrees trees VX_GUARDED_BY(treesMutex);

    std::thread worker;
    /// Dies with the picker, on the UI thread: callbacks on their way look whether it lives.
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);

private:
    std::optional<Job> take_()
    {
        MutexLock lock(mutex);
        while (!ending && !next)
            changed.wait(lock);
        return ending ? std::nullopt : std::exchange(next, std::nullopt);
    }

    void work_(const Poster& poster)
    {
        while (auto job = take_())
        {
            auto result = pick(job->scene);
            poster(
                [alive = std::weak_ptr(alive), result = std::move(result), done = std::move(job->done)]
                {
                    if (alive.lock())
                        done(result);
                });
        }
    }
};

ScenePicker::ScenePicker(Poster poster)
    : state_(std::make_shared<State>())
    , poster_(std::move(poster))
{
}

ScenePicker::~ScenePicker() = default;

void ScenePicker::pick(const Request& request, Callback done)
{
    state_->enqueue({PickScene(request), std::move(done)}, poster_);
}

std::optional<PickResult> ScenePicker::pickNow(const Request& request)
{
    return state_->pick(PickScene(request));
}

} // namespace VX
