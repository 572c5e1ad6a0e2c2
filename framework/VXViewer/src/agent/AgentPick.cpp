#include "AgentPick.h"

#include "AgentCamera.h"
#include "AgentSchema.h"

#include <VXViewer/Viewer.h>

#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr int largestSide = 8192;

/// A picture in whose middle a ray is seen as a point, so fine that only what it meets is near it.
constexpr PixelSize raySize{20000, 20000};

struct Aim
{
    SceneCapture picture;
    Vector2d pixel = Vector2d::Zero();
};

tl::expected<Aim, std::string> aimAlong(const AgentArguments& ray)
{
    const Vector3d origin = ray.vector("origin").value_or(Vector3d::Zero());
    const Vector3d direction = ray.vector("direction").value_or(Vector3d::Zero());
    constexpr double farthest = 1e12;
    if (!(direction.norm() > 0) || !(direction.cwiseAbs().maxCoeff() < farthest) ||
        !(origin.cwiseAbs().maxCoeff() < farthest))
        return tl::unexpected(std::string("The direction of the ray must not be 0, 0, 0, and its numbers must be less "
                                          "than 1e12."));
    Camera camera;
    const Vector3d along = direction.normalized();
    camera.setProjection(Projection::Perspective);
    camera.setRotation(Camera::lookRotation(along, std::abs(along.z()) > 0.9 ? Vector3d::UnitY() : Vector3d::UnitZ()));
    camera.setDistance(1);
    camera.setTarget(origin + along);
    return Aim{{.size = raySize, .camera = camera}, {raySize.width / 2.0, raySize.height / 2.0}};
}

tl::expected<Aim, std::string> aimOf(const Viewer& viewer, const AgentArguments& arguments)
{
    if (const auto ray = arguments.below("ray"))
        return aimAlong(*ray);
    if (!arguments.has("x") || !arguments.has("y"))
        return tl::unexpected(std::string("Say where to look: \"x\" and \"y\" in a picture, or \"ray\"."));
    const auto picture = pictureOf(viewer, arguments);
    if (!picture)
        return tl::unexpected(picture.error());
    const Vector2d pixel = Vector2d(arguments.number("x", 0), arguments.number("y", 0)) - pictureCorner(arguments);
    if (pixel.x() < 0 || pixel.y() < 0 || pixel.x() > picture->size.width || pixel.y() > picture->size.height)
        return tl::unexpected("The point lies outside of the picture, which is " + std::to_string(picture->size.width) +
                              " x " + std::to_string(picture->size.height) +
                              " pixels. Give \"picture\" as \"viewer.captureScreenshot\" answered it, or the view of "
                              "\"viewer.captureMontage\" that the point is in.");
    return Aim{*picture, pixel};
}

} // namespace

Json::Value pictureArgumentSchema()
{
    using namespace AgentSchema;
    return described(
        object({{"width", integer("In pixels.", 1, largestSide)},
                {"height", integer("In pixels.", 1, largestSide)},
                {"camera", cameraArgumentSchema()},
                {"x", integer("Of a view: where it begins in the montage, in pixels from the left.", 0, largestSide)},
                {"y", integer("Of a view: where it begins in the montage, in pixels from the top.", 0, largestSide)},
                {"view", text("Of a view: its name, which does not matter here.")},
                {"mimeType", text("Does not matter here.")}},
               {"width", "height"}),
        "The picture in which pixels are counted: what \"viewer.captureScreenshot\" answered, or one of the \"views\" "
        "of \"viewer.captureMontage\", pixels being counted in the whole montage then. The user's view, as "
        "\"camera.get\" tells, if left out.");
}

void addPointSchema(Json::Value& schema)
{
    using namespace AgentSchema;
    Json::Value& fields = schema["properties"];
    fields["x"] = number("Pixels from the left of the picture.");
    fields["y"] = number("Pixels from the top of the picture.");
    fields["picture"] = pictureArgumentSchema();
    fields["ray"] = described(object({{"origin", vector("Where it begins, in scene coordinates (mm).")},
                                      {"direction", vector("Where it goes; any length.")}},
                                     {"origin", "direction"}),
                              "Look along this instead of at a pixel.");
}

tl::expected<SceneCapture, std::string> pictureOf(const Viewer& viewer, const AgentArguments& arguments)
{
    const PixelRect& area = viewer.view().area();
    SceneCapture capture{.size = {area.width, area.height}, .camera = viewer.view().camera()};
    const auto picture = arguments.below("picture");
    if (!picture)
        return capture;
    capture.size = {std::clamp(picture->integer("width", area.width), 1, largestSide),
                    std::clamp(picture->integer("height", area.height), 1, largestSide)};
    if (const auto fields = picture->below("camera"))
    {
        auto camera = changedCamera(*capture.camera, *fields);
        if (!camera)
            return tl::unexpected(std::move(camera.error()));
        capture.camera = *camera;
    }
    return capture;
}

Vector2d pictureCorner(const AgentArguments& arguments)
{
    const auto picture = arguments.below("picture");
    return picture ? Vector2d(picture->integer("x", 0), picture->integer("y", 0)) : Vector2d(Vector2d::Zero());
}

void pickFor(const std::shared_ptr<AgentCall>& call, std::function<void(const std::optional<PickResult>&)> done)
{
    const auto aim = aimOf(call->viewer(), call->arguments());
    if (!aim)
    {
        call->answer(tl::unexpected(aim.error()));
        return;
    }
    call->setLostText("The user clicked in the view at the same time. Call again.");
    // The call lives as long as the pick may come.
    call->viewer().view().pick(aim->picture, aim->pixel,
                               [call, done = std::move(done)](const std::optional<PickResult>& hit) { done(hit); });
}

} // namespace VX
