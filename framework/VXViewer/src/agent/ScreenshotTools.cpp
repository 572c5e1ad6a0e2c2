#include "../ui/MaskedPasswords.h"
#include "AgentCamera.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ChosenScene.h"
#include "Montage.h"
#include "PictureCode.h"
#include "PictureScale.h"
#include "UserDialogs.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneRenderer.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#include <json/json.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

constexpr int usualSide = 1000;
constexpr int smallestSide = 16;
/// What all graphics can draw that the program runs on.
constexpr int largestSide = 4096;

/// Clients refuse results of more than a million bytes, of which a picture in base64 takes four thirds of its own.
constexpr std::size_t mostBytes = 700000;

PictureFormat formatOf(const AgentArguments& arguments)
{
    return arguments.text("format") == "jpeg" ? PictureFormat::Jpeg : PictureFormat::Png;
}

/// The view's proportions, or usual ones while there is none.
PixelSize sizeOf(const Viewer& viewer, const AgentArguments& arguments)
{
    const PixelRect& area = viewer.view().area();
    const PixelSize shown =
        PixelSize{area.width, area.height}.isEmpty() ? PixelSize{4, 3} : PixelSize{area.width, area.height};
    return fittedSize(shown, std::clamp(arguments.integer("maxSize", usualSide), smallestSide, largestSide));
}

/// Adds where something is in a picture to what is told of it.
void tellPlace(Json::Value& fact, const PixelRect& place)
{
    fact["x"] = place.x;
    fact["y"] = place.y;
    fact["width"] = place.width;
    fact["height"] = place.height;
}

/// Tells which objects alone a picture shows.
void tellIds(Json::Value& fact, const AgentArguments& arguments)
{
    for (const std::uint64_t id : arguments.ids("ids"))
        fact["ids"].append(Json::UInt64(id));
}

/// Tells where `view` is in a picture that was drawn in one size and came out in another.
void placeIn(Json::Value& view, PixelSize drawn, PixelSize size)
{
    tellPlace(view, scaledPlace({view["x"].asInt(), view["y"].asInt(), view["width"].asInt(), view["height"].asInt()},
                                drawn, size));
}

/// Encodes on a worker and answers with the picture and `facts`.
void answerPicture(AgentContext& context, const std::shared_ptr<AgentCall>& call, Image image, Json::Value facts)
{
    if (image.isEmpty())
    {
        call->answer(tl::unexpected(std::string("There is no picture: the window is minimised. Ask for the area "
                                                "\"viewport\", which is drawn anyway.")));
        return;
    }
    const auto work =
        [call, image = std::move(image), facts = std::move(facts), format = formatOf(call->arguments())]() mutable
    {
        if (call->tool().isCanceled())
            return;
        const PixelSize drawn = image.size;
        auto coded = codePicture(std::move(image), format, mostBytes);
        if (!coded)
        {
            call->answer(tl::unexpected(std::move(coded.error())));
            return;
        }
        if (facts.isMember("views"))
        {
            for (Json::Value& view : facts["views"])
                placeIn(view, drawn, coded->size);
        }
        if (facts.isMember("viewport"))
            placeIn(facts["viewport"], drawn, coded->size);
        facts["width"] = coded->size.width;
        facts["height"] = coded->size.height;
        facts["mimeType"] = coded->mimeType;
        Mcp::ToolResult result;
        Json::StreamWriterBuilder writer;
        writer["indentation"] = "";
        writer["emitUTF8"] = true;
        writer["precision"] = 15;
        result.content.push_back(
            {.type = Mcp::Content::Type::Image, .mimeType = coded->mimeType, .data = std::move(coded->bytes)});
        result.content.push_back({.text = Json::writeString(writer, facts)});
        result.structured = std::move(facts);
        call->answer(std::move(result));
    };
    context.compute(call, work);
}

/// What to draw: the chosen objects or all, from where the arguments say.
tl::expected<SceneCapture, std::string> captureOf(Viewer& viewer, const AgentArguments& arguments)
{
    if (arguments.flag("transparent", false) && formatOf(arguments) == PictureFormat::Jpeg)
        return tl::unexpected(
            std::string("A jpeg cannot be transparent. Ask for a png, or leave \"transparent\" out."));
    const auto objects = arguments.objects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    SceneCapture capture{.size = sizeOf(viewer, arguments), .camera = viewer.view().camera()};
    if (!objects->empty())
        capture.root = ChosenScene(*objects).root();
    capture.transparentBackground = arguments.flag("transparent", false);
    const auto view = standardViewOf(arguments.text("view"));
    const auto fields = arguments.below("camera");
    if (fields)
    {
        auto camera = changedCamera(*capture.camera, *fields, view);
        if (!camera)
            return tl::unexpected(std::move(camera.error()));
        capture.camera = *camera;
    }
    else if (view)
        capture.camera->setStandardView(*view);
    if (arguments.flag("fit", !fields && (view || !objects->empty())))
        SceneRenderer::fit(*capture.camera, capture.root ? *capture.root : viewer.scene(), {capture.size},
                           viewer.view().options().viewport);
    return capture;
}

void captureWindow(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    if (arguments.has("view") || arguments.has("camera") || arguments.has("ids") || arguments.flag("fit", false) ||
        arguments.flag("transparent", false))
    {
        call->answer(tl::unexpected(
            std::string("The window is shown as the user sees it. Leave \"view\", \"camera\", \"ids\", \"fit\" and "
                        "\"transparent\" out, or ask for the area \"viewport\".")));
        return;
    }
    if (isUserAskedForFile(call->viewer()))
    {
        call->answer(tl::unexpected(std::string(
            "The user is choosing a file: the window may show folders that are the user's alone. Call again "
            "when the file dialog is closed, or ask for the area \"viewport\".")));
        return;
    }
    Image image;
    {
        const UI::ScopedMaskedPasswords masked;
        image = call->viewer().loop().captureWindow();
    }
    const PixelSize drawn = image.size;
    const int wanted = std::clamp(arguments.integer("maxSize", usualSide), smallestSide, largestSide);
    if (std::max(drawn.width, drawn.height) > wanted)
        image = scaledDown(image, fittedSize(drawn, wanted));
    Json::Value facts;
    facts["camera"] = cameraJson(call->viewer().view().camera());
    tellPlace(facts["viewport"], scaledPlace(call->viewer().view().area(), drawn, image.size));
    answerPicture(context, call, std::move(image), std::move(facts));
}

void capture(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    if (call->arguments().text("area") == "window")
    {
        captureWindow(context, call);
        return;
    }
    const auto picture = captureOf(call->viewer(), call->arguments());
    if (!picture)
    {
        call->answer(tl::unexpected(picture.error()));
        return;
    }
    Json::Value facts;
    facts["camera"] = cameraJson(*picture->camera);
    tellIds(facts, call->arguments());
    answerPicture(context, call, call->viewer().view().take(*picture), std::move(facts));
}

void captureMontage(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    std::vector<std::string> views = arguments.texts("views");
    if (views.empty())
        views = {"front", "right", "top", "isometric"};
    auto picture = captureOf(call->viewer(), arguments);
    if (!picture)
    {
        call->answer(tl::unexpected(picture.error()));
        return;
    }
    Montage montage(picture->size, views.size());
    Json::Value facts;
    for (std::size_t i = 0; i < views.size(); ++i)
    {
        SceneCapture cell = *picture;
        cell.size = montage.cellSize();
        if (const auto view = standardViewOf(views[i]))
        {
            cell.camera->setStandardView(*view);
            SceneRenderer::fit(*cell.camera, cell.root ? *cell.root : call->viewer().scene(), {cell.size},
                               call->viewer().view().options().viewport);
        }
        const PixelRect place = montage.add(call->viewer().view().take(cell));
        Json::Value fact;
        fact["view"] = views[i];
        tellPlace(fact, place);
        fact["camera"] = cameraJson(*cell.camera);
        tellIds(fact, arguments);
        facts["views"].append(std::move(fact));
    }
    answerPicture(context, call, montage.image(), std::move(facts));
}

/// The arguments that both tools have.
Json::Value pictureSchema()
{
    return Schema::object(
        {{"maxSize",
          Schema::integer("The longer side of the picture in pixels, 1000 if left out. Pictures that would be "
                          "longer than 700,000 bytes come out smaller.",
                          smallestSide, largestSide)},
         {"format",
          Schema::choice("\"png\" if left out; \"jpeg\" is smaller and cannot be transparent.", {"png", "jpeg"})},
         {"ids", Schema::objectIds("Draw only these objects, hidden ones too; all that is visible if left out.")},
         {"transparent", Schema::flag("A transparent background; png only. false if left out.")}});
}

Json::Value placeSchema()
{
    return Schema::result({{"x", Schema::count("In pixels from the left.")},
                           {"y", Schema::count("In pixels from the top.")},
                           {"width", Schema::count("In pixels.")},
                           {"height", Schema::count("In pixels.")}},
                          {"x", "y", "width", "height"});
}

Json::Value drawnIdsSchema()
{
    return AgentSchema::list("The objects that are drawn; missing where all are.", AgentSchema::objectId("An object."));
}

Mcp::Tool screenshotTool()
{
    Mcp::Tool tool;
    tool.name = "viewer.captureScreenshot";
    tool.title = "Take a picture";
    tool.description =
        "Draws the scene and gives the picture back. Without arguments it is what the user's view shows; "
        "\"view\", \"camera\" and \"ids\" show it otherwise without moving the user's view. Selected objects take "
        "on some orange and selected triangles are magenta, but not with \"ids\". Also works while the window is "
        "minimised or hidden. Give the answer as \"picture\" to \"select.pick\" to point at pixels of this picture.";
    tool.inputSchema = pictureSchema();
    Json::Value& fields = tool.inputSchema["properties"];
    fields["area"] = Schema::choice(
        "\"viewport\" (if left out): the scene alone; \"window\": the whole window with the interface, "
        "as the user sees it, without \"view\", \"camera\", \"ids\", \"fit\" and \"transparent\", and not while "
        "the user chooses a file.",
        {"viewport", "window"});
    fields["view"] = Schema::choice("A standard direction; z is up.", standardViewNames());
    fields["camera"] = cameraArgumentSchema();
    fields["fit"] = Schema::flag(
        "Move in or out until all fills the picture; true if left out with \"view\" or \"ids\" and without "
        "\"camera\".");
    tool.outputSchema =
        Schema::result({{"width", Schema::count("In pixels.")},
                        {"height", Schema::count("In pixels.")},
                        {"mimeType", Schema::text("image/png or image/jpeg.")},
                        {"camera", cameraSchema()},
                        {"ids", drawnIdsSchema()},
                        {"viewport", Schema::described(placeSchema(), "With the area \"window\": where in the picture "
                                                                      "the scene is.")}},
                       {"width", "height", "mimeType", "camera"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool montageTool()
{
    std::vector<const char*> views = standardViewNames();
    views.push_back("current");
    Mcp::Tool tool;
    tool.name = "viewer.captureMontage";
    tool.title = "Take a picture from several sides";
    tool.description =
        "Draws the scene from several sides into one picture, row by row, without moving the user's view. "
        "The answer tells where in the picture each view is: give one of its \"views\" as \"picture\" to "
        "\"select.pick\" to point at pixels of the whole picture within that view.";
    tool.inputSchema = pictureSchema();
    tool.inputSchema["properties"]["views"] =
        Schema::list("From where; front, right, top and isometric if left out. \"current\" is the user's view.",
                     Schema::choice("A view.", views), 1, 9);
    Json::Value view = placeSchema();
    view["properties"]["view"] = Schema::text("Its name.");
    view["properties"]["camera"] = cameraSchema();
    view["properties"]["ids"] = drawnIdsSchema();
    view["required"].append("view");
    view["required"].append("camera");
    tool.outputSchema =
        Schema::result({{"width", Schema::count("In pixels.")},
                        {"height", Schema::count("In pixels.")},
                        {"mimeType", Schema::text("image/png or image/jpeg.")},
                        {"views", Schema::list("Each view and its place in the picture.", std::move(view))}},
                       {"width", "height", "mimeType", "views"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

} // namespace

void addScreenshotTools(AgentToolList& list)
{
    list.start(screenshotTool(),
               [context = list.context()](const std::shared_ptr<AgentCall>& call) { capture(*context, call); });
    list.start(montageTool(),
               [context = list.context()](const std::shared_ptr<AgentCall>& call) { captureMontage(*context, call); });
}

} // namespace VX
