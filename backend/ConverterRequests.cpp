#include "ConverterRequests.h"

#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

namespace VX
{

namespace
{

using Text = tl::expected<std::string, std::string>;

/// Longer values are no format, and not worth repeating.
constexpr std::size_t longestFormat = 40;

// `document` is a constant: looking a member up in another one would add it.
Text textMember(const Json::Value& document, const std::string& name)
{
    const Json::Value& value = document[name];
    if (value.isNull())
        return tl::unexpected(fmt::format("\"{}\" is missing in the request.", name));
    if (!value.isString())
        return tl::unexpected(fmt::format("\"{}\" must be a string.", name));
    return value.asString();
}

/// The token; empty where there is none.
Text readToken(const Json::Value& document)
{
    return document["access_token"].isNull() ? Text() : textMember(document, "access_token");
}

/// What requests of every kind have.
struct Request
{
    Json::Value document; ///< an object
    std::string accessToken;
};

tl::expected<Request, std::string> parseRequest(const std::string& body)
{
    auto document = deserializeJsonValue(body);
    if (!document)
        return tl::unexpected(std::move(document.error()));
    if (!document->isObject())
        return tl::unexpected(std::string("The request must be a JSON object."));
    auto token = readToken(*document);
    if (!token)
        return tl::unexpected(std::move(token.error()));
    return Request{.document = std::move(*document), .accessToken = std::move(*token)};
}

tl::expected<void, std::string> checkInput(const Json::Value& document)
{
    const auto format = textMember(document, "input_format");
    if (!format)
        return tl::unexpected(format.error());
    if (const std::string lower = toLower(*format); lower != "step" && lower != "stp")
        return tl::unexpected(fmt::format("Files of the format \"{}\" cannot be converted: choose a STEP file (.step "
                                          "or .stp).",
                                          format->substr(0, longestFormat)));
    const auto compression = textMember(document, "compress_input");
    if (!compression)
        return tl::unexpected(compression.error());
    if (*compression != "zip")
        return tl::unexpected(std::string("\"compress_input\" must be \"zip\"."));
    return {};
}

tl::expected<void, std::string> checkOutput(const Json::Value& document)
{
    const auto format = textMember(document, "output_format");
    if (!format)
        return tl::unexpected(format.error());
    if (*format != "vxu")
        return tl::unexpected(fmt::format("Files cannot be converted to the format \"{}\", only to \"vxu\".",
                                          format->substr(0, longestFormat)));
    return {};
}

} // namespace

tl::expected<ConverterContextRequest, std::string> ConverterContextRequest::parse(const std::string& body)
{
    auto request = parseRequest(body);
    if (!request)
        return tl::unexpected(std::move(request.error()));
    if (auto valid = checkInput(request->document); !valid)
        return tl::unexpected(std::move(valid.error()));
    return ConverterContextRequest{.accessToken = std::move(request->accessToken)};
}

tl::expected<ConverterStartRequest, std::string> ConverterStartRequest::parse(const std::string& body)
{
    auto request = parseRequest(body);
    if (!request)
        return tl::unexpected(std::move(request.error()));
    const Json::Value& document = request->document;
    auto id = textMember(document, "request_id");
    if (!id)
        return tl::unexpected(std::move(id.error()));
    if (auto valid = checkInput(document).and_then([&] { return checkOutput(document); }); !valid)
        return tl::unexpected(std::move(valid.error()));
    return ConverterStartRequest{.requestId = std::move(*id), .accessToken = std::move(request->accessToken)};
}

} // namespace VX
