#include "AnnouncedLength.h"

#include <charconv>
#include <string>
#include <system_error>

namespace VX
{

std::optional<std::uint64_t> announcedLength(const HttpRequest& head)
{
    const auto header = head.headers.find("Content-Length");
    if (header == head.headers.end())
        return std::nullopt;
    const std::string& text = header->second;
    std::uint64_t length = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), length);
    return parsed.ec == std::errc() ? std::optional(length) : std::nullopt;
}

} // namespace VX
