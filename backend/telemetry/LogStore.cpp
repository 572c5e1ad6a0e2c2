#include "LogStore.h"

#include "backend/SqliteSchema.h"

#include <fmt/format.h>

#include <sodium.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* firstTables = R"(
    CREATE TABLE sessions (
        id INTEGER PRIMARY KEY,
        email TEXT NOT NULL,
        started INTEGER NOT NULL,
        platform TEXT,
        version TEXT
    );
    CREATE TABLE actions (
        id INTEGER PRIMARY KEY,
        session INTEGER NOT NULL,
        name TEXT NOT NULL,
        time INTEGER NOT NULL
    );
    CREATE TABLE lines (
        id INTEGER PRIMARY KEY,
        received INTEGER NOT NULL,
        time TEXT NOT NULL,
        level TEXT NOT NULL,
        service TEXT NOT NULL,
        version TEXT NOT NULL,
        platform TEXT NOT NULL,
        environment TEXT NOT NULL,
        message TEXT NOT NULL
    );
    CREATE INDEX linesByAge ON lines(received);
    PRAGMA user_version = 1;
)";

/// Lines have a user, and none is there twice.
constexpr const char* secondTables = R"(
    ALTER TABLE lines ADD COLUMN account TEXT NOT NULL DEFAULT '';
    ALTER TABLE lines ADD COLUMN identity TEXT;
    CREATE UNIQUE INDEX linesByIdentity ON lines(identity);
    CREATE INDEX linesByTime ON lines(time);
    PRAGMA user_version = 2;
)";

constexpr std::array schema{firstTables, secondTables};

/// The levels from `least` on, each between commas; empty where all are meant.
std::string levelsFrom(std::string_view least)
{
    if (least.empty())
        return {};
    return fmt::format(",{},", fmt::join(std::ranges::find(logLevels, least), logLevels.end(), ","));
}

/// What tells a line from every other. The times of lines are so fine that equal ones are the same.
std::string identityOf(const LoggedLine& line)
{
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, crypto_generichash_BYTES);
    for (const std::string* part : {&line.account, &line.time, &line.level, &line.service, &line.version,
                                    &line.platform, &line.environment, &line.message})
    {
        // The length keeps apart what makes the same text together.
        const std::string text = fmt::format("{}:{}", part->size(), *part);
        crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
    std::array<unsigned char, crypto_generichash_BYTES> digest{};
    crypto_generichash_final(&state, digest.data(), digest.size());
    std::array<char, 2 * crypto_generichash_BYTES + 1> text{};
    sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
    return text.data();
}

std::int64_t milliseconds(std::chrono::system_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

/// Clients written in JavaScript hold no whole number above 2^53.
std::int64_t randomIdentifier()
{
    constexpr std::uint64_t largest = (std::uint64_t{1} << 53U) - 1;
    std::uint64_t value = 0;
    while (value == 0)
    {
        randombytes_buf(&value, sizeof value);
        value &= largest;
    }
    return static_cast<std::int64_t>(value);
}

} // namespace

tl::expected<std::unique_ptr<LogStore>, std::string> LogStore::open(const std::filesystem::path& file)
{
    auto database = SqliteDatabase::open(file);
    if (!database)
        return tl::unexpected(std::move(database.error()));
    if (auto created = createTables(*database, schema); !created)
        return tl::unexpected(std::move(created.error()));
    return std::unique_ptr<LogStore>(new LogStore(std::move(*database)));
}

LogStore::LogStore(SqliteDatabase database)
    : database_(std::move(database))
{
}

tl::expected<std::int64_t, std::string> LogStore::addSession(const std::string& email)
{
    const MutexLock lock(mutex_);
    const std::int64_t id = randomIdentifier();
    auto done = database_.prepare("INSERT INTO sessions(id, email, started) VALUES (?1, ?2, ?3)")
                    .bind(id, email, milliseconds(std::chrono::system_clock::now()))
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return id;
}

tl::expected<bool, std::string> LogStore::addActions(std::int64_t session, const std::vector<LoggedAction>& actions)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto known = database_.prepare("SELECT 1 FROM sessions WHERE id = ?1").bind(session).step();
    if (!known || !*known)
        return known;
    for (const LoggedAction& action : actions)
        if (auto done = database_.prepare("INSERT INTO actions(session, name, time) VALUES (?1, ?2, ?3)")
                            .bind(session, action.name, action.time)
                            .run();
            !done)
            return tl::unexpected(std::move(done.error()));
    if (auto done = transaction->commit(); !done)
        return tl::unexpected(std::move(done.error()));
    return true;
}

tl::expected<bool, std::string> LogStore::setPlatform(std::int64_t session, const std::string& platform,
                                                      const std::string& version)
{
    const MutexLock lock(mutex_);
    auto done = database_.prepare("UPDATE sessions SET platform = ?2, version = ?3 WHERE id = ?1")
                    .bind(session, platform, version)
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return database_.changes() > 0;
}

tl::expected<void, std::string> LogStore::addLines(const std::vector<LoggedLine>& lines)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    const std::int64_t now = milliseconds(std::chrono::system_clock::now());
    for (const LoggedLine& line : lines)
        if (auto done = database_
                            .prepare("INSERT INTO lines(received, time, level, service, version, platform, "
                                     "environment, message, account, identity) "
                                     "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10) "
                                     "ON CONFLICT(identity) DO NOTHING")
                            .bind(now, line.time, line.level, line.service, line.version, line.platform,
                                  line.environment, line.message, line.account, identityOf(line))
                            .run();
            !done)
            return done;
    return transaction->commit();
}

tl::expected<std::vector<LoggedLine>, std::string> LogStore::findLines(const LineFilter& filter)
{
    const MutexLock lock(mutex_);
    std::vector<LoggedLine> lines;
    auto statement = database_.prepare("SELECT account, time, level, service, version, platform, environment, message "
                                       "FROM lines WHERE (?1 = '' OR lower(account) = lower(?1)) "
                                       "AND (?2 = '' OR instr(?2, ',' || level || ',') > 0) "
                                       "AND time >= ?3 AND (?4 = '' OR time < ?4) "
                                       "AND (?5 = '' OR instr(lower(message), lower(?5)) > 0) "
                                       "ORDER BY time DESC, id DESC LIMIT ?6");
    const std::string wantedLevels = levelsFrom(filter.level);
    statement.bind(filter.account, wantedLevels, filter.since, filter.until, filter.text, std::int64_t{filter.limit});
    for (;;)
    {
        const auto row = statement.step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            break;
        lines.push_back({.account = statement.text(0),
                         .time = statement.text(1),
                         .level = statement.text(2),
                         .service = statement.text(3),
                         .version = statement.text(4),
                         .platform = statement.text(5),
                         .environment = statement.text(6),
                         .message = statement.text(7)});
    }
    std::ranges::reverse(lines);
    return lines;
}

tl::expected<std::vector<ActionCount>, std::string> LogStore::actionCounts()
{
    const MutexLock lock(mutex_);
    std::vector<ActionCount> counts;
    auto statement = database_.prepare("SELECT date(time / 1000, 'unixepoch') AS day, name, version, count(*) "
                                       "FROM actions JOIN sessions ON sessions.id = session "
                                       "GROUP BY day, name, version ORDER BY day, name, version");
    for (;;)
    {
        const auto row = statement.step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            return counts;
        counts.push_back({.day = statement.text(0),
                          .name = statement.text(1),
                          .version = statement.text(2),
                          .count = statement.integer(3)});
    }
}

tl::expected<void, std::string> LogStore::forgetLinesOlderThan(std::chrono::system_clock::time_point time)
{
    const MutexLock lock(mutex_);
    return database_.prepare("DELETE FROM lines WHERE received < ?1").bind(milliseconds(time)).run();
}

} // namespace VX
