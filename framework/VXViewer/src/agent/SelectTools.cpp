#include "AgentNumbers.h"
#include "AgentPick.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ObjectSummary.h"
#include "Paging.h"
#include "SceneSteps.h"
#include "items/ObjectEdits.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/SceneJson.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <unordered_set>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

using Objects = std::vector<std::shared_ptr<Object>>;

Json::Value selectionJson(Viewer& viewer)
{
    Json::Value value;
    const Objects selected = selectedObjects(viewer.scene());
    value["objects"] = Json::UInt64(selected.size());
    value["faces"] = Json::UInt64(countShownSelectedFaces(viewer.scene()));
    return value;
}

/// Selects objects, or takes them out of the selection, as one step. Nothing else stays selected, no triangles either,
/// but with the modes "add" and "remove".
void selectObjects(Viewer& viewer, const Objects& objects, const std::string& mode)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Select Objects"));
    const bool replace = mode != "add" && mode != "remove";
    std::unordered_set<const Object*> named;
    for (const std::shared_ptr<Object>& object : objects)
        named.insert(object.get());
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     const bool selected = named.contains(&object) ? mode != "remove" : !replace && object.isSelected();
                     auto* mesh = dynamic_cast<ObjectMesh*>(&object);
                     const bool losesFaces = replace && mesh && mesh->selectedFaces();
                     if ((object.isSelected() == selected && !losesFaces) || !object.parent())
                         return;
                     edit.touch(object.shared_from_this());
                     object.setSelected(selected);
                     if (losesFaces)
                         mesh->setSelectedFaces(nullptr);
                 });
}

void finishPick(const std::shared_ptr<AgentCall>& call, const std::optional<PickResult>& hit)
{
    Viewer& viewer = call->viewer();
    const std::shared_ptr<Object> object = hit ? hit->object.lock() : nullptr;
    const bool isToSelect = call->arguments().text("select", "object") == "object";
    if (isToSelect && call->refuseDuringUsersWork())
        return;
    if (isToSelect)
        selectObjects(viewer, object ? Objects{object} : Objects(), call->arguments().text("mode", "replace"));
    Json::Value value;
    value["hit"] = object != nullptr;
    if (object)
    {
        value["object"] = agentJson(*object, Detail::Summary);
        value["element"] = hit->element;
        value["point"] = rounded(toJson(hit->point));
    }
    value["selected"] = selectionJson(viewer);
    call->answer(Mcp::ToolResult::of(std::move(value)));
}

AgentResult selectByIds(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    selectObjects(viewer, *objects, arguments.text("mode", "replace"));
    return Mcp::ToolResult::of(selectionJson(viewer));
}

AgentResult get(Viewer& viewer, const AgentArguments& arguments)
{
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    Objects found;
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
                     const bool hasFaces = mesh && mesh->selectedFaces() && isShown(object);
                     if (object.parent() && (object.isSelected() || hasFaces))
                         found.push_back(object.shared_from_this());
                 });
    Json::Value value;
    value["selected"] = selectionJson(viewer);
    value["objects"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(found.size()); i < paging->end(found.size()); ++i)
        value["objects"].append(agentJson(*found[i], Detail::Summary));
    paging->describe(value, found.size());
    return Mcp::ToolResult::of(std::move(value));
}

AgentResult clear(Viewer& viewer, const AgentArguments&)
{
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Clear Selections"));
    selectForStep(viewer, {});
    return Mcp::ToolResult::of(selectionJson(viewer));
}

AgentResult deleteSelection(Viewer& viewer, const AgentArguments& arguments)
{
    const bool hasFaces = !shownMeshesWithSelectedFaces(viewer.scene()).empty();
    const bool hasObjects = !selectedObjects(viewer.scene()).empty();
    const std::string what = arguments.text("what", hasFaces ? "faces" : "objects");
    if (what == "faces" ? !hasFaces : !hasObjects)
        return tl::unexpected(
            std::string(what == "faces" ? "No faces of a mesh that shows are selected. Select some with "
                                          "\"select.primitive\" or \"select.rectangle\" first."
                                        : "No object is selected. Select some with \"select.objects\" first, or use "
                                          "\"scene.remove\"."));
    const std::size_t faces = countShownSelectedFaces(viewer.scene());
    const std::size_t objects = selectedObjects(viewer.scene()).size();
    Json::Value value;
    value["deletedFaces"] = 0;
    value["deletedObjects"] = 0;
    if (what == "faces")
    {
        deleteSelectedFaces(viewer);
        value["deletedFaces"] = Json::UInt64(faces - countShownSelectedFaces(viewer.scene()));
    }
    else
    {
        deleteSelectedObjects(viewer);
        value["deletedObjects"] = Json::UInt64(objects - selectedObjects(viewer.scene()).size());
    }
    value["selected"] = selectionJson(viewer);
    return Mcp::ToolResult::of(std::move(value));
}

Json::Value selectionSchema()
{
    return Schema::described(Schema::result({{"objects", Schema::count("Objects selected as a whole.")},
                                             {"faces", Schema::count("Triangles selected, in all meshes that show.")}},
                                            {"objects", "faces"}),
                             "What is selected now.");
}

Json::Value modeSchema()
{
    return AgentSchema::choice("What becomes of the objects and triangles selected before: \"replace\" (if left out) "
                               "selects neither any more.",
                               {"replace", "add", "remove"});
}

Mcp::Tool pickTool()
{
    Mcp::Tool tool;
    tool.name = "select.pick";
    tool.title = "Find what is at a point";
    tool.description =
        "Finds the object, point in space and triangle at a pixel of a picture, or along a ray, and selects "
        "the object. Nothing is selected where nothing is hit. Selecting is a step that \"history.undo\" "
        "takes back. The first pick of a large mesh takes a few seconds.";
    tool.inputSchema =
        Schema::object({{"select", Schema::choice("\"object\" (if left out): select it; \"nothing\": only look.",
                                                  {"object", "nothing"})},
                        {"mode", modeSchema()}});
    addPointSchema(tool.inputSchema);
    tool.outputSchema =
        Schema::result({{"hit", Schema::flag("Whether something is there.")},
                        {"object", shortObjectSchema()},
                        {"element", Schema::count("The triangle, point or segment of the object that was hit, from 0; "
                                                  "\"select.primitive\" takes it as \"face\".")},
                        {"point", Schema::vector("Where it was hit, in scene coordinates (mm).")},
                        {"selected", selectionSchema()}},
                       {"hit", "selected"});
    return tool;
}

Mcp::Tool objectsTool()
{
    Mcp::Tool tool;
    tool.name = "select.objects";
    tool.title = "Select objects by their ids";
    tool.description = "Selects whole objects, for ribbon items that work on the selection. Other tools take ids "
                       "themselves. One step that \"history.undo\" takes back.";
    tool.inputSchema = Schema::object({{"ids", Schema::objectIds("The objects.")}, {"mode", modeSchema()}}, {"ids"});
    tool.outputSchema = selectionSchema();
    tool.idempotent = true;
    return tool;
}

Mcp::Tool getTool()
{
    Mcp::Tool tool;
    tool.name = "select.get";
    tool.title = "What is selected";
    tool.description = "Lists the objects that are selected, as a whole or some of their triangles.";
    tool.inputSchema = Schema::object({{"limit", Paging::limitSchema()}, {"cursor", Paging::cursorSchema()}});
    tool.outputSchema = Schema::result({{"selected", selectionSchema()},
                                        {"objects", Schema::list("In the order of the scene.", shortObjectSchema())},
                                        {"total", Paging::totalSchema()},
                                        {"nextCursor", Paging::nextCursorSchema()}},
                                       {"selected", "objects", "total"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool clearTool()
{
    Mcp::Tool tool;
    tool.name = "select.clear";
    tool.title = "Select nothing";
    tool.description = "Selects no object and no triangles. One step that \"history.undo\" takes back.";
    tool.inputSchema = AgentSchema::object({});
    tool.outputSchema = selectionSchema();
    tool.idempotent = true;
    return tool;
}

Mcp::Tool deleteTool()
{
    Mcp::Tool tool;
    tool.name = "select.delete";
    tool.title = "Delete what is selected";
    tool.description =
        "Cuts the selected triangles out of their meshes or, where none are selected, takes the selected "
        "objects out of the scene. One step that \"history.undo\" takes back.";
    tool.inputSchema =
        Schema::object({{"what", Schema::choice("\"faces\" where some are selected, else \"objects\", if left out.",
                                                {"faces", "objects"})}});
    tool.outputSchema = Schema::result({{"deletedFaces", Schema::count("Triangles that went.")},
                                        {"deletedObjects", Schema::count("Objects that went.")},
                                        {"selected", selectionSchema()}},
                                       {"deletedFaces", "deletedObjects", "selected"});
    tool.destructive = true;
    return tool;
}

} // namespace

void addSelectTools(AgentToolList& list)
{
    list.start(pickTool(), [](const std::shared_ptr<AgentCall>& call)
               { pickFor(call, [call](const std::optional<PickResult>& hit) { finishPick(call, hit); }); });
    list.add(objectsTool(), selectByIds);
    list.add(getTool(), get);
    list.add(clearTool(), clear);
    list.add(deleteTool(), deleteSelection);
}

} // namespace VX
