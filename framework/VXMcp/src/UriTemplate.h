#pragma once

#include <VXMcp/Export.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace VX::Mcp
{

/// Compares a URI with a template of level 1 (RFC 6570): "viewer://object/{id}".
/// @return the values of the variables, percent-decoded, each without "/"; empty where the URI does not fit
/// @threads any
[[nodiscard]] VXMCP_API std::optional<std::map<std::string, std::string>> matchUriTemplate(std::string_view uriTemplate,
                                                                                           std::string_view uri);

} // namespace VX::Mcp
