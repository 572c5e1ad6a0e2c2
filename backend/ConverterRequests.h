#pragma once

#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// The body of /converter/v2/request: a client announces a file.
struct ConverterContextRequest
{
    std::string accessToken; ///< empty where the client is not signed in

    /// Reads a JSON object of strings: "input_format" ("step" or "stp", in any letter case), "compress_input" ("zip")
    /// and perhaps "access_token"; other members do not matter.
    /// @return one sentence about what is missing, of the wrong type or not supported
    [[nodiscard]] static tl::expected<ConverterContextRequest, std::string> parse(const std::string& body);
};

/// The body of /converter/v2/convert: the client has uploaded the file.
struct ConverterStartRequest
{
    std::string requestId;
    std::string accessToken;

    /// Reads what `ConverterContextRequest::parse` reads, and "request_id" and "output_format" ("vxu").
    /// @return one sentence about what is missing, of the wrong type or not supported
    [[nodiscard]] static tl::expected<ConverterStartRequest, std::string> parse(const std::string& body);
};

} // namespace VX
