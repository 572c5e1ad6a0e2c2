#include <quorvix/async/WebRequestFuture.h>

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Viewer.h>

#include <condition_variable>
#include <utility>

namespace VX
{

struct WebRequestFuture::State
{
    Mutex mutex;
    std::condition_variable_any arrived;
    std::optional<Json::Value> answer VX_GUARDED_BY(mutex);
};

// NOLINTNEXTLINE(performance-unnecessary-value-param): the future needs nothing of the caller's once it is made
WebRequestFuture::WebRequestFuture(WebRequest request)
    : state_(std::make_shared<State>())
{
    request.send(
        [state = state_](const Json::Value& answer)
        {
            {
                const MutexLock lock(state->mutex);
                state->answer = answer;
            }
            state->arrived.notify_one();
            // A UI loop that sleeps for want of input polls the future now.
            getViewerInstance().postEmptyEvent();
        });
}

std::optional<Json::Value> WebRequestFuture::operator()() const
{
    const MutexLock lock(state_->mutex);
    return state_->answer;
}

Json::Value WebRequestFuture::get() const
{
    State& state = *state_;
    MutexLock lock(state.mutex);
    while (!state.answer)
        state.arrived.wait(lock);
    return *state.answer;
}

} // namespace VX
