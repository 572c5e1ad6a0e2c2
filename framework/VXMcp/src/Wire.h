#pragma once

#include <VXMcp/Prompt.h>
#include <VXMcp/Resource.h>
#include <VXMcp/Tool.h>

#include <json/value.h>

#include <string>

namespace VX::Mcp
{

/// The protocol's forms of what is registered and of what it gives back.
/// @threads any

[[nodiscard]] Json::Value toWire(const Tool& tool);
[[nodiscard]] Json::Value toWire(const Resource& resource);
[[nodiscard]] Json::Value toWire(const ResourceTemplate& resourceTemplate);
[[nodiscard]] Json::Value toWire(const Prompt& prompt);

/// A result without an inquiry.
[[nodiscard]] Json::Value toWire(const ToolResult& result);

/// The one element of what "resources/read" answers.
[[nodiscard]] Json::Value resourceContents(const std::string& uri, const std::string& mimeType,
                                           const std::string& content);

} // namespace VX::Mcp
