#pragma once

#include <VXViewer/Export.h>

namespace VX
{

class Viewer;

namespace Mcp
{
class Server;
}

/// Gives `server` the viewer's tools, resources and its prompt, so that programs outside can drive `viewer`, which must
/// live as long as the server serves. Dots in the names of tools may be written as underscores.
/// @threads the UI thread
VXVIEWER_API void registerAgentTools(Viewer& viewer, Mcp::Server& server);

} // namespace VX
