#pragma once

#include "SqliteDatabase.h"

#include <tl/expected.hpp>

#include <span>
#include <string>

namespace VX
{

/// Creates the tables of a database that has none yet, and changes those of an earlier version of the service. Of
/// several processes that do so at the same moment one does it.
/// @param steps  statements that lead from each version of the tables to the next one, from an empty database (0) on;
///               the n-th ends with "PRAGMA user_version = n", counted from 1. A database with a greater version
///               belongs to a newer version of the service.
/// @return an error of `SqliteDatabase`, or `The database was written by a newer version: update this one.`
[[nodiscard]] tl::expected<void, std::string> createTables(SqliteDatabase& database,
                                                           std::span<const char* const> steps);

} // namespace VX
