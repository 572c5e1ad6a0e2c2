#pragma once

#include <quorvix/Export.h>

#include <string>

namespace VX
{

/// The version of the product as one token: every blank of `GetVXVersionString` becomes a "-".
/// @param withPrefix  puts "QX_" in front where the running program's file is named "Quorvix", with any extension
/// @threads any
[[nodiscard]] QUORVIX_API std::string versionNoSpaces(bool withPrefix);

} // namespace VX
