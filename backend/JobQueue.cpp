#include "JobQueue.h"

#include "RandomUuid.h"
#include "SqliteSchema.h"

#include <fmt/format.h>

#include <array>
#include <utility>

namespace VX
{

namespace
{

constexpr std::array<const char*, 1> schema{R"(
    CREATE TABLE jobs (
        id TEXT PRIMARY KEY NOT NULL,
        state INTEGER NOT NULL,
        attempts INTEGER NOT NULL DEFAULT 0,
        changed INTEGER NOT NULL,
        leaseToken TEXT,
        leaseEnd INTEGER,
        resultKey TEXT,
        message TEXT
    ) WITHOUT ROWID;
    CREATE INDEX openJobs ON jobs(state, changed) WHERE state IN (1, 2);
    PRAGMA user_version = 1;
)"};

constexpr const char* diedText = "The conversion was interrupted twice. Try again; if that does not help, the file may "
                                 "be damaged.";

constexpr std::int64_t number(JobState state)
{
    return static_cast<std::int64_t>(state);
}

// The partial index names the two states by their numbers.
static_assert(number(JobState::Queued) == 1 && number(JobState::Running) == 2);

std::int64_t milliseconds(std::chrono::system_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

/// A running job (?1 is the state, ?2 the time) whose lease ran out. One that ends later than any lease can comes from
/// a time before the clock was set back.
constexpr std::string_view deadLease = "(state = ?1 AND (leaseEnd <= ?2 OR leaseEnd > ?2 + ?3))";

} // namespace

tl::expected<std::unique_ptr<JobQueue>, std::string> JobQueue::open(const std::filesystem::path& file,
                                                                    JobQueueSettings settings)
{
    auto database = SqliteDatabase::open(file);
    if (!database)
        return tl::unexpected(std::move(database.error()));
    std::unique_ptr<JobQueue> queue(new JobQueue(std::move(*database), std::move(settings)));
    if (auto created = queue->createTables_(); !created)
        return tl::unexpected(std::move(created.error()));
    return queue;
}

JobQueue::JobQueue(SqliteDatabase database, JobQueueSettings settings)
    : settings_(std::move(settings))
    , database_(std::move(database))
{
}

tl::expected<void, std::string> JobQueue::createTables_()
{
    const MutexLock lock(mutex_);
    return createTables(database_, schema);
}

void JobQueue::setListener(std::function<void()> listener)
{
    listener_ = std::move(listener);
}

std::int64_t JobQueue::now_() const
{
    return milliseconds(settings_.now());
}

tl::expected<void, std::string> JobQueue::add(const std::string& id)
{
    const MutexLock lock(mutex_);
    return database_.prepare("INSERT INTO jobs(id, state, changed) VALUES (?1, ?2, ?3)")
        .bind(id, number(JobState::Requested), now_())
        .run();
}

/// Runs one UPDATE of a job's state. @return whether it found the job as its conditions ask for
template <typename... Values>
tl::expected<bool, std::string> JobQueue::changeState_(std::string_view sql, const Values&... values)
{
    {
        const MutexLock lock(mutex_);
        if (auto done = database_.prepare(sql).bind(values...).run(); !done)
            return tl::unexpected(std::move(done.error()));
        if (database_.changes() == 0)
            return false;
    }
    notify_();
    return true;
}

void JobQueue::notify_() const
{
    if (listener_)
        listener_();
}

tl::expected<void, std::string> JobQueue::enqueue(const std::string& id)
{
    const auto changed = changeState_("UPDATE jobs SET state = ?2, changed = ?4 WHERE id = ?1 AND state = ?3", id,
                                      number(JobState::Queued), number(JobState::Requested), now_());
    return changed ? tl::expected<void, std::string>() : tl::unexpected(changed.error());
}

tl::expected<std::optional<JobStatus>, std::string> JobQueue::status(const std::string& id)
{
    const MutexLock lock(mutex_);
    auto statement = database_.prepare("SELECT state, resultKey, message FROM jobs WHERE id = ?1");
    const auto row = statement.bind(id).step();
    if (!row)
        return tl::unexpected(row.error());
    if (!*row)
        return std::nullopt;
    return JobStatus{.state = static_cast<JobState>(statement.integer(0)),
                     .resultKey = statement.text(1),
                     .message = statement.text(2)};
}

tl::expected<bool, std::string> JobQueue::hasWork_(std::int64_t now)
{
    auto statement = database_.prepare(
        fmt::format("SELECT 1 FROM jobs WHERE state IN (1, 2) AND (state = ?4 OR {}) LIMIT 1", deadLease));
    return statement.bind(number(JobState::Running), now, longestLease.count(), number(JobState::Queued)).step();
}

tl::expected<bool, std::string> JobQueue::failDeadJobs_(std::int64_t now)
{
    auto done = database_
                    .prepare(fmt::format("UPDATE jobs SET state = ?4, message = ?5, changed = ?2 "
                                         "WHERE {} AND attempts >= ?6",
                                         deadLease))
                    .bind(number(JobState::Running), now, longestLease.count(), number(JobState::Failed), diedText,
                          settings_.maxAttempts)
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return database_.changes() > 0;
}

tl::expected<std::optional<ClaimedJob>, std::string> JobQueue::take_(std::int64_t now)
{
    ClaimedJob job{.id = {}, .leaseToken = randomUuid()};
    auto statement = database_.prepare(
        fmt::format("UPDATE jobs SET state = ?1, attempts = attempts + 1, changed = ?2, "
                    "leaseToken = ?4, leaseEnd = ?2 + ?5 WHERE id = (SELECT id FROM jobs "
                    "WHERE state IN (1, 2) AND (state = ?6 OR {}) ORDER BY changed LIMIT 1) RETURNING id",
                    deadLease));
    statement.bind(number(JobState::Running), now, longestLease.count(), job.leaseToken, settings_.lease.count(),
                   number(JobState::Queued));
    const auto row = statement.step();
    if (!row)
        return tl::unexpected(row.error());
    if (!*row)
        return std::nullopt;
    job.id = statement.text(0);
    if (auto rest = statement.run(); !rest)
        return tl::unexpected(rest.error());
    return job;
}

tl::expected<std::optional<ClaimedJob>, std::string> JobQueue::claim()
{
    tl::expected<bool, std::string> failed;
    tl::expected<std::optional<ClaimedJob>, std::string> job;
    {
        const MutexLock lock(mutex_);
        const std::int64_t now = now_();
        // Reading takes no write lock, so workers with nothing to do stay out of everybody's way.
        if (const auto work = hasWork_(now); !work || !*work)
            return work ? tl::expected<std::optional<ClaimedJob>, std::string>() : tl::unexpected(work.error());

        auto transaction = SqliteTransaction::begin(database_);
        if (!transaction)
            return tl::unexpected(transaction.error());
        if (failed = failDeadJobs_(now); !failed)
            return tl::unexpected(failed.error());
        if (job = take_(now); !job)
            return job;
        if (auto done = transaction->commit(); !done)
            return tl::unexpected(done.error());
    }
    if (*failed)
        notify_();
    return job;
}

tl::expected<bool, std::string> JobQueue::renew(const ClaimedJob& job)
{
    const MutexLock lock(mutex_);
    auto done = database_.prepare("UPDATE jobs SET leaseEnd = ?4 WHERE id = ?1 AND leaseToken = ?2 AND state = ?3")
                    .bind(job.id, job.leaseToken, number(JobState::Running), now_() + settings_.lease.count())
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return database_.changes() > 0;
}

tl::expected<bool, std::string> JobQueue::finish(const ClaimedJob& job, const std::string& resultKey)
{
    return changeState_("UPDATE jobs SET state = ?4, resultKey = ?5, changed = ?6 "
                        "WHERE id = ?1 AND leaseToken = ?2 AND state = ?3",
                        job.id, job.leaseToken, number(JobState::Running), number(JobState::Finished), resultKey,
                        now_());
}

tl::expected<bool, std::string> JobQueue::fail(const ClaimedJob& job, const std::string& message)
{
    return changeState_("UPDATE jobs SET state = ?4, message = ?5, changed = ?6 "
                        "WHERE id = ?1 AND leaseToken = ?2 AND state = ?3",
                        job.id, job.leaseToken, number(JobState::Running), number(JobState::Failed), message, now_());
}

tl::expected<bool, std::string> JobQueue::retry(const ClaimedJob& job, const std::string& message)
{
    return changeState_("UPDATE jobs SET state = CASE WHEN attempts < ?4 THEN ?5 ELSE ?6 END, message = ?7, "
                        "changed = ?8 WHERE id = ?1 AND leaseToken = ?2 AND state = ?3",
                        job.id, job.leaseToken, number(JobState::Running), settings_.maxAttempts,
                        number(JobState::Queued), number(JobState::Failed), message, now_());
}

tl::expected<bool, std::string> JobQueue::giveBack(const ClaimedJob& job)
{
    return changeState_("UPDATE jobs SET state = ?4, attempts = attempts - 1 "
                        "WHERE id = ?1 AND leaseToken = ?2 AND state = ?3",
                        job.id, job.leaseToken, number(JobState::Running), number(JobState::Queued));
}

tl::expected<void, std::string> JobQueue::forgetOlderThan(std::chrono::system_clock::time_point time)
{
    const MutexLock lock(mutex_);
    return database_.prepare("DELETE FROM jobs WHERE changed < ?1 AND state <> ?2")
        .bind(milliseconds(time), number(JobState::Running))
        .run();
}

tl::expected<std::set<std::string>, std::string> JobQueue::liveLeases()
{
    const MutexLock lock(mutex_);
    std::set<std::string> tokens;
    auto statement =
        database_.prepare(fmt::format("SELECT leaseToken FROM jobs WHERE state = ?1 AND NOT {}", deadLease));
    statement.bind(number(JobState::Running), now_(), longestLease.count());
    for (;;)
    {
        const auto row = statement.step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            return tokens;
        tokens.insert(statement.text(0));
    }
}

} // namespace VX
