#include "StatsTable.h"

#include "PrintableText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace VX
{

namespace
{

using Row = std::array<std::string, 4>;

} // namespace

std::string statsTable(const std::vector<ActionCount>& counts)
{
    std::vector<Row> rows{{"Day", "Action", "Version", "Count"}};
    for (const ActionCount& count : counts)
        rows.push_back(
            {count.day, printableText(count.name), printableText(count.version), fmt::to_string(count.count)});
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
