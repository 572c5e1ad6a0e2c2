#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Camera.h>

namespace VX
{

/// Finds where a camera has to stand, without turning, to show a number of points as big as possible in the middle of
/// an area.
class CameraFit
{
public:
    /// @param origin  near the points, so that sums keep their digits wherever the camera stands
    CameraFit(const Camera& camera, const FitArea& area, const Vector3d& origin);

    void add(const Vector3d& point)
    {
        const Vector3d p = rotation_ * (point - origin_);
        const Eigen::Array4d offset(p.x(), -p.x(), p.y(), -p.y());
        bounds_ = bounds_.max(flat_ ? offset : Eigen::Array4d(offset + p.z() * slopes_));
        nearest_ = std::max(nearest_, p.z());
        farthest_ = std::min(farthest_, p.z());
    }

    /// Adds the points of a fit of the same camera.
    void merge(const CameraFit& other);

    /// Moves `camera`; without points it stays as it is.
    void apply(Camera& camera) const;

private:
    Eigen::Matrix3d rotation_;
    Vector3d origin_;
    Eigen::Array4d slopes_; ///< of the planes at the right, left, top and bottom, by the distance from the eye
    bool flat_;
    Eigen::Array4d bounds_; ///< how far the points reach towards each plane
    double nearest_;
    double farthest_;
};

} // namespace VX
