#include "AgentNumbers.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ObjectName.h"
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

namespace Schema = AgentSchema;

constexpr double shortestLength = 1e-4;
constexpr int mostSegments = 512;

/// Part of the step that is open.
void name(Viewer& viewer, const std::shared_ptr<Object>& object, const std::string& text)
{
    if (text == object->name())
        return;
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Rename"));
    edit.touch(object);
    object->setName(text);
}

AgentResult duplicate(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Duplicate"));
    selectForStep(viewer, *objects);
    duplicateSelectedObjects(viewer);
    const std::vector<std::shared_ptr<Object>> copies = topmostSelectedObjects(viewer.scene());
    for (const std::shared_ptr<Object>& copy : copies)
        name(viewer, copy, shortenedName(copy->name()));
    return Mcp::ToolResult::of(agentObjectsJson(copies));
}

/// "name"; `usual` where it is left out.
tl::expected<std::string, std::string> nameFrom(const AgentArguments& arguments, const std::string& usual)
{
    return arguments.has("name") ? objectNameOf(arguments.text("name")) : usual;
}

AgentResult group(Viewer& viewer, const AgentArguments& arguments)
{
    const auto objects = arguments.someObjects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    const auto wanted = nameFrom(arguments, {});
    if (!wanted)
        return tl::unexpected(wanted.error());
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Group"));
    selectForStep(viewer, *objects);
    groupSelectedObjects(viewer);
    const std::shared_ptr<Object> made = topmostSelectedObjects(viewer.scene()).front();
    if (!wanted->empty())
        name(viewer, made, *wanted);
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

    /// The names of those that the shape has.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

    void operator()(CubeShape& s)
    {
        length_("width", s.width);
        length_("depth", s.depth);
        length_("height", s.height);
    }

    void operator()(CylinderShape& s) { round_(s); }

    void operator()(ConeShape& s) { round_(s); }

    void operator()(SphereShape& s)
    {
        length_("radius", s.radius);
        segments_(s.segments);
    }

    void operator()(PrismShape& s)
    {
        length_("radius", s.radius);
        length_("height", s.height);
        segments_(s.sides);
    }

    void operator()(TorusShape& s)
    {
        length_("radius", s.radius);
        s.tubeRadius = s.radius * 0.3F;
        length_("tubeRadius", s.tubeRadius);
        segments_(s.segments);
    }

    void operator()(ArrowShape& s)
    {
        const float part = s.length;
        length_("height", s.length);
        const float factor = s.length / part;
        s.shaftRadius *= factor;
        s.headLength *= factor;
        s.headRadius *= factor;
        segments_(s.segments);
    }

    void operator()(PlaneShape& s)
    {
        length_("width", s.width);
        length_("depth", s.depth);
    }

private:
    template <class Shape>
    void round_(Shape& s)
    {
        length_("radius", s.radius);
        length_("height", s.height);
        segments_(s.segments);
    }

    void length_(const char* name, float& value)
    {
        names_.emplace_back(name);
        value = static_cast<float>(
            std::clamp(arguments_.number(name, static_cast<double>(value)), shortestLength, coordinateBound));
    }

    void segments_(int& value)
    {
        names_.emplace_back("segments");
        value = std::clamp(arguments_.integer("segments", value), 3, mostSegments);
    }

    const AgentArguments& arguments_;
    std::vector<std::string> names_;
};

/// Why a shape, a word in lower case, cannot have the dimensions of the arguments; empty: it can.
std::string whyNotOfShape(const AgentArguments& arguments, const std::string& shape,
                          const std::vector<std::string>& known)
{
    for (const char* name : {"width", "depth", "height", "radius", "tubeRadius", "segments"})
    {
        if (arguments.has(name) && std::ranges::find(known, name) == known.end())
            return fmt::format("{} {} has no \"{}\". It takes \"{}\".", shape.front() == 'a' ? "An" : "A", shape, name,
                               fmt::join(known, "\", \""));
    }
    return {};
}

tl::expected<SimpleShape, std::string> shapeOf(const AgentArguments& arguments)
{
    std::vector<SimpleShape> shapes = makeSimpleShapes(10);
    const std::string wanted = arguments.text("shape");
    const auto found =
        std::ranges::find_if(shapes, [&](const SimpleShape& shape) { return toLower(nameOf(shape)) == wanted; });
    if (found == shapes.end())
        return tl::unexpected(fmt::format("There is no shape \"{}\". The input schema lists the shapes.", wanted));
    Dimensions dimensions(arguments);
    std::visit(dimensions, *found);
    if (std::string reason = whyNotOfShape(arguments, wanted, dimensions.names()); !reason.empty())
        return tl::unexpected(std::move(reason));
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
    const auto name = nameFrom(arguments, tr(nameOf(*shape)));
    if (!name)
        return tl::unexpected(name.error());
    const auto made = std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(meshOf(*shape)));
    made->setName(*name);
    const Transform place(Eigen::Translation3d(arguments.vector("position").value_or(Vector3d::Zero())));
    made->setTransform(place);
    if (!isWithinBound(made->worldBox()))
        return tl::unexpected(
            std::string("The object would be too far away or too large. All of it has to be at coordinates of less "
                        "than 1e12."));
    made->setTransform(parent->worldTransform().inverse() * place);
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
    tool.inputSchema = AgentSchema::object(
        {{"ids", AgentSchema::objectIds("The objects to group.")},
         {"name", AgentSchema::text("Of the group, at most 255 characters; \"Group\" if left out.")}},
        {"ids"});
    tool.outputSchema = shortObjectSchema();
    return tool;
}

Mcp::Tool createTool()
{
    const auto length = [](const char* description)
    { return Schema::number(description, shortestLength, coordinateBound); };
    Mcp::Tool tool;
    tool.name = "scene.createObject";
    tool.title = "Create a simple object";
    tool.description =
        "Makes a mesh of a simple shape, its axis along z and its middle (an arrow's foot) at \"position\". "
        "One step that \"history.undo\" takes back.";
    tool.inputSchema = Schema::object(
        {{"shape",
          Schema::choice("What to make.", {"cube", "cylinder", "sphere", "prism", "torus", "arrow", "cone", "plane"})},
         {"name", Schema::text("Of the object, at most 255 characters; the shape's name if left out.")},
         {"position", Schema::vector("In scene coordinates (mm); the origin if left out.")},
         {"parent", Schema::objectId("The object that it comes below; the root if left out.")},
         {"width", length("Cube, plane: along x, in mm; 10 if left out.")},
         {"depth", length("Cube, plane: along y, in mm; 10 if left out.")},
         {"height", length("Cube, cylinder, prism, cone, arrow: along z, in mm; 10 if left out.")},
         {"radius", length("Cylinder, sphere, prism, torus (of its ring), cone: in mm; 5 if left out.")},
         {"tubeRadius", length("Torus: less than \"radius\", in mm; 0.3 of it if left out.")},
         {"segments", Schema::integer("Round shapes: into how many pieces they are cut around; prism: its sides.", 3,
                                      mostSegments)}},
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
