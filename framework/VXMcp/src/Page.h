#pragma once

#include "Registry.h"
#include "Wire.h"

#include <json/value.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX::Mcp
{

/// Entries of one page of a list.
constexpr std::size_t pageSize = 100;
/// What a cursor begins with; the name of the last entry before the page follows.
constexpr std::string_view cursorPrefix = "after:";

/// One page of a list, in the order of names: what is added or removed between two pages makes neither skip others.
/// @param key     the member of the result that has the list
/// @param cursor  as the client sent it, null for the first page
/// @return empty where the cursor is none of ours
template <typename T>
[[nodiscard]] std::optional<Json::Value> makePage(const Registry::Table<T>& table, const char* key,
                                                  const Json::Value& cursor)
{
    auto entry = table.begin();
    if (!cursor.isNull())
    {
        const std::string text = cursor.isString() ? cursor.asString() : std::string();
        if (!text.starts_with(cursorPrefix))
            return std::nullopt;
        entry = table.upper_bound(text.substr(cursorPrefix.size()));
    }
    Json::Value out(Json::objectValue);
    Json::Value& list = out[key] = Json::Value(Json::arrayValue);
    std::string last;
    for (; entry != table.end() && list.size() < pageSize; ++entry)
    {
        last = entry->first;
        list.append(toWire(*entry->second));
    }
    if (entry != table.end())
        out["nextCursor"] = std::string(cursorPrefix) + last;
    return out;
}

} // namespace VX::Mcp
