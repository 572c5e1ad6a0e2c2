#pragma once

#include <quorvix/Export.h>

#include <VXViewer/WebRequest.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <optional>
#include <string>

/// The protocol of the conversion service, version 2. The builders return a request that is ready to be sent; bodies
/// carry the access token of the signed-in user where there is one. The parsers take the answer of such a request,
/// whatever JSON it holds, and never throw.
///
/// Every parser fails with "Connection error" where no answer arrived, with the answer's "error" text where it has no
/// body, with the sentence of the JSON parser, with the service's own message, or with "Invalid response format".
namespace VX::ConverterService::V2
{

/// POST /request: asks for a conversion and a place to upload its input to.
/// @param inputFormat  file extension without the dot
/// @threads any
[[nodiscard]] QUORVIX_API WebRequest requestConvertContext(const std::string& inputFormat);

/// POST /convert: starts the conversion of the uploaded input.
/// @threads any
[[nodiscard]] QUORVIX_API WebRequest startConvert(const std::string& requestId, const std::string& inputFormat,
                                                  const std::string& outputFormat);

/// GET /status: asks how far the conversion is.
/// @threads any
[[nodiscard]] QUORVIX_API WebRequest checkConvertStatus(const std::string& requestId);

/// The answer to `requestConvertContext`.
struct QUORVIX_API RequestConvertContextResult
{
    std::string requestId;
    std::string url; ///< presigned, for the upload of the input

    /// @return also "\"request_id\" field is missing" or "\"url\" field is missing"
    [[nodiscard]] static tl::expected<RequestConvertContextResult, std::string>
    parseResponse(const Json::Value& answer);
};

/// The answer to `startConvert`: the conversion was accepted.
struct QUORVIX_API StartConvertResult
{
    [[nodiscard]] static tl::expected<StartConvertResult, std::string> parseResponse(const Json::Value& answer);
};

/// The answer to `checkConvertStatus`.
struct QUORVIX_API CheckConvertStatusResult
{
    enum class State
    {
        NotStarted = 1,
        InProgress = 2,
        Finished = 3
    };

    State state = State::NotStarted;
    std::optional<std::string> url; ///< presigned, of the converted file; there once the state is `Finished`

    /// @return also "\"state\" field is missing", "Unknown state: STATE" or "\"url\" field is missing"
    [[nodiscard]] static tl::expected<CheckConvertStatusResult, std::string> parseResponse(const Json::Value& answer);
};

} // namespace VX::ConverterService::V2
