#include "CurlTransport.h"
#include "WebAnswer.h"
#include "WebRequestSender.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/WebRequests.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr std::chrono::milliseconds shutdownTimeout{1500};

struct Shared
{
    Mutex mutex;
    std::shared_ptr<WebTransport> replacement VX_GUARDED_BY(mutex);
    std::shared_ptr<CurlTransport> curl VX_GUARDED_BY(mutex); ///< made by the first request
    std::filesystem::path caFile VX_GUARDED_BY(mutex);
    bool isShuttingDown VX_GUARDED_BY(mutex) = false;
    bool isFinished VX_GUARDED_BY(mutex) = false;
};

Shared& shared()
{
    static Shared instance;
    return instance;
}

/// A process that ends without `finish` must not run its requests into the end of libcurl's TLS library. Called once
/// libcurl is initialised, so that this runs before the exit handler of that library.
void finishAtExit()
{
    struct AtExit
    {
        ~AtExit() { WebRequests::finish(); }
    };

    static const AtExit atExit;
}

/// @return null where the requests are finished before libcurl was ever needed
std::shared_ptr<WebTransport> transportOf(Shared& state) VX_REQUIRES(state.mutex)
{
    if (state.replacement)
        return state.replacement;
    if (!state.curl && !state.isFinished)
    {
        state.curl = std::make_shared<CurlTransport>();
        state.curl->setCaFile(state.caFile);
        finishAtExit();
    }
    return state.curl;
}

} // namespace

void sendWebRequest(WebRequestData request, WebCallback callback)
{
    if (!callback)
        callback = [](const Json::Value&) {};
    std::shared_ptr<WebTransport> transport;
    {
        Shared& state = shared();
        const MutexLock lock(state.mutex);
        if (state.isShuttingDown)
            request.timeout = std::min(request.timeout, shutdownTimeout);
        transport = transportOf(state);
    }
    if (transport)
        transport->send(std::move(request), std::move(callback));
    else
        callback(makeFailedAnswer(applicationIsClosingText));
}

void WebRequests::setTransport(std::shared_ptr<WebTransport> transport)
{
    // The old one goes with the parameter, after the lock: it may end threads.
    Shared& state = shared();
    const MutexLock lock(state.mutex);
    std::swap(state.replacement, transport);
}

void WebRequests::setCaFile(std::filesystem::path file)
{
    Shared& state = shared();
    const MutexLock lock(state.mutex);
    state.caFile = std::move(file);
    if (state.curl)
        state.curl->setCaFile(state.caFile);
}

void WebRequests::beginShutdown()
{
    std::shared_ptr<CurlTransport> curl;
    {
        Shared& state = shared();
        const MutexLock lock(state.mutex);
        if (!std::exchange(state.isShuttingDown, true))
            curl = state.curl;
    }
    if (curl)
        curl->cancelAll();
}

void WebRequests::finish()
{
    beginShutdown();
    std::shared_ptr<CurlTransport> curl;
    {
        Shared& state = shared();
        const MutexLock lock(state.mutex);
        state.isFinished = true;
        curl = state.curl;
    }
    if (curl)
        curl->finish();
}

void WebRequests::reset()
{
    finish();
    std::shared_ptr<WebTransport> replacement;
    std::shared_ptr<CurlTransport> curl;
    Shared& state = shared();
    const MutexLock lock(state.mutex);
    std::swap(replacement, state.replacement);
    std::swap(curl, state.curl);
    state.caFile.clear();
    state.isShuttingDown = false;
    state.isFinished = false;
}

} // namespace VX
