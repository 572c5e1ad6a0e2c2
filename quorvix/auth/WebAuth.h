#pragma once

#include <quorvix/Export.h>

#include <functional>
#include <memory>
#include <string>

namespace VX
{

/// Sign-in by the pages of the web application. The browser ends it with a deep link, which the system hands to a new
/// process of the program (`processDeepLinkAuth`).
/// @threads any one at a time
class QUORVIX_API WebAuthInterface
{
public:
    WebAuthInterface() = default;
    virtual ~WebAuthInterface();

    WebAuthInterface(const WebAuthInterface&) = delete;
    WebAuthInterface& operator=(const WebAuthInterface&) = delete;

    /// These three open a page of the web application in the user's browser, and wait for nothing.
    virtual void openSignIn() = 0;
    virtual void openSignUp() = 0;
    virtual void openForgotPassword() = 0;

    /// Wakes every instance of the program, this one too, to read the stored sign-in again.
    virtual void notifyAboutSignOut() = 0;
};

/// Listens on the channel of the default name from now on.
/// @param onNotified  called once for each notification on a thread of its own, until the object is destroyed, which
///                    must not happen on that thread
[[nodiscard]] QUORVIX_API std::unique_ptr<WebAuthInterface> makeDefaultWebAuth(const std::function<void()>& onNotified);

/// Names the channel on which the instances of the program meet: "PREFIX_1". Called once, before any other thread asks
/// for the name.
QUORVIX_API void setDefaultSharedMemoryNamePrefix(const std::string& prefix);

/// Empty until the prefix is set.
/// @threads any
[[nodiscard]] QUORVIX_API const std::string& getDefaultSharedMemoryName();

/// Hands over the deep link of the command line, the argument after the last "-url".
/// @return false where there is none, or an empty one
/// @throws std::exception where the link is not a URL
QUORVIX_API bool processDeepLinkAuth(int argc, char** argv, const std::string& sharedMemoryName,
                                     const std::string& appName);

/// Stores what the deep link brings, the parameters "email" and "refresh-token" (empty where it has none), as the
/// sign-in of the application `appName`, whose settings this process uses from then on, and wakes the instances that
/// listen. Without any the sign-in waits for the next start.
/// @throws std::exception where `url` is not a URL; nothing is stored then and nobody is woken
QUORVIX_API void notifyWebAuth(const std::string& sharedMemoryName, const std::string& url, const std::string& appName);

} // namespace VX
