#include "AgentCamera.h"

#include "AgentNumbers.h"
#include "AgentSchema.h"

#include <VXViewer/SceneJson.h>

#include <array>
#include <cmath>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

struct NamedView
{
    const char* name;
    StandardView view;
};

constexpr std::array namedViews{NamedView{"front", StandardView::Front},
                                NamedView{"back", StandardView::Back},
                                NamedView{"left", StandardView::Left},
                                NamedView{"right", StandardView::Right},
                                NamedView{"top", StandardView::Top},
                                NamedView{"bottom", StandardView::Bottom},
                                NamedView{"isometric", StandardView::Isometric}};

constexpr const char* withoutUp = "Leave it out: z is up then, or y where the camera looks along z.";

/// z, or y where one looks along z.
Vector3d usualUp(const Vector3d& direction)
{
    constexpr double nearlyOne = 0.9999;
    return std::abs(direction.z()) > nearlyOne ? Vector3d::UnitY() : Vector3d::UnitZ();
}

} // namespace

const std::vector<const char*>& standardViewNames()
{
    static const std::vector<const char*> names = []
    {
        std::vector<const char*> all;
        all.reserve(std::size(namedViews));
        for (const NamedView& each : namedViews)
            all.push_back(each.name);
        return all;
    }();
    return names;
}

std::optional<StandardView> standardViewOf(std::string_view name)
{
    for (const NamedView& each : namedViews)
    {
        if (name == each.name)
            return each.view;
    }
    return std::nullopt;
}

Json::Value cameraJson(const Camera& camera)
{
    Json::Value value;
    value["projection"] = camera.projection() == Projection::Perspective ? "perspective" : "orthographic";
    value["eye"] = toJson(camera.eye());
    value["target"] = toJson(camera.target());
    value["up"] = toJson(camera.up());
    return value;
}

namespace
{

Json::Value cameraFields(bool asArgument)
{
    const AgentSchema::Fields fields{
        {"projection", Schema::choice("perspective or orthographic.", {"perspective", "orthographic"})},
        {"eye", Schema::vector("Where one looks from, in scene coordinates (mm).")},
        {"target",
         Schema::vector("The point in the middle of the picture. In an orthographic view its distance from the eye "
                        "says how much is seen.")},
        {"up", Schema::vector("What points up in the picture.")}};
    return asArgument ? Schema::object(fields) : Schema::result(fields, {"projection", "eye", "target", "up"});
}

} // namespace

Json::Value cameraSchema()
{
    return AgentSchema::described(cameraFields(false), "Where the scene is looked at from; the vertical angle of a "
                                                       "perspective view is 34.4 degrees.");
}

Json::Value cameraArgumentSchema()
{
    return AgentSchema::described(cameraFields(true),
                                  "Where to look from, as \"camera\" in results; what is left out is "
                                  "taken from the viewer's camera.");
}

tl::expected<Camera, std::string> changedCamera(Camera camera, const AgentArguments& fields,
                                                std::optional<StandardView> view)
{
    if (view)
        camera.setStandardView(*view);
    if (fields.has("projection"))
        camera.setProjection(fields.text("projection") == "orthographic" ? Projection::Orthographic
                                                                         : Projection::Perspective);
    if (!fields.has("eye") && !fields.has("target") && !fields.has("up"))
        return camera;
    const bool keepsView = view && fields.has("eye") != fields.has("target");
    const Vector3d before = camera.target() - camera.eye();
    Vector3d eye = fields.vector("eye").value_or(camera.eye());
    Vector3d target = fields.vector("target").value_or(camera.target());
    if (keepsView && fields.has("eye"))
        target = eye + before;
    else if (keepsView)
        eye = target - before;
    const Vector3d look = target - eye;
    const double distance = look.norm();
    if (!isWithinBound(eye) || !isWithinBound(target))
        return tl::unexpected(std::string("The camera would be too far away. Use coordinates of less than 1e12."));
    if (!(distance > 0))
        return tl::unexpected(
            std::string("The eye and the target must not be the same point. Move one of them and call again."));
    const Vector3d direction = look / distance;
    camera.setTarget(target);
    camera.setDistance(distance);
    if (keepsView && !fields.has("up"))
        return camera;
    const Vector3d up = fields.vector("up").value_or(usualUp(direction));
    if (up.norm() == 0)
        return tl::unexpected(std::string("\"up\" must not be 0, 0, 0. ") + withoutUp);
    if (up.cross(direction).norm() <= 1e-9 * up.norm())
        return tl::unexpected(std::string("\"up\" must point elsewhere than the camera looks. ") + withoutUp);
    camera.setRotation(Camera::lookRotation(direction, up));
    return camera;
}

} // namespace VX
