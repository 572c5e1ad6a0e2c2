#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Camera.h>

namespace VX
{

/// Finds where a camera has to stand, without turning, to show a number of points as big as possible in the middle.
class CameraFit
{
public:
    CameraFit(const Camera& camera, PixelSize viewport);

    void add(const Vector3d& point)
    {
        const Vector3d p = rotation_ * (point - origin_);
        const Vector2d reach = flat_ ? Vector2d::Zero() : Vector2d(p.z() * tangents_);
        bounds_ =
            bounds_.max(Eigen::Array4d(reach.x() + p.x(), reach.x() - p.x(), reach.y() + p.y(), reach.y() - p.y()));
        nearest_ = std::max(nearest_, p.z());
        farthest_ = std::min(farthest_, p.z());
    }

    /// Adds the points of a fit of the same camera.
    void merge(const CameraFit& other);

    /// Moves `camera`; without points it stays as it is.
    void apply(Camera& camera) const;

private:
    Eigen::Matrix3d rotation_;
    Vector3d origin_; ///< near the scene, so that sums keep their digits
    Vector2d tangents_;
    bool flat_;
    Eigen::Array4d bounds_;
    double nearest_;
    double farthest_;
};

} // namespace VX
