#pragma once

#include <quorvix/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// E-mail address and password for a sign-in without the user.
struct Credentials
{
    std::string email;
    std::string password;
};

/// Whether `text` can be an e-mail address: as a whole `[^ @\\/]+@[^ @\\/]+\.\w+`.
/// @threads any
[[nodiscard]] QUORVIX_API bool isValidEmail(std::string_view text);

/// Reads the file that the argument "-creds FILE" of the viewer names, the last one where there are several: a JSON
/// object with the texts "email" and "password".
/// @return nothing without such an argument; nothing either, with one of these warnings in the log, where the file
///         cannot be used: "Cannot read credentials file: REASON", "Credentials file is invalid" (a member is missing
///         or empty), "Credentials file: email is invalid". A file that other users may read is used, and the log warns
///         of that.
/// @threads the UI thread
[[nodiscard]] QUORVIX_API std::optional<Credentials> readCredentials();

} // namespace VX
