#pragma once

#include "JobQueue.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace VX
{

/// How far a job is in the eyes of its client, who does not care whether a worker has got to it.
enum class JobPhase
{
    NotStarted, ///< the conversion was not asked for
    InProgress,
    Finished,
    Failed
};

[[nodiscard]] JobPhase jobPhase(JobState state);

/// Holds questions for the status of jobs until there is news. One thread serves any number of them: it is woken by
/// the changes of this process, and looks for those of others every now and then while somebody waits.
class StatusWaiters
{
public:
    /// What the queue answered: nothing where there is no such job.
    using Status = tl::expected<std::optional<JobStatus>, std::string>;
    using Answer = std::function<void(const Status& status)>;

    /// How often changes by other processes are looked for.
    static constexpr std::chrono::milliseconds searchInterval{150};

    /// @param hold  how long a question waits for news
    StatusWaiters(JobQueue& queue, std::chrono::milliseconds hold);

    /// Drops the questions that are still waiting.
    ~StatusWaiters();

    StatusWaiters(const StatusWaiters&) = delete;
    StatusWaiters& operator=(const StatusWaiters&) = delete;

    /// Calls `answer` once: in place where the job has ended, is unknown, or the queue fails; else on the thread of
    /// this object, when the job's phase changes or the time of waiting is over.
    /// @threads any
    void wait(std::string id, Answer answer);

    /// Looks at all jobs that are waited for. @threads any
    void wake();

private:
    struct Waiter
    {
        std::string id;
        JobPhase phase; ///< as it was when the question came
        std::chrono::steady_clock::time_point until;
        Answer answer;
    };

    void serve_();
    [[nodiscard]] bool waitForNews_(std::vector<Waiter>& waiters);
    [[nodiscard]] std::vector<Waiter> answer_(std::vector<Waiter> waiters);

    JobQueue& queue_;
    const std::chrono::milliseconds hold_;
    Mutex mutex_;
    std::condition_variable_any news_;
    std::vector<Waiter> added_ VX_GUARDED_BY(mutex_);
    bool woken_ VX_GUARDED_BY(mutex_) = false;
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

} // namespace VX
