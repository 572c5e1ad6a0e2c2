#include "AgentNumbers.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "MeshStructure.h"
#include "ObjectSummary.h"
#include "Paging.h"
#include "panels/MeshMeasure.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

Detail detailOf(const AgentArguments& arguments, Detail usual)
{
    if (!arguments.has("detail"))
        return usual;
    return arguments.text("detail") == "full" ? Detail::Full : Detail::Summary;
}

/// What is looked for below an object.
std::vector<std::shared_ptr<Object>> findBelow(Object& root, const AgentArguments& arguments)
{
    const bool deep = arguments.flag("recursive", true);
    const std::string part = toLower(arguments.text("nameContains"));
    const std::string type = arguments.text("type");
    std::vector<std::shared_ptr<Object>> found;
    visitObjects(root,
                 [&](Object& object)
                 {
                     const bool fits = &object != &root && (deep || object.parent() == &root) &&
                                       (part.empty() || toLower(object.name()).find(part) != std::string::npos) &&
                                       (type.empty() || object.typeName() == type);
                     if (fits)
                         found.push_back(object.shared_from_this());
                 });
    return found;
}

double boxSize(const Object& object)
{
    const Box3d box = object.worldBox();
    return box.isEmpty() ? 0 : box.diagonal().norm();
}

double triangleCount(const Object& object)
{
    double count = 0;
    visitObjects(object,
                 [&](const Object& each)
                 {
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&each); mesh && mesh->mesh())
                         count += static_cast<double>(mesh->mesh()->triangles.size());
                 });
    return count;
}

void sortFound(std::vector<std::shared_ptr<Object>>& found, const std::string& order)
{
    if (order != "size" && order != "triangles")
        return;
    // Those of one size stay in the order of the scene.
    std::multimap<double, std::shared_ptr<Object>, std::greater<>> sized;
    for (std::shared_ptr<Object>& object : found)
    {
        const double size = order == "size" ? boxSize(*object) : triangleCount(*object);
        sized.emplace(size, std::move(object));
    }
    std::ranges::transform(sized, found.begin(), [](auto& each) { return std::move(each.second); });
}

AgentResult listObjects(Viewer& viewer, const AgentArguments& arguments)
{
    std::shared_ptr<Object> root = viewer.sceneRoot();
    if (arguments.has("parent"))
    {
        auto found = arguments.object("parent", *root);
        if (!found)
            return tl::unexpected(std::move(found.error()));
        root = std::move(*found);
    }
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    std::vector<std::shared_ptr<Object>> found = findBelow(*root, arguments);
    sortFound(found, arguments.text("sortBy"));
    const Detail detail = detailOf(arguments, Detail::Summary);
    Json::Value result;
    result["root"] = Json::UInt64(root->id());
    result["objects"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(found.size()); i < paging->end(found.size()); ++i)
        result["objects"].append(agentJson(*found[i], detail));
    paging->describe(result, found.size());
    return Mcp::ToolResult::of(std::move(result));
}

/// What is measured of a mesh, on a worker.
void measure(AgentContext& context, const std::shared_ptr<AgentCall>& call, Json::Value result,
             const ObjectMesh& object)
{
    const auto work =
        [call, result = std::move(result), mesh = object.mesh(), world = object.worldTransform()]() mutable
    {
        try
        {
            const Mesh joined = joinEqualPoints(*mesh);
            const auto structure = findMeshStructure(joined, [&] { return call->tool().isCanceled(); });
            if (!structure)
                return;
            const MeshMeasure measures = measureMesh(joined, world);
            result["area"] = rounded(measures.area);
            result["volume"] = measures.volume ? rounded(*measures.volume) : Json::Value();
            result["closed"] = measures.volume.has_value();
            result["components"] = Json::UInt64(structure->components);
            result["holes"] = Json::UInt64(structure->holes);
            result["borderEdges"] = Json::UInt64(structure->borderEdges);
            call->answer(Mcp::ToolResult::of(std::move(result)));
        }
        catch (const std::bad_alloc&)
        {
            call->answer(tl::unexpected(std::string("There is not enough memory to measure the mesh. Ask with "
                                                    "\"detail\": \"summary\", which does not measure.")));
        }
    };
    context.compute(call, work);
}

void getObject(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    const auto object = arguments.object("id", call->viewer().scene());
    if (!object)
    {
        call->answer(tl::unexpected(object.error()));
        return;
    }
    const Detail detail = detailOf(arguments, Detail::Full);
    Json::Value result = agentJson(**object, detail);
    const auto* mesh = dynamic_cast<const ObjectMesh*>(object->get());
    if (detail == Detail::Full && mesh && mesh->mesh() && !mesh->mesh()->triangles.empty())
        measure(context, call, std::move(result), *mesh);
    else
        call->answer(Mcp::ToolResult::of(std::move(result)));
}

Json::Value detailSchema(const char* description)
{
    return AgentSchema::choice(description, {"summary", "full"});
}

Mcp::Tool listTool()
{
    Mcp::Tool tool;
    tool.name = "scene.list";
    tool.title = "List the objects of the scene";
    tool.description =
        "Lists the objects below the root of the scene or below \"parent\", with id, name, counts and box "
        "of each. Ids stay the same for as long as the program runs. Sort by \"size\" to find the largest "
        "objects, with \"type\": \"ObjectMesh\" for the largest part instead of the group that holds it. Lengths are "
        "millimetres; z is up.";
    tool.inputSchema = Schema::object(
        {{"parent", Schema::objectId("List what is below this object instead of the whole scene.")},
         {"recursive", Schema::flag("Also what is below those objects; true if left out.")},
         {"nameContains", Schema::text("Only objects with this in their names; case does not matter.")},
         {"type",
          Schema::choice("Only objects of this type.", {"Object", "ObjectMesh", "ObjectPoints", "ObjectLines"})},
         {"sortBy", Schema::choice("\"tree\" (if left out): as in the scene, parents first; \"size\": longest "
                                   "diagonal of the box first; \"triangles\": most triangles first, with "
                                   "those of what is below.",
                                   {"tree", "size", "triangles"})},
         {"detail", detailSchema("\"full\" adds transform, colour and shading; \"summary\" if left "
                                 "out.")},
         {"limit", Paging::limitSchema()},
         {"cursor", Paging::cursorSchema()}});
    tool.outputSchema =
        Schema::result({{"root", Schema::objectId("What was listed: the root of the scene or \"parent\".")},
                        {"objects", Schema::list("The objects.", agentObjectSchema())},
                        {"total", Paging::totalSchema()},
                        {"nextCursor", Paging::nextCursorSchema()}},
                       {"root", "objects", "total"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool getObjectTool()
{
    Mcp::Tool tool;
    tool.name = "scene.getObject";
    tool.title = "Describe an object";
    tool.description =
        "Tells everything about one object: counts, box, transforms, colour, and of a mesh its area, volume, "
        "parts and open boundaries. Meshes of millions of triangles take a few seconds.";
    tool.inputSchema = Schema::object({{"id", Schema::objectId("As \"scene.list\" tells.")},
                                       {"detail", detailSchema("\"summary\" measures nothing; \"full\" if left out.")}},
                                      {"id"});
    Json::Value schema = agentObjectSchema();
    Json::Value& fields = schema["properties"];
    Json::Value matrix =
        Schema::list("16 numbers, row by row: from the object to its parent.", Schema::number(""), 16, 16);
    matrix["items"].removeMember("description");
    fields["transform"] = matrix;
    fields["worldTransform"] = Schema::described(matrix, "16 numbers, row by row: from the object to the scene.");
    addAppearanceSchema(schema);
    fields["segments"] = Schema::count("Lines: how many.");
    fields["area"] = Schema::number("Meshes: of the surface, in mm² in the scene.");
    fields["volume"] = Schema::orNull(
        Schema::number("Closed meshes: mm³ in the scene, negative where inside out; null for open ones."));
    fields["closed"] = Schema::flag("Meshes: whether the surface has no border.");
    fields["components"] = Schema::count("Meshes: parts that share no point.");
    fields["holes"] = Schema::count(
        "Meshes: open boundaries, the loops of edges of one triangle alone, as where a piece of the surface "
        "is missing; an open sheet has one too. A hole drilled through a solid is none.");
    fields["borderEdges"] = Schema::count("Meshes: edges of one triangle alone.");
    tool.outputSchema = std::move(schema);
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

} // namespace

void addSceneTools(AgentToolList& list)
{
    list.add(listTool(), listObjects);
    list.start(getObjectTool(),
               [context = list.context()](const std::shared_ptr<AgentCall>& call) { getObject(*context, call); });
}

} // namespace VX
