#pragma once

#include "ConversionRun.h"
#include "StopEvent.h"

#include <VXMesh/ThreadAnnotations.h>

#include <condition_variable>
#include <cstdint>
#include <thread>
#include <vector>

namespace VX
{

/// Runs the jobs of a queue, several at a time, each in a converter process of its own.
class ConversionWorkers
{
public:
    /// How often a worker without a job looks for one of another process: one that the process did not get to, or one
    /// whose lease has run out.
    static constexpr std::chrono::seconds searchInterval{2};

    /// The queue and the store must outlive this object.
    ConversionWorkers(JobQueue& queue, const BlobStore& blobs, ConversionSettings settings);

    /// Kills the converters, gives their jobs back and waits for the threads.
    ~ConversionWorkers();

    ConversionWorkers(const ConversionWorkers&) = delete;
    ConversionWorkers& operator=(const ConversionWorkers&) = delete;

    /// Starts `count` threads, which run jobs from now on. To be called once.
    void start(unsigned count);

    /// Lets idle workers look for a job at once. @threads any
    void wake();

private:
    void work_();
    void waitForWake_(std::uint64_t seen);
    [[nodiscard]] std::uint64_t wakes_();

    JobQueue& queue_;
    const BlobStore& blobs_;
    const ConversionSettings settings_;
    StopEvent stop_;
    Mutex mutex_;
    std::condition_variable_any woken_;
    std::uint64_t wakeCount_ VX_GUARDED_BY(mutex_) = 0;
    std::vector<std::thread> threads_;
};

} // namespace VX
