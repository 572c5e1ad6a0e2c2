#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>
#include <VXViewer/Window.h>

#include <Eigen/Geometry>

#include <optional>

namespace VX
{

using Vector2d = Eigen::Vector2d;

enum class Projection
{
    Perspective,
    Orthographic
};

/// The usual directions to look from; z is up, the front is where y is smallest.
enum class StandardView
{
    Front,
    Back,
    Left,
    Right,
    Top,
    Bottom,
    Isometric
};

/// A half line in scene coordinates.
struct Ray
{
    Vector3d origin = Vector3d::Zero();
    Vector3d direction = Vector3d::UnitZ(); ///< of length 1
};

/// Distances from the eye along the view direction between which everything is drawn; the near one less than the far
/// one. In an orthographic projection the near one may be negative.
struct ClipRange
{
    double nearPlane = 0;
    double farPlane = 1;
};

/// The part of a viewport in which something is to be shown whole.
struct FitArea
{
    PixelSize viewport;
    int coveredTop = 0; ///< pixels along the upper edge that something else lies over
};

/// Where the scene is looked at from, as a value. The camera looks at `target` from `distance` away; what lies in the
/// plane of the target has the same size on the screen in both projections. All lengths are in scene units, all angles
/// in radians, pixels count from the upper left corner of the viewport (pixel centres at .5).
class VXVIEWER_API Camera
{
public:
    /// The vertical angle of the perspective view.
    static constexpr double fieldOfView = 0.6;

    [[nodiscard]] Projection projection() const { return projection_; }

    void setProjection(Projection projection) { projection_ = projection; }

    /// The point in the middle of the viewport at the depth that keeps its size when the projection changes.
    [[nodiscard]] const Vector3d& target() const { return target_; }

    void setTarget(const Vector3d& target) { target_ = target; }

    /// From the eye to the target, more than 0.
    [[nodiscard]] double distance() const { return distance_; }

    void setDistance(double distance);

    /// From scene axes to camera axes: x to the right, y up, z towards the viewer.
    [[nodiscard]] const Eigen::Quaterniond& rotation() const { return rotation_; }

    /// Turns about the target.
    void setRotation(const Eigen::Quaterniond& rotation) { rotation_ = rotation.normalized(); }

    [[nodiscard]] Vector3d eye() const;
    [[nodiscard]] Vector3d right() const;
    [[nodiscard]] Vector3d up() const;

    /// The direction of looking, of length 1.
    [[nodiscard]] Vector3d direction() const;

    /// From scene coordinates to camera coordinates, with the eye at the origin.
    [[nodiscard]] Eigen::Matrix4d viewMatrix() const;

    /// From camera coordinates to OpenGL's clip space.
    [[nodiscard]] Eigen::Matrix4d projectionMatrix(PixelSize viewport, ClipRange range) const;

    /// The tightest range that shows all of `sceneBox` in front of the eye; a usable one for an empty box.
    [[nodiscard]] ClipRange clipRange(const Box3d& sceneBox) const;

    /// The rotation of a standard view.
    [[nodiscard]] static Eigen::Quaterniond standardRotation(StandardView view);

    /// The rotation that looks along `direction` with `up` as far up on the screen as it can be.
    [[nodiscard]] static Eigen::Quaterniond lookRotation(const Vector3d& direction, const Vector3d& up);

    /// Turns to a standard view about the target.
    void setStandardView(StandardView view) { rotation_ = standardRotation(view); }

    /// Moves and zooms, without turning, until `box` fills what can be seen of the viewport but for a margin; an empty
    /// box changes nothing.
    void fit(const Box3d& box, const FitArea& area);

    /// Makes the plane through `point` the one that keeps its size when the projection changes, without a change of
    /// the picture. A point behind the eye changes nothing.
    void focusOn(const Vector3d& point);

    /// Turntable: turns about `pivot`, by `yaw` about the scene's z axis and by `pitch` about the camera's x axis, not
    /// over the poles. Positive angles move the near side of the scene right and down.
    void orbit(const Vector3d& pivot, double yaw, double pitch);

    /// Turns about `pivot` by `yaw` and `pitch` about the camera's own axes, without limits.
    void orbitFreely(const Vector3d& pivot, double yaw, double pitch);

    /// Moves sideways so that `point`, seen at pixel `from`, is seen at pixel `to`.
    void pan(const Vector3d& point, const Vector2d& from, const Vector2d& to, PixelSize viewport);

    /// Makes everything `factor` times as big, more than 0; `point` stays where it is on the screen.
    void zoom(double factor, const Vector3d& point);

    /// The size of a pixel at the depth of `point`, in scene units.
    [[nodiscard]] double pixelSize(const Vector3d& point, PixelSize viewport) const;

    /// What is seen at `pixel`; the origin lies on the eye (perspective) or in the eye's plane.
    [[nodiscard]] Ray ray(const Vector2d& pixel, PixelSize viewport) const;

    /// The distance of `point` from the eye along the view direction.
    [[nodiscard]] double depth(const Vector3d& point) const;

    /// The pixel where `point` is seen; nothing for a point that is not in front of the eye.
    [[nodiscard]] std::optional<Vector2d> project(const Vector3d& point, PixelSize viewport) const;

    /// The point seen at `pixel` at `depth`, the inverse of `project` and `depth`.
    [[nodiscard]] Vector3d unproject(const Vector2d& pixel, double depth, PixelSize viewport) const;

    /// The view between `from` and `to`: `t` 0 to 1.
    [[nodiscard]] static Camera interpolate(const Camera& from, const Camera& to, double t);

    /// The same picture of every scene.
    friend bool operator==(const Camera& a, const Camera& b)
    {
        return a.projection_ == b.projection_ && a.target_ == b.target_ && a.distance_ == b.distance_ &&
               a.rotation_.coeffs() == b.rotation_.coeffs();
    }

private:
    /// Half the height of the viewport in the plane of the target.
    [[nodiscard]] double halfHeight_() const;

    void turn_(const Vector3d& pivot, const Eigen::Quaterniond& sceneTurn);

    Projection projection_ = Projection::Perspective;
    Vector3d target_ = Vector3d::Zero();
    double distance_ = 10;
    Eigen::Quaterniond rotation_ = standardRotation(StandardView::Isometric);
};

} // namespace VX
