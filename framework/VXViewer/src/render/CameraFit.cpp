#include "render/CameraFit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace VX
{

namespace
{

/// The part of the viewport's width and height that is filled.
constexpr double fitShare = 0.86;

constexpr double lowest = std::numeric_limits<double>::lowest();

} // namespace

CameraFit::CameraFit(const Camera& camera, PixelSize viewport)
    : rotation_(camera.rotation().toRotationMatrix())
    , origin_(camera.target())
    , flat_(camera.projection() == Projection::Orthographic)
    , bounds_(Eigen::Array4d::Constant(lowest))
    , nearest_(lowest)
    , farthest_(-lowest)
{
    const double aspect = viewport.isEmpty() ? 1.0 : double(viewport.width) / double(viewport.height);
    tangents_.y() = std::tan(Camera::fieldOfView / 2) * fitShare;
    tangents_.x() = tangents_.y() * aspect;
}

void CameraFit::merge(const CameraFit& other)
{
    bounds_ = bounds_.max(other.bounds_);
    nearest_ = std::max(nearest_, other.nearest_);
    farthest_ = std::min(farthest_, other.farthest_);
}

void CameraFit::apply(Camera& camera) const
{
    if (nearest_ < farthest_)
        return;
    // Each point must lie inside the four side planes of the view. For two opposite planes this bounds how near the
    // eye may come, and the middle between them centres the picture.
    const Vector3d middle((bounds_[0] - bounds_[1]) / 2, (bounds_[2] - bounds_[3]) / 2, (nearest_ + farthest_) / 2);
    double eye =
        std::max((bounds_[0] + bounds_[1]) / (2 * tangents_.x()), (bounds_[2] + bounds_[3]) / (2 * tangents_.y()));
    if (!flat_)
        eye -= middle.z();
    // A single point still gets a finite picture around it.
    const Vector3d target = origin_ + rotation_.transpose() * middle;
    const double least = std::max(1e-6, target.cwiseAbs().maxCoeff() * 1e-9);
    camera.setTarget(target);
    camera.setDistance(std::max({eye, least, nearest_ - middle.z() + least}));
}

} // namespace VX
