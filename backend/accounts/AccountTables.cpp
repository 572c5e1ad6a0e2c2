#include "AccountTables.h"

#include "backend/SqliteSchema.h"

#include <array>

namespace VX
{

namespace
{

// "name" is the address without letter case. Codes are kept by the hash of a name, because there are some for addresses
// without an account too. "kind" is that of a `TokenKind`, "purpose" that of a `CodePurpose`.
constexpr std::array<const char*, 1> schema{R"(
    CREATE TABLE accounts (
        id TEXT PRIMARY KEY NOT NULL,
        name TEXT NOT NULL UNIQUE,
        address TEXT NOT NULL,
        passwordHash TEXT NOT NULL,
        confirmed INTEGER NOT NULL,
        created INTEGER NOT NULL
    ) WITHOUT ROWID;
    CREATE TABLE codes (
        owner TEXT NOT NULL,
        purpose INTEGER NOT NULL,
        hash TEXT NOT NULL,
        expiry INTEGER NOT NULL,
        failures INTEGER NOT NULL DEFAULT 0,
        used INTEGER NOT NULL DEFAULT 0,
        PRIMARY KEY (owner, purpose)
    ) WITHOUT ROWID;
    CREATE TABLE tokens (
        hash TEXT PRIMARY KEY NOT NULL,
        account TEXT NOT NULL,
        kind INTEGER NOT NULL,
        expiry INTEGER NOT NULL,
        revoked INTEGER NOT NULL DEFAULT 0
    ) WITHOUT ROWID;
    CREATE INDEX tokensOfAccount ON tokens(account);
    CREATE INDEX tokensByExpiry ON tokens(expiry);
    CREATE TABLE tries (
        key TEXT PRIMARY KEY NOT NULL,
        count INTEGER NOT NULL,
        last INTEGER NOT NULL
    ) WITHOUT ROWID;
    PRAGMA user_version = 1;
)"};

} // namespace

std::int64_t storedTime(std::chrono::system_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

tl::expected<SqliteDatabase, std::string> openAccountTables(const std::filesystem::path& file,
                                                            SqliteDurability durability)
{
    auto database = SqliteDatabase::open(file, durability);
    if (!database)
        return database;
    if (auto created = createTables(*database, schema); !created)
        return tl::unexpected(std::move(created.error()));
    return database;
}

} // namespace VX
