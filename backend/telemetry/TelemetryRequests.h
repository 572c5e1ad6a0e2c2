#pragma once

#include "LogItemsReader.h"
#include "LogStore.h"

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace VX
{

/// The body of POST /stats/log.
struct StatsRequest
{
    enum class Type
    {
        CreateSession,
        LogAction,
        SetPlatform
    };

    Type type = Type::CreateSession;
    std::string email;                 ///< of `CreateSession`
    std::int64_t session = 0;          ///< of the others
    std::vector<LoggedAction> actions; ///< of `LogAction`
    std::string platform;              ///< of `SetPlatform`
    std::string version;               ///< of `SetPlatform`

    /// Reads a JSON object whose "type" says what it is.
    /// @return one sentence about what is missing, of the wrong type or too long
    [[nodiscard]] static tl::expected<StatsRequest, std::string> parse(const std::string& body);
};

/// Reads the next lines of the body of POST /v1/logs, {"items":[…]}. Of a message the first 64 KiB count.
/// @param most  lines that are read, above 0
/// @return the lines, without an account, none at the end; or one sentence about what is missing, of the wrong type or
///         too long
[[nodiscard]] tl::expected<std::vector<LoggedLine>, std::string> readLogLines(LogItemsReader& items, std::size_t most);

} // namespace VX
