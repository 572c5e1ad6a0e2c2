#include "TryLimits.h"

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr std::chrono::hours memory{24};

/// How long to wait after the last of `count` tries.
std::chrono::milliseconds pauseAfter(std::int64_t count, const TryPolicy& policy)
{
    if (count < policy.free)
        return {};
    // Beyond 30 doublings every pause is the longest, and the product would overflow at some point.
    const auto doublings = std::min<std::int64_t>(count - policy.free, 30);
    return std::min(policy.firstPause * (std::int64_t{1} << doublings), policy.longestPause);
}

} // namespace

tl::expected<std::unique_ptr<TryLimits>, std::string> TryLimits::open(const std::filesystem::path& file,
                                                                      AccountClock now)
{
    // A count that a power failure loses is no loss.
    auto database = openAccountTables(file, SqliteDurability::ProcessCrash);
    if (!database)
        return tl::unexpected(std::move(database.error()));
    return std::unique_ptr<TryLimits>(new TryLimits(std::move(*database), std::move(now)));
}

TryLimits::TryLimits(SqliteDatabase database, AccountClock now)
    : now_(std::move(now))
    , database_(std::move(database))
{
}

tl::expected<bool, std::string> TryLimits::isBlocked(const std::string& key, const TryPolicy& policy)
{
    const MutexLock lock(mutex_);
    return isBlocked_(key, policy);
}

tl::expected<bool, std::string> TryLimits::isBlocked_(const std::string& key, const TryPolicy& policy)
{
    const auto now = now_();
    auto statement = database_.prepare("SELECT count, last FROM tries WHERE key = ?1 AND last > ?2 AND last <= ?3");
    // What lies ahead comes from a time before the clock was set back.
    auto row = statement.bind(key, storedTime(now - memory), storedTime(now)).step();
    if (!row || !*row)
        return row;
    return storedTime(now) < statement.integer(1) + pauseAfter(statement.integer(0), policy).count();
}

tl::expected<void, std::string> TryLimits::count(const std::string& key)
{
    const MutexLock lock(mutex_);
    return count_(key);
}

tl::expected<void, std::string> TryLimits::count_(const std::string& key)
{
    const auto now = now_();
    return database_
        .prepare("INSERT INTO tries(key, count, last) VALUES (?1, 1, ?2) ON CONFLICT(key) DO UPDATE "
                 "SET count = CASE WHEN last > ?3 THEN count + 1 ELSE 1 END, last = ?2")
        .bind(key, storedTime(now), storedTime(now - memory))
        .run();
}

tl::expected<bool, std::string> TryLimits::take(const std::string& key, const TryPolicy& policy)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto blocked = isBlocked_(key, policy);
    if (!blocked)
        return blocked;
    if (*blocked)
        return false;
    auto done = count_(key);
    if (done)
        done = transaction->commit();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return true;
}

tl::expected<void, std::string> TryLimits::clear(const std::string& key)
{
    const MutexLock lock(mutex_);
    return database_.prepare("DELETE FROM tries WHERE key = ?1").bind(key).run();
}

tl::expected<void, std::string> TryLimits::forgetOld()
{
    const MutexLock lock(mutex_);
    return database_.prepare("DELETE FROM tries WHERE last <= ?1").bind(storedTime(now_() - memory)).run();
}

} // namespace VX
