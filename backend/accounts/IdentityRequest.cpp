#include "IdentityRequest.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <json/writer.h>

#include <utility>

namespace VX
{

namespace
{

using Text = tl::expected<std::string, IdentityError>;
using Result = tl::expected<void, IdentityError>;

IdentityError wrongBody(std::string message)
{
    return {.type = "SerializationException", .message = std::move(message)};
}

IdentityError wrongParameter(std::string message)
{
    return {.type = "InvalidParameterException", .message = std::move(message)};
}

/// The member of an object; looked up in a constant, so that one that is not there is not added.
Text textMember(const Json::Value& document, const std::string& name)
{
    const Json::Value& value = document[name];
    if (value.isNull())
        return tl::unexpected(wrongParameter(fmt::format("Missing required parameter {}", name)));
    if (!value.isString())
        return tl::unexpected(wrongBody(fmt::format("\"{}\" must be a string.", name)));
    return value.asString();
}

/// Puts members into the fields of a request, and stops at the first that is not there.
Result read(const Json::Value& document, std::initializer_list<std::pair<const char*, std::string*>> members)
{
    for (const auto& [name, field] : members)
    {
        auto text = textMember(document, name);
        if (!text)
            return tl::unexpected(std::move(text.error()));
        *field = std::move(*text);
    }
    return {};
}

Result readAuthentication(const Json::Value& document, IdentityRequest& request)
{
    const auto flow = textMember(document, "AuthFlow");
    if (!flow)
        return tl::unexpected(flow.error());
    const Json::Value& parameters = document["AuthParameters"];
    if (!parameters.isNull() && !parameters.isObject())
        return tl::unexpected(wrongBody("\"AuthParameters\" must be an object."));
    if (*flow == "USER_PASSWORD_AUTH")
    {
        request.operation = IdentityOperation::SignIn;
        return read(parameters, {{"USERNAME", &request.address}, {"PASSWORD", &request.password}});
    }
    if (*flow == "REFRESH_TOKEN_AUTH" || *flow == "REFRESH_TOKEN")
    {
        request.operation = IdentityOperation::Refresh;
        return read(parameters, {{"REFRESH_TOKEN", &request.token}});
    }
    return tl::unexpected(wrongParameter("Initiate Auth method not supported."));
}

Result readMembers(const std::string& operation, const Json::Value& document, IdentityRequest& request)
{
    const std::pair<const char*, std::string*> name{"Username", &request.address};
    const std::pair<const char*, std::string*> password{"Password", &request.password};
    const std::pair<const char*, std::string*> code{"ConfirmationCode", &request.code};
    if (operation == "InitiateAuth")
        return readAuthentication(document, request);
    if (operation == "SignUp")
    {
        request.operation = IdentityOperation::SignUp;
        return read(document, {name, password});
    }
    if (operation == "ConfirmSignUp")
    {
        request.operation = IdentityOperation::ConfirmSignUp;
        return read(document, {name, code});
    }
    if (operation == "ForgotPassword")
    {
        request.operation = IdentityOperation::ForgotPassword;
        return read(document, {name});
    }
    if (operation == "ConfirmForgotPassword")
    {
        request.operation = IdentityOperation::ConfirmForgotPassword;
        return read(document, {name, password, code});
    }
    if (operation == "ResendConfirmationCode")
    {
        request.operation = IdentityOperation::ResendConfirmationCode;
        return read(document, {name});
    }
    return tl::unexpected(
        IdentityError{.type = "UnknownOperationException", .message = "This operation is not known."});
}

} // namespace

tl::expected<IdentityRequest, IdentityError> IdentityRequest::parse(const IdentityCall& call)
{
    // What the parser says of a body might repeat a part of it.
    const auto document = deserializeJsonValue(call.body);
    if (!document || !document->isObject())
        return tl::unexpected(wrongBody("The request must be a JSON object."));
    IdentityRequest request;
    if (auto done = readMembers(call.operation, *document, request); !done)
        return tl::unexpected(std::move(done.error()));
    return request;
}

IdentityAnswer identityAnswer(const Json::Value& document)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    return {.status = 200, .body = Json::writeString(writer, document)};
}

IdentityAnswer identityAnswer(const IdentityError& error)
{
    Json::Value document;
    document["__type"] = error.type;
    document["message"] = error.message;
    IdentityAnswer answer = identityAnswer(document);
    answer.status = error.status;
    return answer;
}

} // namespace VX
