#include "render/CubeGraphics.h"

#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/Locale.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

/// The square that the cube takes up, and its distance from the corner of the view, in units of the design.
constexpr float areaSide = 112;
constexpr float areaMargin = 8;

/// A label is drawn larger than it is seen, so that it stays clear when the face turns away.
constexpr float labelResolution = 0.75F;

/// Where the ray that looks along -z of the camera through `place` (-1 to 1 over the area) meets the cube of half side
/// 1, in the cube's coordinates.
std::optional<Vector3d> hitCube(const Vector2d& place, const Camera& camera)
{
    const Eigen::Matrix3d toCube = camera.rotation().toRotationMatrix().transpose();
    const Vector3d origin = toCube * Vector3d(place.x(), place.y(), 4);
    const Vector3d direction = toCube * Vector3d(0, 0, -1);
    double enter = 0;
    double leave = 8;
    for (int axis = 0; axis < 3; ++axis)
    {
        if (std::abs(direction[axis]) < 1e-12)
        {
            if (std::abs(origin[axis]) > 1)
                return {};
            continue;
        }
        const double a = (-1 - origin[axis]) / direction[axis];
        const double b = (1 - origin[axis]) / direction[axis];
        enter = std::max(enter, std::min(a, b));
        leave = std::min(leave, std::max(a, b));
    }
    return enter <= leave ? std::optional<Vector3d>(origin + enter * direction) : std::nullopt;
}

CornerControllerObject::Labels translatedLabels()
{
    return {Locale::translate("Right"), Locale::translate("Left"), Locale::translate("Back"),
            Locale::translate("Front"), Locale::translate("Top"),  Locale::translate("Bottom")};
}

} // namespace

struct CornerControllerObject::Graphics
{
    CubeGraphics cube;
};

CornerControllerObject::CornerControllerObject()
    : CornerControllerObject(translatedLabels())
{
}

CornerControllerObject::CornerControllerObject(Labels labels)
    : mask_(ViewportMask::all())
    , labels_(std::move(labels))
{
}

CornerControllerObject::~CornerControllerObject() = default;

void CornerControllerObject::translateLabels()
{
    labels_ = translatedLabels();
    graphics_.reset();
}

void CornerControllerObject::enable(ViewportMask mask)
{
    mask_ = mask;
}

PixelRect CornerControllerObject::area(PixelSize viewport, float scale) const
{
    const auto side = static_cast<int>(areaSide * scale);
    const auto margin = static_cast<int>(areaMargin * scale);
    return {viewport.width - side - margin, margin, side, side};
}

bool CornerControllerObject::fits_(PixelSize viewport, float scale) const
{
    const PixelRect square = area(viewport, scale);
    return square.x >= 0 && square.y + square.height <= viewport.height;
}

void CornerControllerObject::draw(const Camera& camera, PixelSize viewport, float scale, ViewportMask drawnIn)
{
    if ((mask_ & drawnIn).isEmpty() || !fits_(viewport, scale))
        return;
    const PixelRect square = area(viewport, scale);
    const auto labelPixels = static_cast<int>(static_cast<float>(square.width) * labelResolution);
    if (!graphics_ || graphics_->cube.labelPixels() != labelPixels)
        graphics_ = std::make_unique<Graphics>(Graphics{CubeGraphics(labels_, labelPixels)});
    std::array<GLint, 4> place{};
    glGetIntegerv(GL_VIEWPORT, place.data());
    graphics_->cube.draw(camera, {place[0] + square.x, place[1] + viewport.height - square.y - square.height},
                         square.width, scale, hovered_);
}

bool CornerControllerObject::hover(const Vector2d& pixel, const Camera& camera, PixelSize viewport, float scale)
{
    const auto part = partAt(pixel, camera, viewport, scale);
    return std::exchange(hovered_, part) != part;
}

std::optional<Eigen::Vector3i> CornerControllerObject::partAt(const Vector2d& pixel, const Camera& camera,
                                                              PixelSize viewport, float scale) const
{
    if (mask_.isEmpty() || !fits_(viewport, scale))
        return {};
    const PixelRect square = area(viewport, scale);
    const double half = square.width / 2.0;
    const Vector2d place((pixel.x() - square.x - half) / (half * cubeHalfSide),
                         (square.y + half - pixel.y()) / (half * cubeHalfSide));
    const auto hit = hitCube(place, camera);
    if (!hit)
        return {};
    Eigen::Vector3i part;
    for (int axis = 0; axis < 3; ++axis)
        part[axis] = (*hit)[axis] > cubeMiddle ? 1 : (*hit)[axis] < -cubeMiddle ? -1 : 0;
    return part;
}

Eigen::Quaterniond CornerControllerObject::rotationFor(const Eigen::Vector3i& part, const Camera& camera)
{
    const Vector3d direction = -part.cast<double>().normalized();
    if (part.x() != 0 || part.y() != 0)
        return Camera::lookRotation(direction, Vector3d::UnitZ());
    Vector3d up = Vector3d::UnitY();
    for (const Vector3d& candidate : {Vector3d(1, 0, 0), Vector3d(-1, 0, 0), Vector3d(0, -1, 0)})
    {
        if (candidate.dot(camera.up()) > up.dot(camera.up()) + 1e-9)
            up = candidate;
    }
    return Camera::lookRotation(direction, up);
}

bool CornerControllerObject::click(const Vector2d& pixel, CameraController& controller, PixelSize viewport, float scale,
                                   double now)
{
    const auto part = partAt(pixel, controller.camera(), viewport, scale);
    if (!part)
        return false;
    controller.turnTo(rotationFor(*part, controller.camera()), now);
    return true;
}

} // namespace VX
