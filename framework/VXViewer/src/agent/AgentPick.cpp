#include "AgentPick.h"

#include "AgentCamera.h"
#include "AgentNumbers.h"
#include "AgentSchema.h"

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

constexpr int largestSide = 8192;

/// A picture in whose middle a ray is seen as a point, so fine that only what it meets is near it.
constexpr PixelSize raySize{20000, 20000};

struct Aim
{
    AgentPicture picture;
    Vector2d pixel = Vector2d::Zero();
};

tl::expected<Aim, std::string> aimAlong(const AgentArguments& ray)
{
    const Vector3d origin = ray.vector("origin").value_or(Vector3d::Zero());
    const Vector3d direction = ray.vector("direction").value_or(Vector3d::Zero());
    if (!(direction.norm() > 0) || !isWithinBound(direction) || !isWithinBound(origin))
        return tl::unexpected(std::string("The direction of the ray must not be 0, 0, 0, and its numbers must be less "
                                          "than 1e12."));
    Camera camera;
    const Vector3d along = direction.normalized();
    camera.setProjection(Projection::Perspective);
    camera.setRotation(Camera::lookRotation(along, std::abs(along.z()) > 0.9 ? Vector3d::UnitY() : Vector3d::UnitZ()));
    camera.setDistance(1);
    camera.setTarget(origin + along);
    return Aim{{.capture = {.size = raySize, .camera = camera}}, {raySize.width / 2.0, raySize.height / 2.0}};
}

tl::expected<Aim, std::string> aimOf(const Viewer& viewer, const AgentArguments& arguments)
{
    const auto ray = arguments.below("ray");
    if (ray && (arguments.has("x") || arguments.has("y")))
        return tl::unexpected(
            std::string("Say where to look in one way: \"x\" and \"y\" in a picture, or \"ray\", not both."));
    if (ray)
        return aimAlong(*ray);
    if (!arguments.has("x") || !arguments.has("y"))
        return tl::unexpected(std::string("Say where to look: \"x\" and \"y\" in a picture, or \"ray\"."));
    auto picture = pictureOf(viewer, arguments);
    if (!picture)
        return tl::unexpected(std::move(picture.error()));
    const auto pixel = pixelOf(*picture, arguments, "x", "y");
    if (!pixel)
        return tl::unexpected(pixel.error());
    return Aim{std::move(*picture), *pixel};
}

} // namespace

Json::Value pictureArgumentSchema()
{
    const Json::Value side = Schema::integer("In pixels.", 0, largestSide);
    return Schema::described(
        Schema::object(
            {{"width", Schema::integer("In pixels.", 1, largestSide)},
             {"height", Schema::integer("In pixels.", 1, largestSide)},
             {"camera", cameraArgumentSchema()},
             {"x",
              Schema::integer("Of a view: where it begins in the montage, in pixels from the left.", 0, largestSide)},
             {"y",
              Schema::integer("Of a view: where it begins in the montage, in pixels from the top.", 0, largestSide)},
             {"ids",
              Schema::objectIds("The objects that alone are drawn in it, and hit; all that is visible if left out.")},
             {"viewport",
              Schema::described(Schema::object({{"x", side}, {"y", side}, {"width", side}, {"height", side}},
                                               {"x", "y", "width", "height"}),
                                "Of a picture of the window: where in it the scene is.")},
             {"view", Schema::text("Of a view: its name, which does not matter here.")},
             {"mimeType", Schema::text("Does not matter here.")}},
            {"width", "height"}),
        "The picture in which pixels are counted: all that \"viewer.captureScreenshot\" answered, or one of the "
        "\"views\" of \"viewer.captureMontage\", pixels being counted in the whole montage then. The user's view, as "
        "\"camera.get\" tells, if left out.");
}

void addPointSchema(Json::Value& schema)
{
    Json::Value& fields = schema["properties"];
    fields["x"] = Schema::number("Pixels from the left of the picture.");
    fields["y"] = Schema::number("Pixels from the top of the picture.");
    fields["picture"] = pictureArgumentSchema();
    fields["ray"] =
        Schema::described(Schema::object({{"origin", Schema::vector("Where it begins, in scene coordinates (mm).")},
                                          {"direction", Schema::vector("Where it goes; any length.")}},
                                         {"origin", "direction"}),
                          "Look along this instead of at a pixel.");
}

tl::expected<AgentPicture, std::string> pictureOf(const Viewer& viewer, const AgentArguments& arguments)
{
    const PixelRect& area = viewer.view().area();
    AgentPicture picture;
    picture.capture.size = {area.width, area.height};
    picture.capture.camera = viewer.view().camera();
    const auto told = arguments.below("picture");
    if (!told)
        return picture;
    const AgentArguments place = told->below("viewport").value_or(*told);
    picture.corner = {place.integer("x", 0), place.integer("y", 0)};
    picture.capture.size = {std::clamp(place.integer("width", area.width), 1, largestSide),
                            std::clamp(place.integer("height", area.height), 1, largestSide)};
    const auto objects = told->objects("ids", viewer.scene());
    if (!objects)
        return tl::unexpected(objects.error());
    if (!objects->empty())
    {
        picture.chosen = std::make_shared<const ChosenScene>(*objects);
        picture.capture.root = picture.chosen->root();
    }
    if (const auto fields = told->below("camera"))
    {
        auto camera = changedCamera(*picture.capture.camera, *fields);
        if (!camera)
            return tl::unexpected(std::move(camera.error()));
        picture.capture.camera = *camera;
    }
    return picture;
}

tl::expected<Vector2d, std::string> pixelOf(const AgentPicture& picture, const AgentArguments& arguments, const char* x,
                                            const char* y)
{
    const Vector2d point(arguments.number(x, 0), arguments.number(y, 0));
    Vector2d pixel = point - picture.corner;
    const PixelSize& size = picture.capture.size;
    if (pixel.x() < 0 || pixel.y() < 0 || pixel.x() > size.width || pixel.y() > size.height)
        return tl::unexpected(fmt::format(
            "The point {}, {} lies outside of the picture, which is {} x {} pixels from {}, {} on. Give \"picture\" as "
            "\"viewer.captureScreenshot\" answered it, or the view of \"viewer.captureMontage\" that the point is in.",
            point.x(), point.y(), size.width, size.height, picture.corner.x(), picture.corner.y()));
    return pixel;
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
    // The call lives as long as the pick may come, and so do the copies that may be hit.
    const auto finish = [call, done = std::move(done), chosen = aim->picture.chosen](std::optional<PickResult> hit)
    {
        if (hit && chosen)
            hit->object = chosen->originalOf(hit->object.lock().get());
        done(hit);
    };
    call->viewer().view().pick(aim->picture.capture, aim->pixel, finish);
}

} // namespace VX
