#pragma once

#include "SqliteDatabase.h"

#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// Creates the tables of a database that has none yet. Of several processes that do so at the same moment one does it.
/// @param version  of the tables, above 0; a database with a greater one belongs to a newer version of the service
/// @param tables   statements that create them and end with "PRAGMA user_version = VERSION"
/// @return an error of `SqliteDatabase`, or `The database was written by a newer version: update this one.`
[[nodiscard]] tl::expected<void, std::string> createTables(SqliteDatabase& database, int version, const char* tables);

} // namespace VX
