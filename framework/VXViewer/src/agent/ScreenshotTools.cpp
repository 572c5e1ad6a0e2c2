#include "../ui/MaskedPasswords.h"
#include "AgentCamera.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "ChosenScene.h"
#include "Montage.h"
#include "PictureCode.h"
#include "PictureScale.h"

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

/// Tells where `view` is in a picture that was drawn in one size and came out in another.
void placeIn(Json::Value& view, PixelSize drawn, PixelSize size)
{
    const PixelRect place =
        scaledPlace({view["x"].asInt(), view["y"].asInt(), view["width"].asInt(), view["height"].asInt()}, drawn, size);
    view["x"] = place.x;
    view["y"] = place.y;
    view["width"] = place.width;
    view["height"] = place.height;
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
        facts["width"] = coded->size.width;
        facts["height"] = coded->size.height;
        facts["mimeType"] = coded->mimeType;
        Mcp::ToolResult result;
        Json::StreamWriterBuilder writer;
        writer["indentation"] = "";
        writer["emitUTF8"] = true;
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
        capture.root = chosenScene(*objects);
    capture.transparentBackground = arguments.flag("transparent", false);
    const auto view = standardViewOf(arguments.text("view"));
    if (view)
        capture.camera->setStandardView(*view);
    const auto fields = arguments.below("camera");
    if (fields)
    {
        auto camera = changedCamera(*capture.camera, *fields);
        if (!camera)
            return tl::unexpected(std::move(camera.error()));
        capture.camera = *camera;
    }
    if (arguments.flag("fit", !fields && (view || !objects->empty())))
        SceneRenderer::fit(*capture.camera, capture.root ? *capture.root : viewer.scene(), capture.size,
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
    Image image;
    {
        const UI::ScopedMaskedPasswords masked;
        image = call->viewer().loop().captureWindow();
    }
    const int longest = std::max(image.size.width, image.size.height);
    const int wanted = std::clamp(arguments.integer("maxSize", usualSide), smallestSide, largestSide);
    if (longest > wanted)
        image = scaledDown(image, fittedSize(image.size, wanted));
    answerPicture(context, call, std::move(image), Json::Value(Json::objectValue));
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
            SceneRenderer::fit(*cell.camera, cell.root ? *cell.root : call->viewer().scene(), cell.size,
                               call->viewer().view().options().viewport);
        }
        const PixelRect place = montage.add(call->viewer().view().take(cell));
        Json::Value fact;
        fact["view"] = views[i];
        fact["x"] = place.x;
        fact["y"] = place.y;
        fact["width"] = place.width;
        fact["height"] = place.height;
        fact["camera"] = cameraJson(*cell.camera);
        facts["views"].append(std::move(fact));
    }
    answerPicture(context, call, montage.image(), std::move(facts));
}

/// The arguments that both tools have.
Json::Value pictureSchema()
{
    using namespace AgentSchema;
    return object(
        {{"maxSize", integer("The longer side of the picture in pixels, 1000 if left out. Pictures that would be "
                             "longer than 700,000 bytes come out smaller.",
                             smallestSide, largestSide)},
         {"format", choice("\"png\" if left out; \"jpeg\" is smaller and cannot be transparent.", {"png", "jpeg"})},
         {"ids", objectIds("Draw only these objects, hidden ones too; all that is visible if left out.")},
         {"transparent", flag("A transparent background; png only. false if left out.")}});
}

Mcp::Tool screenshotTool()
{
    using namespace AgentSchema;
    Mcp::Tool tool;
    tool.name = "viewer.captureScreenshot";
    tool.title = "Take a picture";
    tool.description =
        "Draws the scene and gives the picture back. Without arguments it is what the user's view shows; "
        "\"view\", \"camera\" and \"ids\" show it otherwise without moving the user's view. Also works while "
        "the window is minimised or hidden. The answer tells the camera: give it, with width and height, to "
        "\"select.pick\" to point at pixels of this picture.";
    tool.inputSchema = pictureSchema();
    Json::Value& fields = tool.inputSchema["properties"];
    fields["area"] =
        choice("\"viewport\" (if left out): the scene alone; \"window\": the whole window with the interface, "
               "as the user sees it, without \"view\", \"camera\", \"ids\", \"fit\" and \"transparent\".",
               {"viewport", "window"});
    fields["view"] = choice("A standard direction; z is up.", standardViewNames());
    fields["camera"] = cameraArgumentSchema();
    fields["fit"] =
        flag("Move in or out until all fills the picture; true if left out with \"view\" or \"ids\" and without "
             "\"camera\".");
    tool.outputSchema = result({{"width", count("In pixels.")},
                                {"height", count("In pixels.")},
                                {"mimeType", text("image/png or image/jpeg.")},
                                {"camera", cameraSchema()}},
                               {"width", "height", "mimeType"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool montageTool()
{
    using namespace AgentSchema;
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
        list("From where; front, right, top and isometric if left out. \"current\" is the user's view.",
             choice("A view.", views), 1, 9);
    tool.outputSchema = result({{"width", count("In pixels.")},
                                {"height", count("In pixels.")},
                                {"mimeType", text("image/png or image/jpeg.")},
                                {"views", list("Each view and its place in the picture.",
                                               result({{"view", text("Its name.")},
                                                       {"x", count("From the left.")},
                                                       {"y", count("From the top.")},
                                                       {"width", count("In pixels.")},
                                                       {"height", count("In pixels.")},
                                                       {"camera", cameraSchema()}},
                                                      {"view", "x", "y", "width", "height", "camera"}))}},
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
