#pragma once

#include <VXMcp/Export.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <string>

namespace VX::Mcp
{

/// Checks a value against the part of JSON Schema that `Tool::inputSchema` names.
/// @return or a sentence that names the argument, says what is wrong with it and what fits
/// @threads any
[[nodiscard]] VXMCP_API tl::expected<void, std::string> checkSchema(const Json::Value& value,
                                                                    const Json::Value& schema);

} // namespace VX::Mcp
