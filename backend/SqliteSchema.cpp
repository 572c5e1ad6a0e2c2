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

tl::expected<void, std::string> createTables(SqliteDatabase& database, std::span<const char* const> steps)
{
    const auto newest = static_cast<std::int64_t>(steps.size());
    // Read twice: without a lock, which is all that a later start needs, and again once no other process can change it.
    auto found = versionOf(database);
    if (found && *found < newest)
    {
        auto transaction = SqliteTransaction::begin(database);
        if (!transaction)
            return tl::unexpected(transaction.error());
        found = versionOf(database);
        if (found && *found < newest)
        {
            for (const char* step : steps.subspan(static_cast<std::size_t>(*found)))
                if (auto done = database.execute(step); !done)
                    return done;
            return transaction->commit();
        }
    }
    if (!found)
        return tl::unexpected(found.error());
    if (*found > newest)
        return tl::unexpected(std::string("The database was written by a newer version: update this one."));
    return {};
}

} // namespace VX
