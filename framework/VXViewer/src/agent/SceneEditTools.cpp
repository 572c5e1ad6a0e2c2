#include "AgentNumbers.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ChosenScene.h"
#include "ObjectName.h"
#include "ObjectSummary.h"
#include "items/ObjectEdits.h"
#include "panels/ObjectRename.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/VisualObject.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <numbers>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

using Objects = std::vector<std::shared_ptr<Object>>;

/// Does `change` to the objects of "ids", as one step. @return these objects
tl::expected<Objects, std::string> changeObjects(Viewer& viewer, const AgentArguments& arguments, const char* name,
                                                 const std::function<void(SceneEdit&, Object&)>& change)
{
    auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return objects;
    SceneEdit edit(*viewer.getGlobalHistoryStore(), name);
    for (const std::shared_ptr<Object>& object : *objects)
        change(edit, *object);
    return objects;
}

AgentResult remove(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    {
        SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Remove Objects"));
        removeObjects(edit, topmostOf(*objects));
    }
    Json::Value result;
    result["removed"] = Json::UInt64(objects->size());
    return Mcp::ToolResult::of(std::move(result));
}

AgentResult rename(Viewer& viewer, const AgentArguments& arguments)
{
    const auto object = arguments.object("id", viewer.scene());
    if (!object)
        return tl::unexpected(object.error());
    if (!(*object)->parent())
        return tl::unexpected(std::string("The root of the scene has no name. Name an object below it."));
    const auto name = objectNameOf(arguments.text("name"));
    if (!name)
        return tl::unexpected(name.error());
    renameObject(viewer, *object, *name);
    return Mcp::ToolResult::of(agentJson(**object, Detail::Summary));
}

AgentResult setVisibility(Viewer& viewer, const AgentArguments& arguments)
{
    const bool visible = arguments.flag("visible", true);
    const auto change = [&](SceneEdit& edit, Object& object)
    {
        if (object.isVisible() == visible)
            return;
        edit.touch(object.shared_from_this());
        object.setVisible(visible);
    };
    const auto objects =
        changeObjects(viewer, arguments, visible ? translatable("Show") : translatable("Hide"), change);
    if (!objects)
        return tl::unexpected(objects.error());
    return Mcp::ToolResult::of(agentObjectsJson(*objects));
}

bool hasOneOf(const AgentArguments& arguments, std::initializer_list<const char*> names)
{
    return std::ranges::any_of(names, [&](const char* name) { return arguments.has(name); });
}

/// "#rrggbb" in any letter case.
std::optional<Color> parseColor(const std::string& text)
{
    unsigned number = 0;
    if (text.size() != 7 || text.front() != '#')
        return std::nullopt;
    const char* end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data() + 1, end, number, 16);
    if (error != std::errc() || last != end)
        return std::nullopt;
    const auto byte = [number](unsigned shift) { return static_cast<std::uint8_t>(number >> shift & 0xFFU); };
    return Color{byte(16), byte(8), byte(0), 255};
}

void changeAppearance(SceneEdit& edit, Object& object, const std::optional<Color>& color,
                      const AgentArguments& arguments)
{
    auto* visual = dynamic_cast<VisualObject*>(&object);
    if (!visual)
        return;
    edit.touch(object.shared_from_this());
    Color changed = visual->color();
    if (color)
        changed = {color->r, color->g, color->b, changed.a};
    if (arguments.has("opacity"))
        changed.a = static_cast<std::uint8_t>(std::lround(std::clamp(arguments.number("opacity", 1), 0.0, 1.0) * 255));
    visual->setColor(changed);
    if (auto* mesh = dynamic_cast<ObjectMesh*>(&object); mesh && arguments.has("flatShaded"))
        mesh->setFlatShaded(arguments.flag("flatShaded", false));
}

AgentResult setAppearance(Viewer& viewer, const AgentArguments& arguments)
{
    if (!hasOneOf(arguments, {"color", "opacity", "flatShaded"}))
        return tl::unexpected(
            std::string("Nothing was changed: say what to change, \"color\", \"opacity\" or \"flatShaded\"."));
    std::optional<Color> color;
    if (arguments.has("color"))
    {
        color = parseColor(arguments.text("color"));
        if (!color)
            return tl::unexpected(fmt::format("\"{}\" is no colour. Write it as \"#rrggbb\", such as \"#ff8000\".",
                                              arguments.text("color")));
    }
    const auto change = [&](SceneEdit& edit, Object& object)
    { visitObjects(object, [&](Object& each) { changeAppearance(edit, each, color, arguments); }); };
    const auto objects = changeObjects(viewer, arguments, translatable("Change Appearance"), change);
    if (!objects)
        return tl::unexpected(objects.error());
    Json::Value value = agentObjectsJson(*objects);
    for (std::size_t i = 0; i < objects->size(); ++i)
        addAppearance(value["objects"][static_cast<Json::ArrayIndex>(i)], *(*objects)[i]);
    return Mcp::ToolResult::of(std::move(value));
}

/// The change that "matrix", or "scale", "rotate" and "translate" in this order, ask for, in scene coordinates.
/// @param center  what turns and grows stays there
tl::expected<Transform, std::string> transformOf(const AgentArguments& arguments, const Vector3d& center)
{
    Transform change = Transform::Identity();
    if (const std::vector<double> matrix = arguments.numbers("matrix"); !matrix.empty())
    {
        if (matrix.size() != 16)
            return tl::unexpected(std::string("\"matrix\" needs 16 numbers, row by row."));
        for (int i = 0; i < 16; ++i)
            change.matrix()(i / 4, i % 4) = matrix[static_cast<std::size_t>(i)];
        if (!change.matrix().row(3).isApprox(Eigen::RowVector4d(0, 0, 0, 1)))
            return tl::unexpected(std::string("The last row of \"matrix\" must be 0, 0, 0, 1."));
    }
    Transform about = Transform::Identity();
    if (const auto rotation = arguments.below("rotate"))
    {
        const Vector3d axis = rotation->vector("axis").value_or(Vector3d::UnitZ());
        if (axis.norm() == 0)
            return tl::unexpected(std::string("The axis to rotate about must not be 0, 0, 0."));
        const double angle = rotation->number("degrees", 0) * std::numbers::pi / 180;
        about.linear() = Eigen::AngleAxisd(angle, axis.normalized()).toRotationMatrix();
    }
    about.linear() *= arguments.number("scale", 1);
    change = Eigen::Translation3d(arguments.vector("translate").value_or(Vector3d::Zero())) *
             Transform(Eigen::Translation3d(center) * about * Eigen::Translation3d(-center)) * change;
    if (!change.matrix().allFinite() || std::abs(change.linear().determinant()) < 1e-30)
        return tl::unexpected(std::string("This would flatten the objects to nothing. Use a scale other than 0 and a "
                                          "matrix that can be inverted."));
    return change;
}

/// Whether `object` with all below it, or at least its origin, is within the bound once it is moved.
bool staysWithinBound(const Object& object, const Transform& change)
{
    const Box3d box = object.worldBox();
    return isWithinBound(box.isEmpty() ? Box3d(Vector3d(change * object.worldTransform().translation()))
                                       : box.transformed(change));
}

AgentResult transform(Viewer& viewer, const AgentArguments& arguments)
{
    if (!hasOneOf(arguments, {"matrix", "scale", "rotate", "translate"}))
        return tl::unexpected(
            std::string("Nothing was changed: say how to move, \"translate\", \"rotate\", \"scale\" or \"matrix\"."));
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    Box3d box;
    for (const std::shared_ptr<Object>& object : *objects)
        box.extend(object->worldBox());
    const Vector3d middle = box.isEmpty() ? Vector3d(Vector3d::Zero()) : Vector3d(box.center());
    const auto change = transformOf(arguments, arguments.vector("center").value_or(middle));
    if (!change)
        return tl::unexpected(change.error());
    if (!std::ranges::all_of(*objects, [&](const auto& object) { return staysWithinBound(*object, *change); }))
        return tl::unexpected(std::string("This would move the objects too far away. Let all of them stay at "
                                          "coordinates of less than 1e12."));
    {
        SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Transform"));
        for (const std::shared_ptr<Object>& object : topmostOf(*objects))
        {
            edit.touch(object);
            const Transform parent = object->parent()->worldTransform();
            object->setTransform(parent.inverse() * *change * parent * object->transform());
        }
    }
    return Mcp::ToolResult::of(agentObjectsJson(*objects));
}

Mcp::Tool editTool(const char* name, const char* title, const char* description)
{
    Mcp::Tool tool;
    tool.name = name;
    tool.title = title;
    tool.description = std::string(description) + " One step that \"history.undo\" takes back.";
    tool.outputSchema = agentObjectsSchema("The objects as they are now.");
    return tool;
}

Mcp::Tool removeTool()
{
    Mcp::Tool tool =
        editTool("scene.remove", "Remove objects", "Takes objects, with all below them, out of the scene.");
    tool.inputSchema = AgentSchema::object({{"ids", AgentSchema::objectIds("The objects to remove.")}}, {"ids"});
    tool.outputSchema =
        AgentSchema::result({{"removed", AgentSchema::count("How many of the named objects went.")}}, {"removed"});
    tool.destructive = true;
    return tool;
}

Mcp::Tool renameTool()
{
    Mcp::Tool tool = editTool("scene.rename", "Rename an object", "Gives an object another name.");
    tool.inputSchema = AgentSchema::object(
        {{"id", AgentSchema::objectId("The object.")},
         {"name", AgentSchema::text("Its new name, at most 255 characters; blanks around it are left out.")}},
        {"id", "name"});
    tool.outputSchema = shortObjectSchema();
    tool.idempotent = true;
    return tool;
}

Mcp::Tool visibilityTool()
{
    Mcp::Tool tool = editTool("scene.setVisibility", "Show or hide objects",
                              "Turns the own switch of objects on or off. An object shows only while all above it are "
                              "on too.");
    tool.inputSchema = AgentSchema::object(
        {{"ids", AgentSchema::objectIds("The objects.")}, {"visible", AgentSchema::flag("true shows, false hides.")}},
        {"ids", "visible"});
    tool.idempotent = true;
    return tool;
}

Mcp::Tool appearanceTool()
{
    Mcp::Tool tool =
        editTool("scene.setAppearance", "Colour and shade objects",
                 "Changes colour, opacity and shading of objects and all below them. What is left out stays.");
    tool.inputSchema =
        Schema::object({{"ids", Schema::objectIds("The objects.")},
                        {"color", Schema::text("\"#rrggbb\". Geometry with colours of its own goes on to show those.")},
                        {"opacity", Schema::number("0: not to be seen, 1: opaque.", 0, 1)},
                        {"flatShaded", Schema::flag("Meshes: true shows the single triangles, false smooth shading.")}},
                       {"ids"});
    addAppearanceSchema(tool.outputSchema["properties"]["objects"]["items"]);
    tool.idempotent = true;
    return tool;
}

Mcp::Tool transformTool()
{
    Mcp::Tool tool =
        editTool("scene.transform", "Move, turn and scale objects",
                 "Moves objects, with all below them, in scene coordinates (mm, z up): first \"matrix\", then "
                 "\"scale\" and \"rotate\" about \"center\", then \"translate\".");
    Json::Value matrix =
        AgentSchema::list("An affine transform in scene coordinates: 16 numbers, row by row, the last row 0 0 0 "
                          "1.",
                          Schema::number("A number."), 16, 16);
    tool.inputSchema = Schema::object(
        {{"ids", Schema::objectIds("The objects.")},
         {"translate", Schema::vector("How far to move along x, y and z, in mm.")},
         {"rotate", Schema::described(
                        Schema::object({{"axis", Schema::vector("The direction to turn about, in scene coordinates.")},
                                        {"degrees", Schema::number("Counter-clockwise seen against the axis.")}},
                                       {"axis", "degrees"}),
                        "A turn.")},
         {"scale", Schema::number("A factor; 1 changes nothing.")},
         {"center", Schema::vector("What turns and scales about; the middle of the objects' box if left out.")},
         {"matrix", matrix}},
        {"ids"});
    return tool;
}

} // namespace

void addSceneEditTools(AgentToolList& list)
{
    list.add(removeTool(), remove);
    list.add(renameTool(), rename);
    list.add(visibilityTool(), setVisibility);
    list.add(appearanceTool(), setAppearance);
    list.add(transformTool(), transform);
}

} // namespace VX
