#include "ConversionWorkers.h"

#include <spdlog/spdlog.h>

#include <optional>
#include <utility>

namespace VX
{

ConversionWorkers::ConversionWorkers(JobQueue& queue, const BlobStore& blobs, ConversionSettings settings)
    : queue_(queue)
    , blobs_(blobs)
    , settings_(std::move(settings))
{
}

void ConversionWorkers::start(unsigned count)
{
    for (unsigned i = 0; i < count; ++i)
        threads_.emplace_back([this] { work_(); });
}

ConversionWorkers::~ConversionWorkers()
{
    stop_.set();
    wake();
    for (std::thread& thread : threads_)
        thread.join();
}

void ConversionWorkers::wake()
{
    {
        const MutexLock lock(mutex_);
        ++wakeCount_;
    }
    woken_.notify_all();
}

void ConversionWorkers::work_()
{
    while (!stop_.isSet())
    {
        // Read before the queue is, so that no wake between the two is lost.
        const std::uint64_t seen = wakes_();
        auto claimed = queue_.claim();
        if (!claimed)
            spdlog::error("No conversion can be started: {}", claimed.error());
        if (std::optional<ClaimedJob> job = std::move(claimed).value_or(std::nullopt))
            ConversionRun(std::move(*job), queue_, blobs_, settings_, stop_).run();
        else
            waitForWake_(seen);
    }
}

std::uint64_t ConversionWorkers::wakes_()
{
    const MutexLock lock(mutex_);
    return wakeCount_;
}

void ConversionWorkers::waitForWake_(std::uint64_t seen)
{
    const auto until = std::chrono::steady_clock::now() + searchInterval;
    MutexLock lock(mutex_);
    while (wakeCount_ == seen && woken_.wait_until(lock, until) == std::cv_status::no_timeout)
        continue;
}

} // namespace VX
