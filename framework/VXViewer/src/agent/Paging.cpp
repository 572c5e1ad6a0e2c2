#include "Paging.h"

#include "AgentSchema.h"

#include <fmt/format.h>

#include <charconv>

namespace VX
{

tl::expected<Paging, std::string> Paging::of(const AgentArguments& arguments)
{
    Paging paging;
    paging.limit_ = static_cast<std::size_t>(std::clamp(arguments.integer("limit", usualLimit), 1, mostAtOnce));
    const std::string cursor = arguments.text("cursor");
    if (cursor.empty())
        return paging;
    const char* last = cursor.data() + cursor.size();
    const auto [end, error] = std::from_chars(cursor.data(), last, paging.first_);
    if (error != std::errc() || end != last || paging.first_ > SIZE_MAX / 2)
        return tl::unexpected(
            fmt::format("The cursor \"{}\" is none that a list gave. Leave it out to begin at the start.", cursor));
    return paging;
}

void Paging::describe(Json::Value& result, std::size_t total) const
{
    result["total"] = Json::UInt64(total);
    if (end(total) < total)
        result["nextCursor"] = std::to_string(end(total));
}

Json::Value Paging::limitSchema()
{
    return AgentSchema::integer("Entries in one answer, 100 if left out.", 1, mostAtOnce);
}

Json::Value Paging::cursorSchema()
{
    return AgentSchema::text("\"nextCursor\" of the answer before, for what comes behind it. The list is counted anew "
                             "each time: if it changed meanwhile, begin again without a cursor.");
}

Json::Value Paging::totalSchema()
{
    return AgentSchema::count("Entries in the whole list.");
}

Json::Value Paging::nextCursorSchema()
{
    return AgentSchema::text("Call again with this as \"cursor\" for the entries that follow; missing at the end.");
}

} // namespace VX
