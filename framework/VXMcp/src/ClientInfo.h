#pragma once

#include <json/value.h>

#include <string>

namespace VX::Mcp
{

/// What the server remembers of what clients say about themselves, be that ever so much.
/// @threads any

/// The name in the description of a client, at most 100 bytes of it; empty where there is none.
[[nodiscard]] std::string clientNameOf(const Json::Value& clientInfo);

/// An object with an empty member for each of "elicitation", "sampling" and "roots" that the client has declared.
[[nodiscard]] Json::Value capabilityFlags(const Json::Value& declared);

} // namespace VX::Mcp
