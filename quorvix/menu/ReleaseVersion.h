#pragma once

#include <quorvix/Export.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace VX
{

/// Major, minor, patch and build of a release. A comparison takes them as numbers, the first that differs decides.
using ReleaseVersion = std::array<std::int32_t, 4>;

/// Reads four numbers with "." between them. Of each, what follows its leading digits does not count, and without
/// digits it is 0; the same goes for a fifth number and what comes behind it.
/// @return nothing where there are fewer than four, and for a development build, which begins with "D"
/// @threads any
[[nodiscard]] QUORVIX_API std::optional<ReleaseVersion> parseReleaseVersion(const std::string& text);

/// "1.10.0.0"
/// @threads any
[[nodiscard]] QUORVIX_API std::string releaseVersionText(const ReleaseVersion& version);

} // namespace VX
