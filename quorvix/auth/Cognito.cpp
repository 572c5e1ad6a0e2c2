#include <quorvix/auth/ClientMetadata.h>
#include <quorvix/auth/Cognito.h>
#include <quorvix/auth/SecretText.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/StringConvert.h>
#include <VXViewer/WebRequest.h>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <utility>

namespace VX::Cognito
{

namespace
{

void addRequestMetadata(Json::Value& body, const std::string& userName)
{
    if (!userName.empty())
        body["AnalyticsMetadata"]["AnalyticsEndpointId"] = getEndpoint(userName);
    body["ClientMetadata"] = clientMetadata();
}

/// The body of an operation on the account of `email`.
Json::Value accountBody(const std::string& email)
{
    Json::Value body(Json::objectValue);
    addRequestMetadata(body, email);
    body["Username"] = email;
    return body;
}

/// The service tells the operations apart by the header alone.
/// @param secret  what stands in `body` where the mark does
void post(const char* operation, const char* logName, const Json::Value& body, Callback callback,
          const std::string& secret = {})
{
    WebRequest request;
    request.setMethod(WebRequest::Method::Post);
    request.setBody(textWithSecret(body, secret));
    request.setHeaders({{"x-amz-target", std::string("AWSCognitoIdentityProviderService.") + operation}});
    request.send(deployment().account + "/auth", logName, std::move(callback), true);
}

} // namespace

void signInEmail(const std::string& email, const std::string& password, Callback callback)
{
    Json::Value body(Json::objectValue);
    body["AuthFlow"] = "USER_PASSWORD_AUTH";
    addRequestMetadata(body, email);
    body["AuthParameters"]["USERNAME"] = email;
    body["AuthParameters"]["PASSWORD"] = secretMark;
    post("InitiateAuth", "signInEmail", body, std::move(callback), password);
}

void signInToken(const std::string& refreshToken, const std::string& endpoint, Callback callback)
{
    Json::Value body(Json::objectValue);
    body["AuthFlow"] = "REFRESH_TOKEN_AUTH";
    addRequestMetadata(body, {});
    body["AuthParameters"]["REFRESH_TOKEN"] = secretMark;
    body["AnalyticsMetadata"]["AnalyticsEndpointId"] = endpoint;
    post("InitiateAuth", "signInToken", body, std::move(callback), refreshToken);
}

void signUp(const std::string& email, const std::string& password, Callback callback)
{
    Json::Value body = accountBody(email);
    body["Password"] = secretMark;
    post("SignUp", "signUp", body, std::move(callback), password);
}

void confirmSignUp(const std::string& email, const std::string& code, Callback callback)
{
    Json::Value body = accountBody(email);
    body["ConfirmationCode"] = code;
    post("ConfirmSignUp", "confirmSignUp", body, std::move(callback));
}

void forget(const std::string& email, Callback callback)
{
    post("ForgotPassword", "forget", accountBody(email), std::move(callback));
}

void confirmForget(const std::string& email, const std::string& newPassword, const std::string& code, Callback callback)
{
    Json::Value body = accountBody(email);
    body["Password"] = secretMark;
    body["ConfirmationCode"] = code;
    post("ConfirmForgotPassword", "confirmForget", body, std::move(callback), newPassword);
}

void resendConfirmationCode(const std::string& email, Callback callback)
{
    post("ResendConfirmationCode", "resendConfirmationCode", accountBody(email), std::move(callback));
}

std::string getEndpoint(const std::string& userName)
{
    const std::string name = toLower(userName);
    const boost::uuids::name_generator_sha1 generator(boost::uuids::ns::dns());
    // As a C string: only what stands before the first zero byte counts.
    return boost::uuids::to_string(generator(name.c_str())); // NOLINT(readability-redundant-string-cstr)
}

} // namespace VX::Cognito
