#pragma once

#include "LineFilter.h"
#include "backend/SqliteDatabase.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// Something that a user did.
struct LoggedAction
{
    std::string name;
    std::int64_t time = 0; ///< milliseconds since 1970, of the user's clock
};

/// A line of an application's log.
struct LoggedLine
{
    std::string account; ///< the address of the user who sent it; empty where another provider has the accounts
    std::string time;    ///< a `fullLogTime`
    std::string level;
    std::string service;
    std::string version;
    std::string platform;
    std::string environment;
    std::string message;
};

/// How often one action was done with one version on one day.
struct ActionCount
{
    std::string day; ///< "2025-01-31", in UTC
    std::string name;
    std::string version; ///< empty where the session has not told it
    std::int64_t count = 0;
};

/// What applications report about their use, and their log lines.
///
/// Errors are those of `SqliteDatabase` and `createTables`.
/// @threads any; several processes at once
class LogStore
{
public:
    [[nodiscard]] static tl::expected<std::unique_ptr<LogStore>, std::string> open(const std::filesystem::path& file);

    /// @return the identifier of the new session: random, above 0, and exact as a floating-point number too
    [[nodiscard]] tl::expected<std::int64_t, std::string> addSession(const std::string& email);

    /// All or none. @return false where there is no such session
    [[nodiscard]] tl::expected<bool, std::string> addActions(std::int64_t session,
                                                             const std::vector<LoggedAction>& actions);

    /// @return false where there is no such session
    [[nodiscard]] tl::expected<bool, std::string> setPlatform(std::int64_t session, const std::string& platform,
                                                              const std::string& version);

    /// All or none. A line that equals a stored one in everything is that line, sent once more, and changes nothing.
    [[nodiscard]] tl::expected<void, std::string> addLines(const std::vector<LoggedLine>& lines);

    /// In the order of their times.
    [[nodiscard]] tl::expected<std::vector<LoggedLine>, std::string> findLines(const LineFilter& filter);

    /// Ordered by day, name and version.
    [[nodiscard]] tl::expected<std::vector<ActionCount>, std::string> actionCounts();

    /// Removes the log lines that came before `time`.
    [[nodiscard]] tl::expected<void, std::string> forgetLinesOlderThan(std::chrono::system_clock::time_point time);

private:
    explicit LogStore(SqliteDatabase database);

    Mutex mutex_;
    SqliteDatabase database_ VX_GUARDED_BY(mutex_);
};

} // namespace VX
