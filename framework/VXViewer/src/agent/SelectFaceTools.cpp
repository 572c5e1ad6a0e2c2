#include "AgentPick.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "SceneSteps.h"
#include "items/FaceSelectionEdit.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/MeshTopology.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Locale.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

constexpr double usualTolerance = 20;

FaceSelectionMode modeOf(const AgentArguments& arguments)
{
    const std::string mode = arguments.text("mode");
    return mode == "add"      ? FaceSelectionMode::Add
           : mode == "remove" ? FaceSelectionMode::Remove
                              : FaceSelectionMode::Replace;
}

/// {"found", "selectedFaces", "meshes"}
Json::Value facesJson(const Viewer& viewer, const std::vector<VisibleFaces>& found)
{
    Json::Value value;
    std::size_t faces = 0;
    value["meshes"] = Json::Value(Json::arrayValue);
    for (const VisibleFaces& each : found)
    {
        const std::size_t count = each.faces.count();
        faces += count;
        Json::Value mesh;
        mesh["id"] = Json::UInt64(each.object->id());
        mesh["faces"] = Json::UInt64(count);
        value["meshes"].append(std::move(mesh));
    }
    value["found"] = Json::UInt64(faces);
    value["selectedFaces"] = Json::UInt64(countShownSelectedFaces(viewer.scene()));
    return value;
}

bool isBelow(const Object& object, const Object& root)
{
    const Object* above = &object;
    while (above && above != &root)
        above = above->parent();
    return above != nullptr;
}

std::string hiddenText(const Object& object)
{
    return fmt::format(
        "The mesh {} is hidden, and triangles are selected only of what shows. Show it and all above it with "
        "\"scene.setVisibility\" first.",
        object.id());
}

/// Selects the region that a worker found, unless the mesh has changed meanwhile.
void takeRegion(const std::shared_ptr<AgentCall>& call, const std::shared_ptr<ObjectMesh>& object,
                const std::shared_ptr<const Mesh>& mesh, FaceSet region)
{
    if (call->refuseDuringUsersWork())
        return;
    if (object->mesh() != mesh || !isShown(*object) || !isBelow(*object, call->viewer().scene()))
    {
        call->answer(tl::unexpected(
            std::string("The mesh was changed, hidden or removed meanwhile: nothing was selected. Call again.")));
        return;
    }
    const std::vector<VisibleFaces> found{{object.get(), std::move(region)}};
    selectFaces(call->viewer(), translatable("Select Primitives"), found, modeOf(call->arguments()));
    call->answer(Mcp::ToolResult::of(facesJson(call->viewer(), found)));
}

void grow(AgentContext& context, const std::shared_ptr<AgentCall>& call, const std::shared_ptr<ObjectMesh>& object,
          std::uint32_t face)
{
    if (!isShown(*object))
    {
        call->answer(tl::unexpected(hiddenText(*object)));
        return;
    }
    const double tolerance = std::clamp(call->arguments().number("angleTolerance", usualTolerance), 0.0, 180.0);
    const auto work = [call, object, mesh = object->mesh(), face, tolerance]() mutable
    {
        try
        {
            const auto isToStop = [&] { return call->tool().isCanceled(); };
            FaceSet region = growRegion(*mesh, MeshTopology(*mesh), face, tolerance, isToStop);
            if (isToStop())
                return;
            CommandLoop::appendCommand([call, object, mesh = std::move(mesh), region = std::move(region)]() mutable
                                       { takeRegion(call, object, mesh, std::move(region)); });
        }
        catch (const std::bad_alloc&)
        {
            call->answer(tl::unexpected(std::string("There is not enough memory to find the region. Close other "
                                                    "programs or remove objects, then call again.")));
        }
    };
    context.compute(call, work);
}

/// Begins at "face" of "id".
void growFromFace(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    const auto object = arguments.object("id", call->viewer().scene());
    const auto mesh = object ? std::dynamic_pointer_cast<ObjectMesh>(*object) : nullptr;
    const int face = arguments.integer("face", 0);
    if (!object)
        call->answer(tl::unexpected(object.error()));
    else if (!mesh || !mesh->mesh())
        call->answer(
            tl::unexpected(fmt::format("The object {} is no mesh. \"scene.list\" with \"type\": \"ObjectMesh\" "
                                       "lists the meshes.",
                                       (*object)->id())));
    else if (face < 0 || static_cast<std::size_t>(face) >= mesh->mesh()->triangles.size())
        call->answer(tl::unexpected(fmt::format("The mesh has the faces 0 to {}.",
                                                static_cast<long long>(mesh->mesh()->triangles.size()) - 1)));
    else
        grow(context, call, mesh, static_cast<std::uint32_t>(face));
}

void selectRegion(const std::shared_ptr<AgentContext>& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    const bool hasFace = arguments.has("id") && arguments.has("face");
    const bool hasPoint = arguments.has("ray") || (arguments.has("x") && arguments.has("y"));
    if (!hasFace && !hasPoint)
    {
        call->answer(
            tl::unexpected(std::string("Say where to look: \"x\" and \"y\", \"ray\", or \"id\" with \"face\".")));
        return;
    }
    if (hasPoint && (arguments.has("id") || arguments.has("face")))
    {
        call->answer(tl::unexpected(
            std::string("Say where to look in one way: \"x\" and \"y\", \"ray\", or \"id\" with \"face\".")));
        return;
    }
    if (hasFace)
    {
        growFromFace(*context, call);
        return;
    }
    pickFor(call,
            [context, call](const std::optional<PickResult>& hit)
            {
                const auto mesh = hit ? std::dynamic_pointer_cast<ObjectMesh>(hit->object.lock()) : nullptr;
                if (mesh && mesh->mesh() && hit->element < mesh->mesh()->triangles.size())
                    grow(*context, call, mesh, hit->element);
                else
                    call->answer(tl::unexpected(std::string("No mesh is there. Look at a picture, and point at one, or "
                                                            "name \"id\" and \"face\".")));
            });
}

AgentResult selectRectangle(Viewer& viewer, const AgentArguments& arguments)
{
    const auto picture = pictureOf(viewer, arguments);
    if (!picture)
        return tl::unexpected(picture.error());
    const auto first = pixelOf(*picture, arguments, "x0", "y0");
    const auto second = pixelOf(*picture, arguments, "x1", "y1");
    if (!first || !second)
        return tl::unexpected(!first ? first.error() : second.error());
    if (first->x() == second->x() || first->y() == second->y())
        return tl::unexpected(std::string("The rectangle has no size: \"x0\" and \"x1\" must differ, and \"y0\" and "
                                          "\"y1\"."));
    const Vector2d low = first->cwiseMin(*second).array().floor();
    const Vector2d high = first->cwiseMax(*second).array().floor();
    const PixelRect rectangle{static_cast<int>(low.x()), static_cast<int>(low.y()),
                              static_cast<int>(high.x() - low.x()) + 1, static_cast<int>(high.y() - low.y()) + 1};
    std::vector<VisibleFaces> found = viewer.view().visibleFaces(picture->capture, rectangle);
    if (picture->chosen)
    {
        for (VisibleFaces& each : found)
            each.object = dynamic_cast<const ObjectMesh*>(picture->chosen->originalOf(each.object).get());
    }
    const auto hidden = std::ranges::find_if(found, [](const VisibleFaces& each) { return !isShown(*each.object); });
    if (hidden != found.end())
        return tl::unexpected(hiddenText(*hidden->object));
    selectFaces(viewer, translatable("Select Rectangle"), found, modeOf(arguments));
    return Mcp::ToolResult::of(facesJson(viewer, found));
}

Json::Value facesSchema()
{
    return Schema::result(
        {{"found", Schema::count("Triangles that were found.")},
         {"selectedFaces", Schema::count("Triangles that are selected now, in all meshes that show.")},
         {"meshes", Schema::list("The meshes that they are of.",
                                 Schema::result({{"id", Schema::objectId("The mesh.")},
                                                 {"faces", Schema::count("Triangles found of it.")}},
                                                {"id", "faces"}))}},
        {"found", "selectedFaces", "meshes"});
}

Json::Value modeSchema()
{
    return AgentSchema::choice("What becomes of the triangles selected before: \"replace\" if left out.",
                               {"replace", "add", "remove"});
}

Mcp::Tool primitiveTool()
{
    Mcp::Tool tool;
    tool.name = "select.primitive";
    tool.title = "Select a flat or curved region";
    tool.description =
        "Selects the smooth region of a mesh around a triangle: it goes round bends and ends where the "
        "surface turns more sharply than the tolerance, as at the edge of a hole or a face. Curved surfaces are made "
        "of flat facets, often 5 to 15 degrees apart: a tolerance below that ends at the first facet. Begin at a pixel "
        "of a picture, along a ray, or at \"face\" of \"id\". One step that \"history.undo\" takes back.";
    tool.inputSchema = Schema::object(
        {{"id", Schema::objectId("The mesh; with \"face\", instead of a point.")},
         {"face", Schema::integer("The triangle of \"id\" to begin at, from 0.", 0, 2147483647)},
         {"angleTolerance", Schema::number("Between neighbouring triangles, in degrees; 20 if left out.", 0, 180)},
         {"mode", modeSchema()}});
    addPointSchema(tool.inputSchema);
    tool.outputSchema = facesSchema();
    return tool;
}

Mcp::Tool rectangleTool()
{
    Mcp::Tool tool;
    tool.name = "select.rectangle";
    tool.title = "Select what is seen in a rectangle";
    tool.description =
        "Selects all triangles of which some part is seen in a rectangle of a picture, whole; those behind others are "
        "left out. Where there are none, nothing stays selected with the mode \"replace\". One step that "
        "\"history.undo\" takes back.";
    tool.inputSchema = Schema::object({{"x0", Schema::number("Pixels from the left: one corner.")},
                                       {"y0", Schema::number("Pixels from the top: that corner.")},
                                       {"x1", Schema::number("Pixels from the left: the opposite corner.")},
                                       {"y1", Schema::number("Pixels from the top: that corner.")},
                                       {"picture", pictureArgumentSchema()},
                                       {"mode", modeSchema()}},
                                      {"x0", "y0", "x1", "y1"});
    tool.outputSchema = facesSchema();
    return tool;
}

} // namespace

void addSelectFaceTools(AgentToolList& list)
{
    list.start(primitiveTool(),
               [context = list.context()](const std::shared_ptr<AgentCall>& call) { selectRegion(context, call); });
    list.add(rectangleTool(), selectRectangle);
}

} // namespace VX
