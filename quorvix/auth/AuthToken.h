#pragma once

#include <quorvix/Export.h>

#include <string>

namespace VX
{

/// What is kept of a sign-in until the next start; all empty: nothing is.
struct AuthToken
{
    std::string login;    ///< the user's e-mail address
    std::string token;    ///< the refresh token of the identity service
    std::string endpoint; ///< `Cognito::getEndpoint(login)`

    friend bool operator==(const AuthToken&, const AuthToken&) = default;
};

/// Reads getUserConfigDir()/Token/.token, a JSON object with the members of `AuthToken`.
/// @return the record; an empty one where there is no file, it is not JSON, or "token" or "endpoint" is not a text
/// @threads any
[[nodiscard]] QUORVIX_API AuthToken loadAuthToken();

/// Writes that file, for this user alone (mode 0600 in a folder of mode 0700), complete or not at all, and never
/// through a symbolic link in place of the file or its folder. Without the folder the log has "Cannot create folder..."
/// (level error) and nothing is written; what else may fail is not reported.
/// @threads any
QUORVIX_API void saveAuthToken(const AuthToken& token);

} // namespace VX
