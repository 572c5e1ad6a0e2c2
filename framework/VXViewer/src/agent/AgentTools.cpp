#include "AgentStatus.h"
#include "AgentToolList.h"
#include "ObjectSummary.h"
#include "QuietCommand.h"

#include <VXMcp/Server.h>
#include <VXMesh/Version.h>
#include <VXViewer/AgentTools.h>
#include <VXViewer/Viewer.h>

#include <json/json.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t mostObjects = 1000;

constexpr const char* instructions =
    "A viewer and editor of 3D meshes, point clouds and parts from STEP files that a user may be working with at the "
    "same "
    "time. Lengths are millimetres, z is up. Begin with viewer.getStatus and scene.list, look with "
    "viewer.captureScreenshot or viewer.captureMontage, and check edits by looking again. Every edit is a step that "
    "history.undo takes back.";

std::string textOf(const Json::Value& value)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    writer["precision"] = 9;
    writer["emitUTF8"] = true;
    return Json::writeString(writer, value);
}

Json::Value sceneOf(Viewer& viewer)
{
    std::vector<std::shared_ptr<Object>> objects;
    std::size_t total = 0;
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     if (object.parent() && total++ < mostObjects)
                         objects.push_back(object.shared_from_this());
                 });
    Json::Value value = agentObjectsJson(objects);
    value["total"] = Json::UInt64(total);
    return value;
}

/// The answer of a resource, which says so where the viewer closes before.
class ResourceReply
{
public:
    explicit ResourceReply(Mcp::Resource::Answer answer)
        : answer_(std::move(answer))
    {
    }

    ~ResourceReply()
    {
        if (answer_)
            answer_(tl::unexpected(std::string("The viewer is closing. Start it again first.")));
    }

    ResourceReply(const ResourceReply&) = delete;
    ResourceReply& operator=(const ResourceReply&) = delete;

    void give(std::string text) { std::exchange(answer_, nullptr)(std::move(text)); }

private:
    Mcp::Resource::Answer answer_;
};

Mcp::Resource makeResource(Viewer& viewer, const char* name, const char* tool, const char* title,
                           const char* description, Json::Value (*read)(Viewer&))
{
    Mcp::Resource resource;
    resource.uri = std::string("viewer://") + name;
    resource.name = name;
    resource.title = title;
    resource.description = description;
    resource.mimeType = "application/json";
    resource.tool = tool;
    resource.read = [&viewer, read](Mcp::Resource::Answer answer)
    {
        appendQuietCommand([&viewer, read, reply = std::make_shared<ResourceReply>(std::move(answer))]
                           { reply->give(textOf(read(viewer))); });
    };
    return resource;
}

Json::Value inspectionMessages(const Json::Value& arguments)
{
    const std::string file = arguments.get("file", "").asString();
    Json::Value message;
    message["role"] = "user";
    message["content"]["type"] = "text";
    message["content"]["text"] =
        (file.empty() ? std::string("Look at the scene that is open in the 3D viewer.")
                      : "Load \"" + file + "\" into the 3D viewer with scene.loadFile.") +
        " Take a picture from several sides with viewer.captureMontage and list the objects with scene.list. For each "
        "large object ask scene.getObject for its area, volume, parts and open boundaries (its \"holes\"). Then tell "
        "me what it is, how large it is, and what is wrong with it: open surfaces, several parts where one is to be "
        "expected, volumes that are "
        "inside out. Change nothing.";
    Json::Value messages(Json::arrayValue);
    messages.append(std::move(message));
    return messages;
}

Mcp::Prompt inspectionPrompt()
{
    Mcp::Prompt prompt;
    prompt.name = "inspect_scene";
    prompt.title = "Inspect the scene";
    prompt.description =
        "Looks at what is open, or at a file, from several sides and reports what it is and what is wrong.";
    prompt.arguments.push_back(
        {"file", "A file to load first; what is open is looked at where it is left out.", false});
    prompt.messages = inspectionMessages;
    return prompt;
}

} // namespace

void registerAgentTools(Viewer& viewer, Mcp::Server& server)
{
    server.setInfo(viewer.applicationName(), GetVXVersionString(), instructions);
    for (Mcp::Tool& tool : makeAgentTools(viewer))
    {
        std::string alias = tool.name;
        std::ranges::replace(alias, '.', '_');
        server.addAlias(std::move(alias), tool.name);
        server.addTool(std::move(tool));
    }
    server.addResource(makeResource(viewer, "scene", "scene.list", "The objects of the scene",
                                    "The first 1000 objects in the order of the scene, with counts and boxes.",
                                    sceneOf));
    server.addResource(makeResource(viewer, "status", "viewer.getStatus", "What the viewer is doing",
                                    "What \"viewer.getStatus\" tells.",
                                    [](Viewer& each) { return viewerStatus(each); }));
    server.addPrompt(inspectionPrompt());
}

} // namespace VX
