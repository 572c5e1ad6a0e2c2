#pragma once

#include <quorvix/Export.h>

#include <string>

namespace VX
{

/// What the running program knows of its user; one record for the process.
class QUORVIX_API UserInfo
{
public:
    UserInfo() = delete;

    /// The token that the services take as proof of the sign-in; empty while nobody is signed in.
    /// @return a string that lives as long as the process; copy it at once, it does not follow later changes
    /// @threads any
    [[nodiscard]] static const std::string& getAccessToken();

    /// @threads any
    static void setAccessToken(std::string token);
};

} // namespace VX
