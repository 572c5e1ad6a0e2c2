#include <quorvix/menu/ReleaseVersion.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace VX
{

namespace
{

/// What `std::atoi` makes of it; a number too large for it becomes the largest.
std::int32_t leadingNumber(const char* text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    constexpr int decimal = 10;
    return static_cast<std::int32_t>(
        std::clamp<long>(std::strtol(text, nullptr, decimal), Limits::min(), Limits::max()));
}

} // namespace

std::optional<ReleaseVersion> parseReleaseVersion(const std::string& text)
{
    if (text.starts_with('D'))
        return std::nullopt;
    ReleaseVersion version{};
    std::size_t position = 0;
    for (std::size_t i = 0; i + 1 < version.size(); ++i)
    {
        const std::size_t point = text.find('.', position);
        if (point == std::string::npos)
            return std::nullopt;
        version.at(i) = leadingNumber(text.c_str() + position);
        position = point + 1;
    }
    version.back() = leadingNumber(text.c_str() + position);
    return version;
}

std::string releaseVersionText(const ReleaseVersion& version)
{
    return fmt::format("{}", fmt::join(version, "."));
}

} // namespace VX
