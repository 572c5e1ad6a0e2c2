#pragma once

#include <quorvix/Export.h>

#include <json/value.h>

#include <functional>
#include <string>

/// The client of the account service, which fronts an identity provider: each operation posts one JSON body in that
/// provider's protocol to the path "/auth" of the account service and hands over the answer of `WebRequest`
/// ({"code", "text", "error"}) as it is. Nothing is checked, kept or tried again.
/// Every body says what the program runs on, as texts in "ClientMetadata": "platform" and "version", and as far as they
/// are known "os", "cpu", "gpu", "gl_version", "ram", "width", "height", "scaling_percent" and "num_monitors".
/// @threads any; the callback runs on a request thread
namespace VX::Cognito
{

using Callback = std::function<void(const Json::Value&)>;

/// Signs in with a password.
QUORVIX_API void signInEmail(const std::string& email, const std::string& password, Callback callback);

/// Signs in with the refresh token of an earlier sign-in.
/// @param endpoint  `getEndpoint` of the user's address, sent as it is
QUORVIX_API void signInToken(const std::string& refreshToken, const std::string& endpoint, Callback callback);

/// Makes an account, which `confirmSignUp` opens with the code that the service sends to the address.
QUORVIX_API void signUp(const std::string& email, const std::string& password, Callback callback);

QUORVIX_API void confirmSignUp(const std::string& email, const std::string& code, Callback callback);

/// Lets the service send a code for `confirmForget`.
QUORVIX_API void forget(const std::string& email, Callback callback);

QUORVIX_API void confirmForget(const std::string& email, const std::string& newPassword, const std::string& code,
                               Callback callback);

/// Lets the service send another code for `confirmSignUp`.
QUORVIX_API void resendConfirmationCode(const std::string& email, Callback callback);

/// The identifier of a user for analytics, the same on every computer: the name-based UUID, version 5, of the address
/// in lower case (A to Z) in the DNS name space (RFC 4122, section 4.3).
/// @return 36 characters, hexadecimal digits in lower case
[[nodiscard]] QUORVIX_API std::string getEndpoint(const std::string& userName);

} // namespace VX::Cognito
