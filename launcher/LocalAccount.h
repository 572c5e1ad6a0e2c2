#pragma once

#include <filesystem>
#include <optional>

namespace VX
{

/// The account that this user has at the services of this computer, so that a fresh installation works at once.
namespace LocalAccount
{

/// Its e-mail address.
inline constexpr const char* address = "local@quorvix.localhost";

/// Sees to it that the services know the account and that its credentials file is there, for this user alone (mode
/// 0600). Takes a moment for the password's hash where the account is new. Several processes may do so at once.
/// @param backend     the program quorvix-backend
/// @param dataFolder  of the services; created where it is missing
/// @return the credentials file, for "-creds"; nothing where it cannot be had, and the log says why
[[nodiscard]] std::optional<std::filesystem::path> provide(const std::filesystem::path& backend,
                                                           const std::filesystem::path& dataFolder);

} // namespace LocalAccount

} // namespace VX
