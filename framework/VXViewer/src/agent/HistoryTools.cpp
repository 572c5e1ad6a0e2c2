#include "AgentSchema.h"
#include "AgentToolList.h"
#include "Paging.h"

#include <VXMesh/Object.h>
#include <VXViewer/HistoryAction.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

constexpr int mostSteps = 1000;
/// Objects that are named of one step.
constexpr std::size_t mostObjects = 5;

/// Where the history stands.
void describe(const Viewer& viewer, Json::Value& value)
{
    const HistoryStore& history = *viewer.getGlobalHistoryStore();
    value["position"] = Json::UInt64(history.position());
    value["canUndo"] = history.position() > 0;
    value["canRedo"] = history.position() < history.actions().size();
    value["unsavedChanges"] = hasUnsavedChanges(viewer);
}

void describe(const HistoryAction& action, const Object& root, Json::Value& step)
{
    auto objects = action.objects();
    std::erase_if(objects, [&](const auto& object) { return object.get() == &root; });
    step["name"] = action.name();
    step["objectCount"] = Json::UInt64(objects.size());
    step["objects"] = Json::Value(Json::arrayValue);
    for (std::size_t i = 0; i < std::min(objects.size(), mostObjects); ++i)
    {
        Json::Value object;
        object["id"] = Json::UInt64(objects[i]->id());
        object["name"] = objects[i]->name();
        step["objects"].append(std::move(object));
    }
}

/// What the result of undoing or redoing calls the steps.
const char* movedField(bool back)
{
    return back ? "undone" : "redone";
}

/// Undoes or redoes "steps" steps.
AgentResult move(Viewer& viewer, const AgentArguments& arguments, bool back)
{
    HistoryStore& history = *viewer.getGlobalHistoryStore();
    Json::Value names(Json::arrayValue);
    const int steps = arguments.integer("steps", 1);
    while (static_cast<int>(names.size()) < steps)
    {
        const std::size_t step = back ? history.position() - 1 : history.position();
        if (back ? history.position() == 0 : step >= history.actions().size())
            break;
        names.append(history.actions()[step]->name());
        back ? history.undo() : history.redo();
    }
    if (names.empty())
        return tl::unexpected(std::string(back ? "There is nothing to undo. \"history.list\" tells the steps."
                                               : "There is nothing to redo. \"history.list\" tells the steps."));
    Json::Value value;
    value[movedField(back)] = std::move(names);
    describe(viewer, value);
    return Mcp::ToolResult::of(std::move(value));
}

AgentResult listSteps(Viewer& viewer, const AgentArguments& arguments)
{
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    const HistoryStore& history = *viewer.getGlobalHistoryStore();
    const auto& actions = history.actions();
    Json::Value value;
    value["steps"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(actions.size()); i < paging->end(actions.size()); ++i)
    {
        // The latest first.
        const std::size_t index = actions.size() - 1 - i;
        Json::Value step;
        step["number"] = Json::UInt64(index + 1);
        describe(*actions[index], viewer.scene(), step);
        step["done"] = index < history.position();
        value["steps"].append(std::move(step));
    }
    paging->describe(value, actions.size());
    describe(viewer, value);
    return Mcp::ToolResult::of(std::move(value));
}

Json::Value resultSchema(const char* stepsField, Json::Value steps)
{
    return Schema::result({{stepsField, std::move(steps)},
                           {"position", Schema::count("How many steps are done.")},
                           {"canUndo", Schema::flag("Whether there is a step to undo.")},
                           {"canRedo", Schema::flag("Whether there is a step to redo.")},
                           {"unsavedChanges", Schema::flag("Whether the scene has changes that are in no file.")}},
                          {stepsField, "position", "canUndo", "canRedo", "unsavedChanges"});
}

Mcp::Tool moveTool(const char* name, const char* title, const char* description, bool back)
{
    Mcp::Tool tool;
    tool.name = name;
    tool.title = title;
    tool.description = description;
    tool.inputSchema = Schema::object({{"steps", Schema::integer("How many; 1 if left out.", 1, mostSteps)}});
    tool.outputSchema =
        resultSchema(movedField(back), Schema::list("The names of the steps, in the order in which they were taken.",
                                                    Schema::text("Name of a step.")));
    return tool;
}

Json::Value objectSchema()
{
    return Schema::result({{"id", Schema::objectId("The object.")}, {"name", Schema::text("Its name.")}},
                          {"id", "name"});
}

Mcp::Tool listTool()
{
    Mcp::Tool tool;
    tool.name = "history.list";
    tool.title = "List the steps of the history";
    tool.description =
        "Lists what was done to the scene by anybody, the latest step first, with those that are undone.";
    tool.inputSchema = Schema::object({{"limit", Paging::limitSchema()}, {"cursor", Paging::cursorSchema()}});
    tool.outputSchema = resultSchema(
        "steps",
        Schema::list("The steps.",
                     Schema::result(
                         {{"number", Schema::count("From 1, the oldest.")},
                          {"name", Schema::text("What was done.")},
                          {"objectCount", Schema::count("How many objects it changed, added or took away; what is "
                                                        "below one that came or went does not count.")},
                          {"objects",
                           Schema::list("The first five of them, as they are called now; some may not be in the scene.",
                                        objectSchema())},
                          {"done", Schema::flag("false: undone, can be redone.")}},
                         {"number", "name", "objectCount", "objects", "done"})));
    tool.outputSchema["properties"]["total"] = Paging::totalSchema();
    tool.outputSchema["properties"]["nextCursor"] = Paging::nextCursorSchema();
    tool.outputSchema["required"].append("total");
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

} // namespace

void addHistoryTools(AgentToolList& list)
{
    list.add(moveTool("history.undo", "Undo",
                      "Takes back the last step or steps, the user's among them. A call that changed nothing was no "
                      "step: look at \"history.list\" first.",
                      true),
             [](Viewer& viewer, const AgentArguments& arguments) { return move(viewer, arguments, true); });
    list.add(moveTool("history.redo", "Redo",
                      "Does again what was undone last. Any new step, a selection too, forgets what was undone.",
                      false),
             [](Viewer& viewer, const AgentArguments& arguments) { return move(viewer, arguments, false); });
    list.add(listTool(), listSteps);
}

} // namespace VX
