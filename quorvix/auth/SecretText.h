#pragma once

#include <json/value.h>

#include <string>

namespace VX
{

/// Stands in a body for the secret that `textWithSecret` puts there.
inline constexpr const char* secretMark = "\x01secret\x01";

/// `body` as `Json::Value::toStyledString` writes it, with `secret` in place of the mark. The text that is given back
/// holds the only copy of the secret; the writer would leave others in memory.
/// @threads any
[[nodiscard]] std::string textWithSecret(const Json::Value& body, const std::string& secret);

} // namespace VX
