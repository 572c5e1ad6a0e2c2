#include "AgentCamera.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ChosenScene.h"

#include <VXViewer/SceneRenderer.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

Mcp::ToolResult describe(const Viewer& viewer)
{
    const PixelRect& area = viewer.view().area();
    Json::Value value;
    value["camera"] = cameraJson(viewer.view().camera());
    value["viewport"]["width"] = area.width;
    value["viewport"]["height"] = area.height;
    return Mcp::ToolResult::of(std::move(value));
}

/// Moves `camera` until "ids", or all, fill the picture.
tl::expected<Camera, std::string> fitted(Viewer& viewer, const AgentArguments& arguments, Camera camera)
{
    const auto objects = arguments.objects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    std::vector<std::shared_ptr<Object>> shown;
    std::ranges::copy_if(*objects, std::back_inserter(shown), [](const auto& object) { return isShown(*object); });
    const std::shared_ptr<const Object> root = shown.empty() ? viewer.sceneRoot() : ChosenScene(shown).root();
    if (!objects->empty() && (shown.empty() || root->worldBox().isEmpty()))
        return tl::unexpected(std::string("None of these objects shows: the view would be empty. Show them with "
                                          "\"scene.setVisibility\" first."));
    SceneRenderer::fit(camera, *root, viewer.view().fitArea(), viewer.view().options().viewport);
    return camera;
}

AgentResult show(Viewer& viewer, tl::expected<Camera, std::string> camera)
{
    if (!camera)
        return tl::unexpected(std::move(camera.error()));
    viewer.view().controller().setCamera(*camera);
    return describe(viewer);
}

AgentResult set(Viewer& viewer, const AgentArguments& arguments)
{
    if (arguments.isEmpty())
        return tl::unexpected(std::string("Nothing was changed: say how to look, such as \"view\", or \"eye\" and "
                                          "\"target\"."));
    const auto view = standardViewOf(arguments.text("view"));
    auto changed = changedCamera(viewer.view().camera(), arguments, view);
    const bool isPlaced = arguments.has("eye") || arguments.has("target");
    if (changed && arguments.flag("fit", view && !isPlaced))
        changed = fitted(viewer, arguments, *changed);
    return show(viewer, std::move(changed));
}

AgentResult fit(Viewer& viewer, const AgentArguments& arguments)
{
    return show(viewer, fitted(viewer, arguments, viewer.view().camera()));
}

Mcp::Tool cameraTool(const char* name, const char* title, const char* description)
{
    Mcp::Tool tool;
    tool.name = name;
    tool.title = title;
    tool.description = description;
    tool.inputSchema = Schema::object({});
    tool.outputSchema =
        Schema::result({{"camera", cameraSchema()},
                        {"viewport", Schema::described(Schema::result({{"width", Schema::count("In pixels.")},
                                                                       {"height", Schema::count("In pixels.")}},
                                                                      {"width", "height"}),
                                                       "The part of the window that shows the scene.")}},
                       {"camera", "viewport"});
    tool.idempotent = true;
    return tool;
}

} // namespace

void addCameraTools(AgentToolList& list)
{
    Mcp::Tool get = cameraTool("camera.get", "Where the view looks from", "Tells the camera of the user's view.");
    get.readOnly = true;
    list.add(std::move(get), [](Viewer& viewer, const AgentArguments&) -> AgentResult { return describe(viewer); });

    Mcp::Tool setTool =
        cameraTool("camera.set", "Look from elsewhere",
                   "Moves the camera of the user's view. \"view\" turns to a standard direction, the other "
                   "fields place the camera exactly; with \"view\" and \"eye\" or \"target\" alone, the other "
                   "one moves along so that the view stays that view. For a picture alone, give these to "
                   "\"viewer.captureScreenshot\" instead, which leaves the user's view alone.");
    setTool.inputSchema = cameraArgumentSchema();
    setTool.inputSchema["properties"]["view"] =
        Schema::choice("A standard direction; z is up, the front is where y is smallest.", standardViewNames());
    setTool.inputSchema["properties"]["fit"] = Schema::flag(
        "Move in or out until all fills the picture; true if left out with \"view\" and without \"eye\" and "
        "\"target\", else false.");
    setTool.inputSchema.removeMember("description");
    list.add(std::move(setTool), set);

    Mcp::Tool fitTool =
        cameraTool("camera.fit", "Show all, or chosen objects",
                   "Moves the camera of the user's view, without turning it, until the objects fill the "
                   "picture.");
    fitTool.inputSchema = Schema::object(
        {{"ids", Schema::objectIds(
                     "The objects to show, of which hidden ones do not count; all that is visible if left out.")}});
    list.add(std::move(fitTool), fit);
}

} // namespace VX
