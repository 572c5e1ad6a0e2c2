#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <thread>

namespace VX
{

class BlobStore;
class JobQueue;

/// Removes what nobody needs any more: jobs, uploads and results after their time, and what a crash left behind.
/// It does so on a thread of its own: at the start, once more when the leases of that time have run out, and then every
/// hour.
class Housekeeping
{
public:
    static constexpr std::chrono::hours interval{1};

    /// @param workFolder  the folder with one folder for each running conversion
    /// @param keep        how long jobs and blobs stay
    /// @param lease       as the queue's
    /// @param more        is called each time too, on the same thread
    Housekeeping(
        JobQueue& queue, const BlobStore& blobs, std::filesystem::path workFolder, std::chrono::seconds keep,
        std::chrono::milliseconds lease, std::function<void()> more = [] {});
    ~Housekeeping();

    Housekeeping(const Housekeeping&) = delete;
    Housekeeping& operator=(const Housekeeping&) = delete;

private:
    void work_();
    void clean_();
    void removeDeadWork_();
    [[nodiscard]] bool sleep_(std::chrono::milliseconds time);

    JobQueue& queue_;
    const BlobStore& blobs_;
    const std::filesystem::path workFolder_;
    const std::chrono::seconds keep_;
    const std::chrono::milliseconds lease_;
    const std::function<void()> more_;
    Mutex mutex_;
    std::condition_variable_any stopped_;
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

} // namespace VX
