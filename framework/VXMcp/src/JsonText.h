#pragma once

#include <json/value.h>

#include <string>

namespace VX::Mcp
{

/// One line of JSON, in ASCII; bytes that are not UTF-8 become U+FFFD.
/// @threads any
std::string toJsonText(const Json::Value& value);

} // namespace VX::Mcp
