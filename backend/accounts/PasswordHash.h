#pragma once

#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace VX
{

/// Hashes with argon2id, which costs about 64 MiB and a twentieth of a second on purpose.
/// @return `The service is short of memory: try again.`
/// @threads any
[[nodiscard]] tl::expected<std::string, std::string> hashPassword(std::string_view password);

/// Whether `hash` was made of `password`; it costs as much as `hashPassword`.
/// @threads any
[[nodiscard]] bool isPasswordOf(const std::string& hash, std::string_view password);

/// A hash that no password is known for, for the sake of its cost.
/// @threads any
[[nodiscard]] const std::string& hashOfNobody();

} // namespace VX
