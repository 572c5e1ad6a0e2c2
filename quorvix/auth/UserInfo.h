#pragma once

#include <quorvix/Export.h>

#include <string>

namespace VX
{

/// What the running program knows of its user; one record for the process, empty at first.
/// The strings that the getters return live as long as the process; copy them at once, they do not follow later
/// changes.
class QUORVIX_API UserInfo
{
public:
    UserInfo() = delete;

    /// The address of the signed-in user; empty while nobody is signed in.
    /// @threads any
    [[nodiscard]] static const std::string& getEmail();

    /// With an address: telemetry is allowed or not, after the setting "allowSimpleTelemetry" (on where there is none)
    /// and the command line, a telemetry session is asked for and the action "Sign In" reported. Without one: the
    /// action "Sign Out" is sent with what else is waiting, and the session ends. Then the window's title has the
    /// address, and last `getEmail` does: what is sent at a sign-out still bears the old one.
    /// @threads the UI thread
    static void setEmail(std::string email);

    /// The token that the services take as proof of the sign-in; empty while nobody is signed in.
    /// @threads any
    [[nodiscard]] static const std::string& getAccessToken();

    /// At a sign-in the token is set before the address.
    /// @threads any
    static void setAccessToken(std::string token);

    /// Whether there is both an address and a token.
    /// @threads any
    [[nodiscard]] static bool isUserSet();
};

} // namespace VX
