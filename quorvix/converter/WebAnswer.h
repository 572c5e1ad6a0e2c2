#pragma once

#include <json/value.h>

#include <optional>
#include <string>

/// Looks into JSON that another program wrote, whatever it holds, without ever throwing.
namespace VX::WebAnswer
{

/// The member `name`; null where `value` is no object or has none.
[[nodiscard]] const Json::Value& member(const Json::Value& value, const char* name);

/// The text of the member `name`; nothing where there is none that is a text.
[[nodiscard]] std::optional<std::string> text(const Json::Value& value, const char* name);

/// The "code" of a request's answer; 0 (no answer arrived) where it is not an int.
[[nodiscard]] int code(const Json::Value& answer);

} // namespace VX::WebAnswer
