#pragma once

#include "backend/SqliteDatabase.h"

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace VX
{

/// Tells the time; tests put in their own.
using AccountClock = std::function<std::chrono::system_clock::time_point()>;

/// Milliseconds since 1970, as the tables hold times.
/// @threads any
[[nodiscard]] std::int64_t storedTime(std::chrono::system_clock::time_point time);

/// Opens the database of the accounts and creates it, with its tables, where it is missing.
/// @return an error of `SqliteDatabase` or `createTables`
/// @threads any
[[nodiscard]] tl::expected<SqliteDatabase, std::string> openAccountTables(const std::filesystem::path& file,
                                                                          SqliteDurability durability);

} // namespace VX
