#pragma once

#include <VXViewer/Camera.h>
#include <VXViewer/InputEvent.h>

#include <functional>
#include <utility>

namespace VX
{

/// Turns the user's input into camera movement. Left drag: orbit about the point under the cursor (with Alt: freely,
/// over the poles). Middle drag, or Shift and left drag: pan. Wheel: zoom to the cursor. Right drag up and down: zoom.
/// Double click: the point under the cursor moves to the middle. Keypad 1 front, 3 right, 7 top (with Control: back,
/// left, bottom), 9 the opposite side, 5 the projection, 0 or the decimal key: fit; the row of digits and the full stop
/// do the same; F and Home: fit.
/// Times are seconds of one clock that only moves forward.
/// @threads the UI thread
class VXVIEWER_API CameraController
{
public:
    /// What the picture shows at a pixel, in scene coordinates; nothing on the background.
    using PointUnderCursor = std::function<std::optional<Vector3d>(const Vector2d&)>;

    /// @param pointUnderCursor  may be empty
    explicit CameraController(PointUnderCursor pointUnderCursor = {});

    [[nodiscard]] const Camera& camera() const { return camera_; }

    /// Shows this view at once and ends an animation.
    void setCamera(const Camera& camera);

    /// The extent of what is shown, in scene coordinates: what is fitted, and the middle of orbits where nothing else
    /// is known.
    void setSceneBox(const Box3d& box);

    /// How to show all of the scene without turning, where that can be done closer than by its box; may be empty.
    void setFitter(std::function<void(Camera&)> fitter) { fitter_ = std::move(fitter); }

    /// @param coveredTop  pixels along the upper edge that a fit leaves free
    void setViewport(PixelSize viewport, int coveredTop = 0)
    {
        viewport_ = viewport;
        coveredTop_ = coveredTop;
    }

    /// A press begins a drag, and ends an animation. @return true when the event was used
    bool handle(const MouseButtonEvent& event, double now);
    bool handle(const MouseMoveEvent& event, double now);
    bool handle(const ScrollEvent& event, double now);
    bool handle(const KeyEvent& event, double now);

    /// True for the release of the left button that `handle` saw last, when the mouse had hardly moved since the
    /// press and no modifier but Control or Shift was down: the user clicked and wants to select.
    [[nodiscard]] bool wasClick() const { return wasClick_; }

    /// The same for the right button without any modifier: the user wants to know what can be done there.
    [[nodiscard]] bool wasContextClick() const { return wasContextClick_; }

    /// Ends a drag as if the button had been released, as when the window loses the mouse.
    void cancelDrag();

    /// Turns the view to `rotation`, animated. Where all of the scene is in the picture it is fitted anew; where a
    /// detail is looked at, the turn is about what is in the middle.
    void turnTo(const Eigen::Quaterniond& rotation, double now);

    /// Shows all of the scene, animated.
    void fitScene(double now);

    /// Shows all of `box`, animated; an empty box changes nothing.
    void fit(const Box3d& box, double now);

    /// Shows `camera` after a short movement.
    void animateTo(const Camera& camera, double now);

    /// Switches between perspective and parallel projection; an animation goes on.
    void toggleProjection();

    /// Shows at once where an animation leads.
    void finishAnimation();

    /// Advances an animation to `now`. @return true when the camera changed
    bool update(double now);

    [[nodiscard]] bool isAnimating() const { return animation_.has_value(); }

    [[nodiscard]] bool isDragging() const { return drag_ != Drag::None; }

    [[nodiscard]] bool isOrbiting() const { return moved_ && (drag_ == Drag::Orbit || drag_ == Drag::FreeOrbit); }

    /// True while the view moves and pictures are to come fast rather than in full detail: during a drag, an
    /// animation, and shortly after a turn of the wheel.
    [[nodiscard]] bool isMoving(double now) const;

    /// When `isMoving` ends by itself, for the loop to wake up at; nothing at rest, in a drag or an animation.
    [[nodiscard]] std::optional<double> restTime(double now) const;

    /// The point about which the current or last orbit turns, to be marked in the picture during an orbit.
    [[nodiscard]] const std::optional<Vector3d>& pivot() const { return pivot_; }

private:
    enum class Drag
    {
        None,
        Orbit,
        FreeOrbit,
        Pan,
        Zoom
    };

    struct Animation
    {
        Camera from;
        Camera to;
        double start = 0;
    };

    [[nodiscard]] Vector3d pointAt_(const Vector2d& pixel) const;
    [[nodiscard]] Vector3d fallbackPivot_() const;
    bool press_(const MouseButtonEvent& event, double now);
    bool release_(const MouseButtonEvent& event);
    void dragTo_(const Vector2d& pixel);
    void zoomTo_(double factor, const Vector3d& point);
    bool viewKey_(int digit, bool opposite, double now);
    void fitTo_(Camera& camera) const;

    void stopAnimation_() { animation_.reset(); }

    PointUnderCursor pointUnderCursor_;
    std::function<void(Camera&)> fitter_;
    Camera camera_;
    Box3d sceneBox_;
    PixelSize viewport_;
    int coveredTop_ = 0;
    std::optional<Animation> animation_;
    Drag drag_ = Drag::None;
    int dragButton_ = 0;
    int pressMods_ = 0;
    Vector3d dragPoint_ = Vector3d::Zero();
    Vector2d pressPixel_ = Vector2d::Zero();
    Vector2d lastPixel_ = Vector2d::Zero();
    bool moved_ = false;
    bool wasClick_ = false;
    bool wasContextClick_ = false;
    std::optional<Vector3d> pivot_;
    double wheelRestTime_ = 0;
};

} // namespace VX
