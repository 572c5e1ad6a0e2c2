#include "render/CameraFit.h"

#include <VXViewer/Camera.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace VX
{

namespace
{

const double tanHalfField = std::tan(Camera::fieldOfView / 2);

std::array<Vector3d, 8> cornersOf(const Box3d& box)
{
    std::array<Vector3d, 8> corners;
    for (int i = 0; i < 8; ++i)
        corners[static_cast<std::size_t>(i)] = box.corner(static_cast<Box3d::CornerType>(i));
    return corners;
}

double aspectOf(PixelSize viewport)
{
    return viewport.isEmpty() ? 1.0 : double(viewport.width) / double(viewport.height);
}

/// From pixels to -1 to 1, y up.
Vector2d toNormalized(const Vector2d& pixel, PixelSize viewport)
{
    return {2 * pixel.x() / std::max(viewport.width, 1) - 1, 1 - 2 * pixel.y() / std::max(viewport.height, 1)};
}

} // namespace

void Camera::setDistance(double distance)
{
    distance_ = std::max(distance, std::numeric_limits<double>::min());
}

Vector3d Camera::eye() const
{
    return target_ - direction() * distance_;
}

Vector3d Camera::right() const
{
    return rotation_.conjugate() * Vector3d::UnitX();
}

Vector3d Camera::up() const
{
    return rotation_.conjugate() * Vector3d::UnitY();
}

Vector3d Camera::direction() const
{
    return rotation_.conjugate() * -Vector3d::UnitZ();
}

double Camera::halfHeight_() const
{
    return distance_ * tanHalfField;
}

Eigen::Matrix4d Camera::viewMatrix() const
{
    Eigen::Matrix4d view = Eigen::Matrix4d::Identity();
    view.topLeftCorner<3, 3>() = rotation_.toRotationMatrix();
    view.topRightCorner<3, 1>() = -(rotation_ * eye());
    return view;
}

Eigen::Matrix4d Camera::projectionMatrix(PixelSize viewport, ClipRange range) const
{
    const double n = range.nearPlane;
    const double f = range.farPlane;
    const double aspect = aspectOf(viewport);
    Eigen::Matrix4d m = Eigen::Matrix4d::Zero();
    if (projection_ == Projection::Perspective)
    {
        m(0, 0) = 1 / (tanHalfField * aspect);
        m(1, 1) = 1 / tanHalfField;
        m(2, 2) = -(f + n) / (f - n);
        m(2, 3) = -2 * f * n / (f - n);
        m(3, 2) = -1;
    }
    else
    {
        m(0, 0) = 1 / (halfHeight_() * aspect);
        m(1, 1) = 1 / halfHeight_();
        m(2, 2) = -2 / (f - n);
        m(2, 3) = -(f + n) / (f - n);
        m(3, 3) = 1;
    }
    return m;
}

ClipRange Camera::clipRange(const Box3d& sceneBox) const
{
    double nearest = distance_ / 2;
    double farthest = distance_ * 2;
    if (!sceneBox.isEmpty())
    {
        nearest = std::numeric_limits<double>::max();
        farthest = std::numeric_limits<double>::lowest();
        for (const Vector3d& corner : cornersOf(sceneBox))
        {
            nearest = std::min(nearest, depth(corner));
            farthest = std::max(farthest, depth(corner));
        }
    }
    const double pad = 0.005 * (farthest - nearest) + 1e-3 * distance_;
    nearest -= pad;
    farthest += pad;
    if (projection_ == Projection::Orthographic)
        return {nearest, farthest};

    // Depth resolution is spent on what lies between the eye and a hundred times the distance of the target.
    farthest = std::max(farthest, distance_ * 0.02);
    const double least = std::max(farthest * 1e-6, std::min(distance_, farthest) * 0.01);
    return {std::max(nearest, least), farthest};
}

Eigen::Quaterniond Camera::lookRotation(const Vector3d& direction, const Vector3d& up)
{
    const Vector3d back = -direction.normalized();
    Vector3d side = up.cross(back);
    if (side.squaredNorm() < 1e-20)
        side = back.unitOrthogonal();
    side.normalize();
    Eigen::Matrix3d rows;
    rows.row(0) = side;
    rows.row(1) = back.cross(side);
    rows.row(2) = back;
    return Eigen::Quaterniond(rows).normalized();
}

Eigen::Quaterniond Camera::standardRotation(StandardView view)
{
    const Vector3d z = Vector3d::UnitZ();
    switch (view)
    {
    case StandardView::Front:
        return lookRotation(Vector3d::UnitY(), z);
    case StandardView::Back:
        return lookRotation(-Vector3d::UnitY(), z);
    case StandardView::Left:
        return lookRotation(Vector3d::UnitX(), z);
    case StandardView::Right:
        return lookRotation(-Vector3d::UnitX(), z);
    case StandardView::Top:
        return lookRotation(-z, Vector3d::UnitY());
    case StandardView::Bottom:
        return lookRotation(z, -Vector3d::UnitY());
    case StandardView::Isometric:
        break;
    }
    return lookRotation({-1, 1, -1}, z);
}

void Camera::fit(const Box3d& box, const FitArea& area)
{
    if (box.isEmpty())
        return;
    CameraFit fit(*this, area, box.center());
    for (const Vector3d& corner : cornersOf(box))
        fit.add(corner);
    fit.apply(*this);
}

void Camera::focusOn(const Vector3d& point)
{
    const double pointDepth = depth(point);
    if (projection_ == Projection::Orthographic)
    {
        target_ += direction() * (pointDepth - distance_);
        return;
    }
    if (pointDepth <= 0)
        return;
    target_ += direction() * (pointDepth - distance_);
    distance_ = pointDepth;
}

void Camera::turn_(const Vector3d& pivot, const Eigen::Quaterniond& sceneTurn)
{
    rotation_ = (rotation_ * sceneTurn).normalized();
    target_ = pivot + sceneTurn.conjugate() * (target_ - pivot);
}

void Camera::orbit(const Vector3d& pivot, double yaw, double pitch)
{
    // How far the camera stands above the horizon; beyond a right angle it hangs upside down and turns without limit.
    const double elevation = std::atan2(-direction().z(), up().z());
    const double limit = std::numbers::pi / 2;
    if (std::abs(elevation) <= limit + 1e-6)
        pitch = std::clamp(elevation + pitch, -limit, limit) - elevation;
    turn_(pivot, Eigen::Quaterniond(Eigen::AngleAxisd(pitch, right()) * Eigen::AngleAxisd(yaw, Vector3d::UnitZ())));
}

void Camera::orbitFreely(const Vector3d& pivot, double yaw, double pitch)
{
    turn_(pivot, Eigen::Quaterniond(Eigen::AngleAxisd(pitch, right()) * Eigen::AngleAxisd(yaw, up())));
}

void Camera::pan(const Vector3d& point, const Vector2d& from, const Vector2d& to, PixelSize viewport)
{
    const Vector2d moved = (to - from) * pixelSize(point, viewport);
    target_ += -moved.x() * right() + moved.y() * up();
}

void Camera::zoom(double factor, const Vector3d& point)
{
    target_ = point + (target_ - point) / factor;
    setDistance(distance_ / factor);
}

double Camera::pixelSize(const Vector3d& point, PixelSize viewport) const
{
    const double half = projection_ == Projection::Perspective ? std::abs(depth(point)) * tanHalfField : halfHeight_();
    return 2 * half / std::max(viewport.height, 1);
}

Ray Camera::ray(const Vector2d& pixel, PixelSize viewport) const
{
    const Vector2d at = toNormalized(pixel, viewport);
    if (projection_ == Projection::Orthographic)
    {
        const Vector3d inPlane(at.x() * halfHeight_() * aspectOf(viewport), at.y() * halfHeight_(), 0);
        return {eye() + rotation_.conjugate() * inPlane, direction()};
    }
    const Vector3d inCamera(at.x() * tanHalfField * aspectOf(viewport), at.y() * tanHalfField, -1);
    return {eye(), rotation_.conjugate() * inCamera.normalized()};
}

double Camera::depth(const Vector3d& point) const
{
    return (point - target_).dot(direction()) + distance_;
}

std::optional<Vector2d> Camera::project(const Vector3d& point, PixelSize viewport) const
{
    const double pointDepth = depth(point);
    if (projection_ == Projection::Perspective && pointDepth <= 0)
        return {};
    const double half = projection_ == Projection::Perspective ? pointDepth * tanHalfField : halfHeight_();
    const Vector3d inCamera = rotation_ * (point - target_);
    return Vector2d((inCamera.x() / (half * aspectOf(viewport)) + 1) / 2 * viewport.width,
                    (1 - inCamera.y() / half) / 2 * viewport.height);
}

Vector3d Camera::unproject(const Vector2d& pixel, double depth, PixelSize viewport) const
{
    const Vector2d at = toNormalized(pixel, viewport);
    const double half = projection_ == Projection::Perspective ? depth * tanHalfField : halfHeight_();
    const Vector3d inCamera(at.x() * half * aspectOf(viewport), at.y() * half, distance_ - depth);
    return target_ + rotation_.conjugate() * inCamera;
}

Camera Camera::interpolate(const Camera& from, const Camera& to, double t)
{
    if (t <= 0)
        return from;
    if (t >= 1)
        return to;
    Camera result = to;
    result.rotation_ = from.rotation_.slerp(t, to.rotation_).normalized();
    result.distance_ = from.distance_ * std::pow(to.distance_ / from.distance_, t);
    // Zooming towards a point, the point stays in place when the target moves in step with the distance.
    const double change = to.distance_ - from.distance_;
    const double share = std::abs(change) > 1e-3 * from.distance_ ? (result.distance_ - from.distance_) / change : t;
    result.target_ = from.target_ + (to.target_ - from.target_) * share;
    return result;
}

} // namespace VX
