#include "StatusWaiters.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace VX
{

namespace
{

using Clock = std::chrono::steady_clock;

bool hasEnded(JobPhase phase)
{
    return phase == JobPhase::Finished || phase == JobPhase::Failed;
}

/// Nothing where there is no such job, or the queue failed.
std::optional<JobPhase> phaseOf(const StatusWaiters::Status& status)
{
    const std::optional<JobStatus> known = status.value_or(std::nullopt);
    return known ? std::optional(jobPhase(known->state)) : std::nullopt;
}

} // namespace

JobPhase jobPhase(JobState state)
{
    switch (state)
    {
    case JobState::Requested:
        return JobPhase::NotStarted;
    case JobState::Queued:
    case JobState::Running:
        return JobPhase::InProgress;
    case JobState::Finished:
        return JobPhase::Finished;
    case JobState::Failed:
        break;
    }
    return JobPhase::Failed;
}

StatusWaiters::StatusWaiters(JobQueue& queue, std::chrono::milliseconds hold)
    : queue_(queue)
    , hold_(hold)
    , thread_([this] { serve_(); })
{
}

StatusWaiters::~StatusWaiters()
{
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
    }
    news_.notify_all();
    thread_.join();
}

void StatusWaiters::wait(std::string id, Answer answer)
{
    const Status status = queue_.status(id);
    const std::optional<JobPhase> phase = phaseOf(status);
    if (!phase || hasEnded(*phase))
        return answer(status);
    {
        const MutexLock lock(mutex_);
        added_.push_back(
            {.id = std::move(id), .phase = *phase, .until = Clock::now() + hold_, .answer = std::move(answer)});
    }
    // The thread looks at the job once at least, so that a change since the question above is not missed.
    news_.notify_all();
}

void StatusWaiters::wake()
{
    {
        const MutexLock lock(mutex_);
        woken_ = true;
    }
    news_.notify_all();
}

void StatusWaiters::serve_()
{
    std::vector<Waiter> waiters;
    while (waitForNews_(waiters))
        waiters = answer_(std::move(waiters));
}

/// Sleeps until `waiters`, to which it adds the new ones, are to be looked at. @return false at the end
bool StatusWaiters::waitForNews_(std::vector<Waiter>& waiters)
{
    auto until = Clock::now() + searchInterval;
    for (const Waiter& waiter : waiters)
        until = std::min(until, waiter.until);

    MutexLock lock(mutex_);
    while (!stopping_ && !woken_ && added_.empty())
    {
        if (waiters.empty())
            news_.wait(lock);
        else if (news_.wait_until(lock, until) == std::cv_status::timeout)
            break;
    }
    woken_ = false;
    std::ranges::move(added_, std::back_inserter(waiters));
    added_.clear();
    return !stopping_;
}

/// Answers those for whom there is news or no time left. @return the others
std::vector<StatusWaiters::Waiter> StatusWaiters::answer_(std::vector<Waiter> waiters)
{
    std::map<std::string, Status> known;
    std::vector<Waiter> waiting;
    const auto now = Clock::now();
    for (Waiter& waiter : waiters)
    {
        auto found = known.find(waiter.id);
        if (found == known.end())
            found = known.emplace(waiter.id, queue_.status(waiter.id)).first;
        const Status& status = found->second;
        if (phaseOf(status) == waiter.phase && now < waiter.until)
            waiting.push_back(std::move(waiter));
        else
            waiter.answer(status);
    }
    return waiting;
}

} // namespace VX
