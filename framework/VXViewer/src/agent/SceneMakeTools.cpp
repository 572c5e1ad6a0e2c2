#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ObjectSummary.h"
#include "SceneSteps.h"
#include "items/ObjectEdits.h"
#include "items/SimpleShape.h"
#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr double shortestLength = 1e-4;
constexpr double longestLength = 1e6;
constexpr int mostSegments = 512;

AgentResult duplicate(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Duplicate"));
    selectForStep(viewer, *objects);
    duplicateSelectedObjects(viewer);
    return Mcp::ToolResult::of(agentObjectsJson(topmostSelectedObjects(viewer.scene())));
}

void name(Viewer& viewer, const std::shared_ptr<Object>& object, const std::string& text)
{
    if (text.empty())
        return;
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Rename"));
    edit.touch(object);
    object->setName(text);
}

AgentResult group(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Group"));
    selectForStep(viewer, *objects);
    groupSelectedObjects(viewer);
    const std::shared_ptr<Object> made = topmostSelectedObjects(viewer.scene()).front();
    name(viewer, made, arguments.text("name"));
    return Mcp::ToolResult::of(agentJson(*made, Detail::Summary));
}

/// Takes the dimensions of a shape from the arguments; those left out keep their usual values.
class Dimensions
{
public:
    explicit Dimensions(const AgentArguments& arguments)
        : arguments_(arguments)
    {
    }

    void operator()(CubeShape& s) const
    {
        length_("width", s.width);
        length_("depth", s.depth);
        length_("height", s.height);
    }

    void operator()(CylinderShape& s) const { round_(s); }

    void operator()(ConeShape& s) const { round_(s); }

    void operator()(SphereShape& s) const
    {
        length_("radius", s.radius);
        segments_(s.segments);
    }

    void operator()(PrismShape& s) const
    {
        length_("radius", s.radius);
        length_("height", s.height);
        segments_(s.sides);
    }

    void operator()(TorusShape& s) const
    {
        length_("radius", s.radius);
        s.tubeRadius = s.radius * 0.3F;
        length_("tubeRadius", s.tubeRadius);
        segments_(s.segments);
    }

    void operator()(ArrowShape& s) const
    {
        const float part = s.length;
        length_("height", s.length);
        const float factor = s.length / part;
        s.shaftRadius *= factor;
        s.headLength *= factor;
        s.headRadius *= factor;
        segments_(s.segments);
    }

    void operator()(PlaneShape& s) const
    {
        length_("width", s.width);
        length_("depth", s.depth);
    }

private:
    template <class Shape>
    void round_(Shape& s) const
    {
        length_("radius", s.radius);
        length_("height", s.height);
        segments_(s.segments);
    }

    void length_(const char* name, float& value) const
    {
        value = static_cast<float>(
            std::clamp(arguments_.number(name, static_cast<double>(value)), shortestLength, longestLength));
    }

    void segments_(int& value) const { value = std::clamp(arguments_.integer("segments", value), 3, mostSegments); }

    const AgentArguments& arguments_;
};

tl::expected<SimpleShape, std::string> shapeOf(const AgentArguments& arguments)
{
    std::vector<SimpleShape> shapes = makeSimpleShapes(10);
    const std::string wanted = arguments.text("shape");
    const auto found =
        std::ranges::find_if(shapes, [&](const SimpleShape& shape) { return toLower(nameOf(shape)) == wanted; });
    if (found == shapes.end())
        return tl::unexpected(fmt::format("There is no shape \"{}\". The input schema lists the shapes.", wanted));
    std::visit(Dimensions(arguments), *found);
    if (const auto* torus = std::get_if<TorusShape>(&*found); torus && torus->tubeRadius >= torus->radius)
        return tl::unexpected(std::string("The tube of a torus must be thinner than its ring: make \"tubeRadius\" less "
                                          "than \"radius\"."));
    return *found;
}

AgentResult createObject(Viewer& viewer, const AgentArguments& arguments)
{
    const auto shape = shapeOf(arguments);
    if (!shape)
        return tl::unexpected(shape.error());
    std::shared_ptr<Object> parent = viewer.sceneRoot();
    if (arguments.has("parent"))
    {
        auto found = arguments.object("parent", *parent);
        if (!found)
            return tl::unexpected(std::move(found.error()));
        parent = std::move(*found);
    }
    const auto made = std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(meshOf(*shape)));
    made->setName(arguments.text("name", tr(nameOf(*shape)).c_str()));
    const Vector3d position = arguments.vector("position").value_or(Vector3d::Zero());
    made->setTransform(parent->worldTransform().inverse() * Transform(Eigen::Translation3d(position)));
    {
        SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Create Simple Object"));
        edit.touch(parent);
        parent->addChild(made);
    }
    return Mcp::ToolResult::of(agentJson(*made, Detail::Summary));
}

Mcp::Tool duplicateTool()
{
    Mcp::Tool tool;
    tool.name = "scene.duplicate";
    tool.title = "Duplicate objects";
    tool.description =
        "Puts a copy of each object, with all below it, beside it at the same place and selects the copies. "
        "Copies share their geometry until one is edited. One step that \"history.undo\" takes back.";
    tool.inputSchema = AgentSchema::object({{"ids", AgentSchema::objectIds("The objects to copy.")}}, {"ids"});
    tool.outputSchema = agentObjectsSchema("The copies.");
    return tool;
}

Mcp::Tool groupTool()
{
    Mcp::Tool tool;
    tool.name = "scene.group";
    tool.title = "Group objects";
    tool.description =
        "Moves objects into a new group where the first of them was, and selects it. They stay where they "
        "are in space. One step that \"history.undo\" takes back.";
    tool.inputSchema = AgentSchema::object({{"ids", AgentSchema::objectIds("The objects to group.")},
                                            {"name", AgentSchema::text("Of the group; \"Group\" if left out.")}},
                                           {"ids"});
    tool.outputSchema = shortObjectSchema();
    return tool;
}

Mcp::Tool createTool()
{
    using namespace AgentSchema;
    const auto length = [](const char* description) { return number(description, shortestLength, longestLength); };
    Mcp::Tool tool;
    tool.name = "scene.createObject";
    tool.title = "Create a simple object";
    tool.description =
        "Makes a mesh of a simple shape, its axis along z and its middle (an arrow's foot) at \"position\". "
        "One step that \"history.undo\" takes back.";
    tool.inputSchema = object(
        {{"shape", choice("What to make.", {"cube", "cylinder", "sphere", "prism", "torus", "arrow", "cone", "plane"})},
         {"name", text("Of the object; the shape's name if left out.")},
         {"position", vector("In scene coordinates (mm); the origin if left out.")},
         {"parent", objectId("The object that it comes below; the root if left out.")},
         {"width", length("Cube, plane: along x, in mm; 10 if left out.")},
         {"depth", length("Cube, plane: along y, in mm; 10 if left out.")},
         {"height", length("Cube, cylinder, prism, cone, arrow: along z, in mm; 10 if left out.")},
         {"radius", length("Cylinder, sphere, prism, torus (of its ring), cone: in mm; 5 if left out.")},
         {"tubeRadius", length("Torus: less than \"radius\", in mm; 0.3 of it if left out.")},
         {"segments",
          integer("Round shapes: into how many pieces they are cut around; prism: its sides.", 3, mostSegments)}},
        {"shape"});
    tool.outputSchema = shortObjectSchema();
    return tool;
}

} // namespace

void addSceneMakeTools(AgentToolList& list)
{
    list.add(duplicateTool(), duplicate);
    list.add(groupTool(), group);
    list.add(createTool(), createObject);
}

} // namespace VX
