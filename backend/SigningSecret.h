#pragma once

#include <tl/expected.hpp>

#include <array>
#include <filesystem>
#include <string>

namespace VX
{

/// The key that presigned links are signed with.
using SigningSecret = std::array<unsigned char, 32>;

/// Reads the secret in `file`, or makes a random one and keeps it there with mode 0600. Of several processes that make
/// one at the same moment all get the same.
/// @return `The key for links cannot be read: REASON.`, `The key for links cannot be written: REASON.` or `The key for
/// links is damaged: remove the file "NAME" and start the service again.`
/// @threads any
[[nodiscard]] tl::expected<SigningSecret, std::string> loadOrCreateSecret(const std::filesystem::path& file);

} // namespace VX
