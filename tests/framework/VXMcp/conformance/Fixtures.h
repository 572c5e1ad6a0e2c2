#pragma once

#include <VXMcp/Server.h>

namespace VX::Test
{

/// What the protocol's conformance suite expects of the server that it tests, under the names by which it asks for it.

/// Tools that answer at once.
void addPlainTools(Mcp::Server& server);

/// Tools, and a prompt, that ask the client something first.
void addAskingTools(Mcp::Server& server);

void addResources(Mcp::Server& server);
void addPrompts(Mcp::Server& server);

/// A picture of one pixel.
[[nodiscard]] std::string onePixelPng();

} // namespace VX::Test
