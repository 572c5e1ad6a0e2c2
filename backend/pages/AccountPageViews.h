#pragma once

#include <string>

namespace VX
{

/// What every page holds.
struct PageContext
{
    std::string query;     ///< of the page, which its forms and links keep: "?source=…", or empty
    std::string formToken; ///< of the forms
    std::string error;     ///< what went wrong; empty: nothing did
    std::string notice;    ///< what went well
    std::string address;   ///< the e-mail address that was typed
};

/// The account pages as HTML documents. All values are escaped.
/// @threads any
[[nodiscard]] std::string signInPage(const PageContext& context);
[[nodiscard]] std::string signUpPage(const PageContext& context);

/// Asks for the code that confirms the account of `context.address`.
/// @param destination  where the code is; empty where that is not known
[[nodiscard]] std::string confirmSignUpPage(const PageContext& context, const std::string& destination);

[[nodiscard]] std::string forgotPasswordPage(const PageContext& context);

/// Asks for the code that was sent for `context.address`, and a new password.
[[nodiscard]] std::string resetPasswordPage(const PageContext& context, const std::string& destination);

/// Opens `deepLink`, and shows it as a button.
[[nodiscard]] std::string signedInPage(const std::string& deepLink);

} // namespace VX
