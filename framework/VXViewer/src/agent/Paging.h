#pragma once

#include "AgentArguments.h"

#include <json/value.h>
#include <tl/expected.hpp>

#include <algorithm>
#include <cstddef>
#include <string>

namespace VX
{

/// A part of a list that is too long for one answer: the arguments "limit" and "cursor", and "total" and "nextCursor"
/// of the result. A cursor is the number of the entry that comes next.
class Paging
{
public:
    static constexpr int usualLimit = 100;
    static constexpr int mostAtOnce = 1000;

    /// @return `The cursor "…" is none that a list gave. …`
    [[nodiscard]] static tl::expected<Paging, std::string> of(const AgentArguments& arguments);

    [[nodiscard]] std::size_t begin(std::size_t total) const { return std::min(first_, total); }

    [[nodiscard]] std::size_t end(std::size_t total) const { return std::min(first_ + limit_, total); }

    /// Adds "total" and, where something is left, "nextCursor".
    void describe(Json::Value& result, std::size_t total) const;

    [[nodiscard]] static Json::Value limitSchema();
    [[nodiscard]] static Json::Value cursorSchema();
    [[nodiscard]] static Json::Value totalSchema();
    [[nodiscard]] static Json::Value nextCursorSchema();

private:
    std::size_t first_ = 0;
    std::size_t limit_ = usualLimit;
};

} // namespace VX
