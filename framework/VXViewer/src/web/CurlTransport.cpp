#include "CurlTransport.h"

#include "BrokenPipe.h"
#include "CurlMemory.h"
#include "WebAnswer.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <condition_variable>
#include <new>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr long mostConnections = 64;
constexpr long mostConnectionsPerHost = 16;
/// How long the transfer thread waits for something to happen: with transfers under way, with progress to report, and
/// with nothing to do.
constexpr int pollMs = 1'000;
constexpr int progressPollMs = 100;
constexpr int idlePollMs = 60'000;

/// The answer that a thread waits for.
class WaitingResult
{
public:
    void set(WebResult result)
    {
        const MutexLock lock(mutex_);
        result_ = std::move(result);
        arrived_.notify_one();
    }

    WebResult get()
    {
        MutexLock lock(mutex_);
        while (!result_)
            arrived_.wait(lock);
        return std::move(*result_);
    }

private:
    Mutex mutex_;
    std::condition_variable_any arrived_;
    std::optional<WebResult> result_ VX_GUARDED_BY(mutex_);
};

CURLM* makeMulti()
{
    [[maybe_unused]] static const CURLcode initialised = initialiseCurl();
    CURLM* multi = curl_multi_init();
    if (!multi)
        throw std::bad_alloc();
    curl_multi_setopt(multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, mostConnections);
    curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, mostConnectionsPerHost);
    return multi;
}

void report(const WebCallback& callback, const WebResult& result)
{
    spdlog::debug("{}", result.logLine);
    callback(result.answer);
}

} // namespace

CurlTransport::CurlTransport()
    : multi_(makeMulti())
    , thread_([this] { run_(); })
{
}

CurlTransport::~CurlTransport()
{
    cancelAll();
    finish();
}

void CurlTransport::setCaFile(std::filesystem::path file)
{
    const MutexLock lock(mutex_);
    caFile_ = std::move(file);
}

void CurlTransport::send(WebRequestData request, WebCallback callback)
{
    const bool isAsync = request.async;
    std::filesystem::path caFile;
    {
        const MutexLock lock(mutex_);
        caFile = caFile_;
    }
    auto transfer = std::make_unique<CurlTransfer>(std::move(request), caFile);
    if (!isAsync)
    {
        sendAndWait_(std::move(transfer), callback);
        return;
    }
    enqueue_({.transfer = std::move(transfer),
              .deliver = [this, callback = std::move(callback)](WebResult result)
              { deliverOnPool_(callback, std::move(result)); }});
}

void CurlTransport::sendAndWait_(std::unique_ptr<CurlTransfer> transfer, const WebCallback& callback)
{
    if (std::this_thread::get_id() == thread_.get_id())
    {
        report(callback, transfer->fail("A progress callback cannot wait for an answer."));
        return;
    }
    const auto waiting = std::make_shared<WaitingResult>();
    enqueue_(
        {.transfer = std::move(transfer), .deliver = [waiting](WebResult result) { waiting->set(std::move(result)); }});
    report(callback, waiting->get());
}

void CurlTransport::enqueue_(Job job)
{
    if (job.transfer->failure().empty())
    {
        const MutexLock lock(mutex_);
        if (!isFinishing_)
        {
            incoming_.push_back(std::move(job));
            curl_multi_wakeup(multi_.get());
            return;
        }
    }
    const auto& failure = job.transfer->failure();
    job.deliver(job.transfer->fail(failure.empty() ? applicationIsClosingText : failure));
}

void CurlTransport::deliverOnPool_(const WebCallback& callback, WebResult result)
{
    const auto shared = std::make_shared<const WebResult>(std::move(result));
    if (!pool_.post([callback, shared] { report(callback, *shared); }))
        report(callback, *shared);
}

void CurlTransport::cancelAll()
{
    const MutexLock lock(mutex_);
    cancelActive_ = true;
    std::ranges::move(incoming_, std::back_inserter(cancelled_));
    incoming_.clear();
    curl_multi_wakeup(multi_.get());
}

void CurlTransport::finish()
{
    {
        const MutexLock lock(mutex_);
        isFinishing_ = true;
        curl_multi_wakeup(multi_.get());
    }
    if (thread_.joinable())
        thread_.join();
    pool_.finish();
}

void CurlTransport::run_()
{
    ignoreBrokenPipes();
    while (takeJobs_())
    {
        int running = 0;
        curl_multi_perform(multi_.get(), &running);
        // The end of one request lets another go on that has waited for its connection: libcurl does not always say so.
        if (!collectDone_())
            curl_multi_poll(multi_.get(), nullptr, 0, pollTimeout_(), nullptr);
    }
}

/// @return false when the last request is done and no more come
bool CurlTransport::takeJobs_()
{
    std::vector<Job> cancelled;
    std::vector<Job> incoming;
    {
        const MutexLock lock(mutex_);
        if (isFinishing_ && active_.empty() && incoming_.empty() && cancelled_.empty())
            return false;
        cancelled.swap(cancelled_);
        incoming.swap(incoming_);
        if (std::exchange(cancelActive_, false))
        {
            for (auto& [handle, job] : active_)
            {
                curl_multi_remove_handle(multi_.get(), handle);
                cancelled.push_back(std::move(job));
            }
            active_.clear();
        }
    }
    for (auto& job : cancelled)
        job.deliver(job.transfer->fail(applicationIsClosingText));
    for (auto& job : incoming)
        startJob_(std::move(job));
    return true;
}

void CurlTransport::startJob_(Job job)
{
    CURL* const handle = job.transfer->handle();
    if (curl_multi_add_handle(multi_.get(), handle) == CURLM_OK)
        active_.emplace(handle, std::move(job));
    else
        job.deliver(job.transfer->finish(CURLE_OUT_OF_MEMORY));
}

/// @return whether any request was done
bool CurlTransport::collectDone_()
{
    bool isAnyDone = false;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left))
    {
        if (message->msg != CURLMSG_DONE)
            continue;
        const auto found = active_.find(message->easy_handle);
        const CURLcode code = message->data.result;
        curl_multi_remove_handle(multi_.get(), found->first);
        const Job job = std::move(found->second);
        active_.erase(found);
        job.deliver(job.transfer->finish(code));
        isAnyDone = true;
    }
    return isAnyDone;
}

int CurlTransport::pollTimeout_()
{
    if (active_.empty())
    {
        const MutexLock lock(mutex_);
        return isFinishing_ ? 0 : idlePollMs;
    }
    const auto wantsProgress = [](const auto& entry) { return entry.second.transfer->hasProgress(); };
    return std::ranges::any_of(active_, wantsProgress) ? progressPollMs : pollMs;
}

} // namespace VX
