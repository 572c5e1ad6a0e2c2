#pragma once

#include <quorvix/Export.h>

#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// Checks the base URL of a service: https, or http to a loopback address (127.0.0.0/8, ::1 or localhost); with a host
/// and perhaps a port and a path, without user name, query and fragment.
/// @return `text` without a "/" at its end; or what is wrong with it, to be put behind its name: "is not a URL",
///         "must begin with https:// (or http:// for this computer)" …
/// @threads any
[[nodiscard]] QUORVIX_API tl::expected<std::string, std::string> parseBaseUrl(const std::string& text);

} // namespace VX
