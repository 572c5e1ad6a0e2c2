#include "StatsTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace VX
{

namespace
{

using Row = std::array<std::string, 4>;

/// Names come from outside: what would move the cursor of a terminal is shown as "?".
std::string printable(std::string text)
{
    std::ranges::replace_if(text, [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return text;
}

} // namespace

std::string statsTable(const std::vector<ActionCount>& counts)
{
    std::vector<Row> rows{{"Day", "Action", "Version", "Count"}};
    for (const ActionCount& count : counts)
        rows.push_back({count.day, printable(count.name), printable(count.version), fmt::to_string(count.count)});
    std::array<std::size_t, 4> widths{};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    std::string table;
    for (const Row& row : rows)
        table += fmt::format("{:<{}}  {:<{}}  {:<{}}  {:>{}}\n", row[0], widths[0], row[1], widths[1], row[2],
                             widths[2], row[3], widths[3]);
    return table;
}

} // namespace VX
