#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace VX
{

/// `text` with every byte as %XX that is not a letter, a digit or one of "-._~".
/// @threads any
std::string percentEncode(std::string_view text);

/// `url` with the parameters behind those that it has, before a fragment, in the order of their names.
/// @threads any
std::string urlWithParameters(std::string_view url, const std::unordered_map<std::string, std::string>& parameters);

} // namespace VX
