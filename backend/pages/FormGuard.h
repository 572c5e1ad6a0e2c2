#pragma once

#include "backend/accounts/AccountSecrets.h"

#include <net/HttpServer.h>

#include <optional>
#include <string>

namespace VX
{

/// Keeps other sites from sending our forms: each form holds a token that belongs to a cookie of the browser, which
/// other sites can neither read nor make it send along.
/// @threads any
class FormGuard
{
public:
    /// @param isSecure  whether browsers reach the pages by https
    FormGuard(AccountSecrets secrets, bool isSecure);

    /// The secret that the browser's cookie holds; a new one where it sent none.
    [[nodiscard]] std::string cookieOf(const HttpRequest& request) const;

    /// What a form for that browser holds.
    [[nodiscard]] std::string tokenFor(const std::string& cookie) const;

    /// The value of the header Set-Cookie.
    [[nodiscard]] std::string cookieHeader(const std::string& cookie) const;

    /// Whether a form comes from one of our pages in the same browser.
    [[nodiscard]] bool isOurs(const HttpRequest& request, const std::string& token) const;

private:
    const AccountSecrets secrets_;
    const bool isSecure_;
};

} // namespace VX
