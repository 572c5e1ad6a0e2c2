#include "Housekeeping.h"

#include "BlobStore.h"
#include "JobQueue.h"

#include <spdlog/spdlog.h>

#include <system_error>
#include <utility>
#include <vector>

namespace VX
{

Housekeeping::Housekeeping(JobQueue& queue, const BlobStore& blobs, std::filesystem::path workFolder,
                           std::chrono::seconds keep, std::chrono::milliseconds lease, std::function<void()> more)
    : queue_(queue)
    , blobs_(blobs)
    , workFolder_(std::move(workFolder))
    , keep_(keep)
    , lease_(lease)
    , more_(std::move(more))
    , thread_([this] { work_(); })
{
}

Housekeeping::~Housekeeping()
{
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
    }
    stopped_.notify_all();
    thread_.join();
}

void Housekeeping::work_()
{
    clean_();
    // A service that was killed a moment ago left work behind whose lease still held.
    for (std::chrono::milliseconds time = lease_; sleep_(time); time = interval)
        clean_();
}

/// @return false when the object is being destroyed
bool Housekeeping::sleep_(std::chrono::milliseconds time)
{
    const auto until = std::chrono::steady_clock::now() + time;
    MutexLock lock(mutex_);
    while (!stopping_ && stopped_.wait_until(lock, until) == std::cv_status::no_timeout)
        continue;
    return !stopping_;
}

void Housekeeping::clean_()
{
    // The jobs first: who still sees one finds its blobs too.
    if (auto forgotten = queue_.forgetOlderThan(std::chrono::system_clock::now() - keep_); !forgotten)
        spdlog::warn("Old jobs cannot be removed: {}", forgotten.error());
    const std::size_t removed = blobs_.removeOlderThan(std::filesystem::file_time_type::clock::now() - keep_);
    if (removed > 0)
        spdlog::info("Removed {} old files.", removed);
    removeDeadWork_();
    more_();
}

void Housekeeping::removeDeadWork_()
{
    // The folders are listed before the leases are: a job that is claimed meanwhile is not in the list yet.
    std::vector<std::filesystem::path> folders;
    std::error_code error;
    for (std::filesystem::directory_iterator folder(workFolder_, error), end; !error && folder != end;
         folder.increment(error))
        folders.push_back(folder->path());
    if (folders.empty())
        return;

    const auto live = queue_.liveLeases();
    if (!live)
    {
        spdlog::warn("Old work cannot be removed: {}", live.error());
        return;
    }
    for (const auto& folder : folders)
        if (!live->contains(folder.filename().string()))
            std::filesystem::remove_all(folder, error);
}

} // namespace VX
