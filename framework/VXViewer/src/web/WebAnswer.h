#pragma once

#include <json/value.h>

#include <string>
#include <string_view>

namespace VX
{

inline constexpr std::string_view applicationIsClosingText = "The application is closing.";

/// The answer of a request to which no HTTP answer came.
/// @threads any
Json::Value makeFailedAnswer(std::string_view error);

/// The answer made of an HTTP answer.
/// @param reason  the words behind the status; may be empty
/// @threads any
Json::Value makeAnswer(int status, std::string_view reason, std::string_view text);

} // namespace VX
