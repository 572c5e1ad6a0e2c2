#include "SqliteSchema.h"

#include <cstdint>

namespace VX
{

namespace
{

tl::expected<std::int64_t, std::string> versionOf(SqliteDatabase& database)
{
    auto statement = database.prepare("PRAGMA user_version");
    if (const auto row = statement.step(); !row)
        return tl::unexpected(row.error());
    return statement.integer(0);
}

} // namespace

tl::expected<void, std::string> createTables(SqliteDatabase& database, int version, const char* tables)
{
    // Read twice: without a lock, which is all that a later start needs, and again once no other process can create.
    auto found = versionOf(database);
    if (found && *found == 0)
    {
        auto transaction = SqliteTransaction::begin(database);
        if (!transaction)
            return tl::unexpected(transaction.error());
        found = versionOf(database);
        if (found && *found == 0)
        {
            if (auto created = database.execute(tables); !created)
                return created;
            return transaction->commit();
        }
    }
    if (!found)
        return tl::unexpected(found.error());
    if (*found > version)
        return tl::unexpected(std::string("The database was written by a newer version: update this one."));
    return {};
}

} // namespace VX
