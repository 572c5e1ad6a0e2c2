#pragma once

#include "AccountTables.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

namespace VX
{

/// How often something may be tried: `free` times, and then after a pause that doubles with each further try. After a
/// day without a try all are free again.
struct TryPolicy
{
    int free = 5;
    std::chrono::milliseconds firstPause = std::chrono::seconds(1);
    std::chrono::milliseconds longestPause = std::chrono::minutes(15);
};

/// Counts tries by a key. Counts are kept in the database of the accounts, so that a restart does not clear them and
/// all processes over one data folder count together.
///
/// Errors are those of `openAccountTables` and `SqliteDatabase`.
/// @threads any; several processes at once
class TryLimits
{
public:
    [[nodiscard]] static tl::expected<std::unique_ptr<TryLimits>, std::string>
    open(const std::filesystem::path& file, AccountClock now = std::chrono::system_clock::now);

    /// Whether the next try of `key` has to wait.
    [[nodiscard]] tl::expected<bool, std::string> isBlocked(const std::string& key, const TryPolicy& policy);

    /// Counts a try of `key`.
    [[nodiscard]] tl::expected<void, std::string> count(const std::string& key);

    /// Counts a try of `key` unless that has to wait. @return whether it was counted
    [[nodiscard]] tl::expected<bool, std::string> take(const std::string& key, const TryPolicy& policy);

    /// Makes all tries of `key` free again.
    [[nodiscard]] tl::expected<void, std::string> clear(const std::string& key);

    /// Removes counts that no longer matter.
    [[nodiscard]] tl::expected<void, std::string> forgetOld();

private:
    TryLimits(SqliteDatabase database, AccountClock now);
    [[nodiscard]] tl::expected<bool, std::string> isBlocked_(const std::string& key, const TryPolicy& policy)
        VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<void, std::string> count_(const std::string& key) VX_REQUIRES(mutex_);

    const AccountClock now_;
    Mutex mutex_;
    SqliteDatabase database_ VX_GUARDED_BY(mutex_);
};

} // namespace VX
