#pragma once

#include "IdentityProvider.h"

#include <json/value.h>
#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// Why an identity operation was not done, in the words of the identity provider.
struct IdentityError
{
    std::string type; ///< "NotAuthorizedException"
    std::string message;
    int status = 400;
};

enum class IdentityOperation
{
    SignIn,
    Refresh,
    SignUp,
    ConfirmSignUp,
    ForgotPassword,
    ConfirmForgotPassword,
    ResendConfirmationCode
};

/// An identity operation with its arguments; those that it does not have are empty.
struct IdentityRequest
{
    IdentityOperation operation = IdentityOperation::SignIn;
    std::string address;
    std::string password;
    std::string code;
    std::string token;

    /// Reads a call; members that the operation does not use do not matter, so no client identifier is needed.
    /// @return "UnknownOperationException"; "SerializationException" for what is not JSON or of the wrong type; or
    ///         "InvalidParameterException" for what is missing
    /// @threads any
    [[nodiscard]] static tl::expected<IdentityRequest, IdentityError> parse(const IdentityCall& call);
};

/// @threads any
[[nodiscard]] IdentityAnswer identityAnswer(const Json::Value& document);
[[nodiscard]] IdentityAnswer identityAnswer(const IdentityError& error);

} // namespace VX
