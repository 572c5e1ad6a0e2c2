#include "render/CameraFit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace VX
{

namespace
{

/// The part of the area's width and height that is filled.
constexpr double fitShare = 0.86;

/// More of the height is not left to what covers it: the picture would become too small.
constexpr double mostCovered = 0.5;

constexpr double lowest = std::numeric_limits<double>::lowest();

} // namespace

CameraFit::CameraFit(const Camera& camera, const FitArea& area, const Vector3d& origin)
    : rotation_(camera.rotation().toRotationMatrix())
    , origin_(origin)
    , flat_(camera.projection() == Projection::Orthographic)
    , bounds_(Eigen::Array4d::Constant(lowest))
    , nearest_(lowest)
    , farthest_(-lowest)
{
    const PixelSize size = area.viewport;
    const double aspect = size.isEmpty() ? 1.0 : double(size.width) / double(size.height);
    const double covered = size.isEmpty() ? 0.0 : std::clamp(double(area.coveredTop) / size.height, 0.0, mostCovered);
    // In halves of the viewport's height: the free part has its middle `covered` below the viewport's.
    const double half = (1 - covered) * fitShare;
    slopes_ = std::tan(Camera::fieldOfView / 2) *
              Eigen::Array4d(aspect * fitShare, aspect * fitShare, half - covered, half + covered);
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
    Vector3d middle((bounds_[0] - bounds_[1]) / 2, (bounds_[2] - bounds_[3]) / 2, (nearest_ + farthest_) / 2);
    const double depth = flat_ ? 0.0 : middle.z();
    const double eye = std::max((bounds_[0] + bounds_[1]) / (slopes_[0] + slopes_[1]),
                                (bounds_[2] + bounds_[3]) / (slopes_[2] + slopes_[3]));
    // A single point still gets a finite picture around it.
    const double least = std::max(1e-6, (origin_ + rotation_.transpose() * middle).cwiseAbs().maxCoeff() * 1e-9);
    const double distance = std::max({eye - depth, least, nearest_ - middle.z() + least});
    middle.y() += (slopes_[3] - slopes_[2]) / 2 * (distance + depth);
    camera.setTarget(origin_ + rotation_.transpose() * middle);
    camera.setDistance(distance);
}

} // namespace VX
