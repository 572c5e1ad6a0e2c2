#pragma once

#include <net/HttpServer.h>

#include <cstdint>
#include <optional>

namespace VX
{

/// The length of the body that the head of a request announces; nothing where it does not.
[[nodiscard]] std::optional<std::uint64_t> announcedLength(const HttpRequest& head);

} // namespace VX
