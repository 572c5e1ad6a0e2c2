#include "AgentSchema.h"
#include "AgentStatus.h"
#include "AgentToolList.h"

#include <VXMesh/Object.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

#include <utility>

namespace VX
{

namespace
{

AgentResult shutdown(Viewer& viewer, const AgentArguments& arguments)
{
    if (hasUnsavedChanges(viewer) && !arguments.flag("discardChanges", false))
        return tl::unexpected(
            std::string("The scene has changes that are in no file. Save them with \"scene.saveFile\", "
                        "or call again with \"discardChanges\": true if the user wants to lose them."));
    if (viewer.ui() && viewer.getMenuPlugin() && viewer.getMenuPlugin()->sceneFiles().isSaving())
        return tl::unexpected(
            std::string("A file is being written. Wait until \"jobs.list\" is empty, then call again."));
    // Behind the answer.
    CommandLoop::appendCommand([&viewer] { viewer.requestClose(); });
    Json::Value value;
    value["closing"] = true;
    return Mcp::ToolResult::of(std::move(value));
}

Mcp::Tool statusTool()
{
    Mcp::Tool tool;
    tool.name = "viewer.getStatus";
    tool.title = "What the viewer is doing";
    tool.description =
        "Tells the program's version, the scene in numbers, whether there are unsaved changes, the window, "
        "what waits for the user, the long work that runs, and which files may be loaded and saved where. A good first "
        "call.";
    tool.inputSchema = AgentSchema::object({});
    tool.outputSchema = viewerStatusSchema();
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool shutdownTool()
{
    Mcp::Tool tool;
    tool.name = "viewer.shutdown";
    tool.title = "Close the viewer";
    tool.description = "Ends the program, and with it this server. Refused while the scene has unsaved changes, unless "
                       "\"discardChanges\" is true.";
    tool.inputSchema = AgentSchema::object(
        {{"discardChanges", AgentSchema::flag("Lose changes that are in no file; false if left out.")}});
    tool.outputSchema =
        AgentSchema::result({{"closing", AgentSchema::flag("Whether the program is closing.")}}, {"closing"});
    tool.destructive = true;
    return tool;
}

} // namespace

void addViewerTools(AgentToolList& list)
{
    list.add(statusTool(), [](Viewer& viewer, const AgentArguments&) -> AgentResult
             { return Mcp::ToolResult::of(viewerStatus(viewer)); });
    list.add(shutdownTool(), shutdown);
}

} // namespace VX
