#pragma once

#include <VXMesh/Export.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// Parses a JSON file. Comments and a byte order mark are accepted; anything behind the value is not.
/// @return the value; `Cannot open "NAME": REASON.`; or `Cannot read "NAME": line L, column C: REASON.`
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<Json::Value, std::string> deserializeJsonValue(const std::filesystem::path& path);

/// Parses JSON text the same way; never throws, whatever the text.
/// @return the value; or `Invalid JSON: line L, column C: REASON.`
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<Json::Value, std::string> deserializeJsonValue(const std::string& text);

/// For a literal, which would fit both of the above.
[[nodiscard]] VXMESH_API tl::expected<Json::Value, std::string> deserializeJsonValue(const char* text);

} // namespace VX
