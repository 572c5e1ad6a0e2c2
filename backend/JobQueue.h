#pragma once

#include "SqliteDatabase.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace VX
{

/// How far a conversion is.
enum class JobState
{
    Requested, ///< the client may upload; nobody has asked for the conversion
    Queued,    ///< waits for a worker
    Running,
    Finished,
    Failed
};

/// What the queue knows about a job.
struct JobStatus
{
    JobState state = JobState::Requested;
    std::string resultKey; ///< of the result's blob, where finished
    std::string message;   ///< why it failed, for the user
};

/// A job that a worker may run for as long as it keeps the lease.
struct ClaimedJob
{
    std::string id;
    std::string leaseToken; ///< a UUID, different for each claim
};

/// How a `JobQueue` works.
struct JobQueueSettings
{
    /// How long a claimed job belongs to its worker without being renewed; at most `JobQueue::longestLease`. The same
    /// for all processes over one database.
    std::chrono::milliseconds lease = std::chrono::seconds(10);
    /// How often a job is started before a worker that died on it makes it fail.
    int maxAttempts = 2;
    std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
};

/// The conversions of one data folder, kept in its database, so that they survive a restart and several processes can
/// work on them. A worker claims a job together with a lease and renews that; a lease that ran out belongs to a worker
/// that died, and the job can be claimed again. Whatever a worker reports counts only while its lease token is still
/// that of the job, so one that comes too late changes nothing.
///
/// Errors are those of `SqliteDatabase`, and of `open` also `The database NAME was written by a newer version: update
/// this one.`
/// @threads any; several processes at once
class JobQueue
{
public:
    static constexpr std::chrono::milliseconds longestLease = std::chrono::minutes(5);

    [[nodiscard]] static tl::expected<std::unique_ptr<JobQueue>, std::string> open(const std::filesystem::path& file,
                                                                                   JobQueueSettings settings = {});

    /// `listener` is called after each change that this object made to a job's state, without any lock held.
    /// Call it before other threads use the queue.
    void setListener(std::function<void()> listener);

    /// Adds the job `id`, in the state `Requested`.
    [[nodiscard]] tl::expected<void, std::string> add(const std::string& id);

    /// Queues a job that was only requested so far; any other stays as it is.
    [[nodiscard]] tl::expected<void, std::string> enqueue(const std::string& id);

    /// @return nothing where there is no such job
    [[nodiscard]] tl::expected<std::optional<JobStatus>, std::string> status(const std::string& id);

    /// Takes the job that has waited longest, or one whose worker died. A job whose worker died for the last time that
    /// the settings allow becomes `Failed` instead.
    /// @return nothing where no job is to be done
    [[nodiscard]] tl::expected<std::optional<ClaimedJob>, std::string> claim();

    /// Begins the lease anew.
    /// @return false where the job belongs to somebody else by now
    [[nodiscard]] tl::expected<bool, std::string> renew(const ClaimedJob& job);

    /// @return false where the job belongs to somebody else by now: `resultKey` is then not referred to
    [[nodiscard]] tl::expected<bool, std::string> finish(const ClaimedJob& job, const std::string& resultKey);

    /// @return false where the job belongs to somebody else by now
    [[nodiscard]] tl::expected<bool, std::string> fail(const ClaimedJob& job, const std::string& message);

    /// Queues the job once more; where it was started as often as the settings allow it fails with `message`.
    /// @return false where the job belongs to somebody else by now
    [[nodiscard]] tl::expected<bool, std::string> retry(const ClaimedJob& job, const std::string& message);

    /// Queues the job again as if it had not been started, for a service that is being stopped.
    /// @return false where the job belongs to somebody else by now
    [[nodiscard]] tl::expected<bool, std::string> giveBack(const ClaimedJob& job);

    /// Forgets the jobs that have not changed since `time` and are not running.
    [[nodiscard]] tl::expected<void, std::string> forgetOlderThan(std::chrono::system_clock::time_point time);

    /// The tokens of the leases that have not run out.
    [[nodiscard]] tl::expected<std::set<std::string>, std::string> liveLeases();

private:
    JobQueue(SqliteDatabase database, JobQueueSettings settings);
    [[nodiscard]] tl::expected<void, std::string> createTables_();
    [[nodiscard]] tl::expected<bool, std::string> hasWork_(std::int64_t now) VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<bool, std::string> failDeadJobs_(std::int64_t now) VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<std::optional<ClaimedJob>, std::string> take_(std::int64_t now) VX_REQUIRES(mutex_);
    template <typename... Values>
    [[nodiscard]] tl::expected<bool, std::string> changeState_(std::string_view sql, const Values&... values);
    void notify_() const;
    [[nodiscard]] std::int64_t now_() const;

    const JobQueueSettings settings_;
    std::function<void()> listener_;
    Mutex mutex_;
    SqliteDatabase database_ VX_GUARDED_BY(mutex_);
};

} // namespace VX
