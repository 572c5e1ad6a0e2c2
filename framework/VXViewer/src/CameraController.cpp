#include <VXViewer/CameraController.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace VX
{

namespace
{

constexpr double animationSeconds = 0.25;
constexpr double wheelRestSeconds = 0.25;
constexpr double zoomPerNotch = 1.2;
constexpr double clickPixels = 4;

bool isInside(const Box3d& box, const Camera& camera, PixelSize viewport)
{
    for (int i = 0; i < 8; ++i)
    {
        const auto pixel = camera.project(box.corner(static_cast<Box3d::CornerType>(i)), viewport);
        if (!pixel || pixel->x() < 0 || pixel->y() < 0 || pixel->x() > viewport.width || pixel->y() > viewport.height)
            return false;
    }
    return true;
}

/// 0 to 9 of the keypad or of the row of digits, or -1.
int digitOf(int key)
{
    if (key >= GLFW_KEY_KP_0 && key <= GLFW_KEY_KP_9)
        return key - GLFW_KEY_KP_0;
    if (key >= GLFW_KEY_0 && key <= GLFW_KEY_9)
        return key - GLFW_KEY_0;
    return -1;
}

} // namespace

CameraController::CameraController(PointUnderCursor pointUnderCursor)
    : pointUnderCursor_(std::move(pointUnderCursor))
{
}

void CameraController::setCamera(const Camera& camera)
{
    camera_ = camera;
    stopAnimation_();
}

void CameraController::setSceneBox(const Box3d& box)
{
    sceneBox_ = box;
    if (pivot_ && !sceneBox_.contains(*pivot_) && drag_ == Drag::None)
        pivot_.reset();
}

Vector3d CameraController::fallbackPivot_() const
{
    if (pivot_)
        return *pivot_;
    return sceneBox_.isEmpty() ? camera_.target() : sceneBox_.center();
}

Vector3d CameraController::pointAt_(const Vector2d& pixel) const
{
    if (pointUnderCursor_)
    {
        if (const auto point = pointUnderCursor_(pixel))
            return *point;
    }
    const double depth = camera_.depth(fallbackPivot_());
    const bool usable = camera_.projection() == Projection::Orthographic || depth > 0;
    return camera_.unproject(pixel, usable ? depth : camera_.distance(), viewport_);
}

bool CameraController::handle(const MouseButtonEvent& event, double now)
{
    wasClick_ = false;
    wasContextClick_ = false;
    return event.pressed ? press_(event, now) : release_(event);
}

bool CameraController::press_(const MouseButtonEvent& event, double now)
{
    update(now);
    stopAnimation_();
    if (drag_ != Drag::None)
        return true;

    const Vector2d pixel = event.position.cast<double>();
    const auto hit = pointUnderCursor_ ? pointUnderCursor_(pixel) : std::nullopt;
    if (event.button == GLFW_MOUSE_BUTTON_LEFT && event.clicks == 2 && hit)
    {
        pivot_ = hit;
        Camera centered = camera_;
        centered.focusOn(*hit);
        centered.setTarget(*hit);
        animateTo(centered, now);
        return true;
    }

    if (event.button == GLFW_MOUSE_BUTTON_LEFT && (event.mods & GLFW_MOD_SHIFT) == 0)
        drag_ = (event.mods & GLFW_MOD_ALT) != 0 ? Drag::FreeOrbit : Drag::Orbit;
    else if (event.button == GLFW_MOUSE_BUTTON_LEFT || event.button == GLFW_MOUSE_BUTTON_MIDDLE)
        drag_ = Drag::Pan;
    else if (event.button == GLFW_MOUSE_BUTTON_RIGHT)
        drag_ = Drag::Zoom;
    else
        return false;

    const bool turns = drag_ == Drag::Orbit || drag_ == Drag::FreeOrbit;
    dragPoint_ = hit ? *hit : turns ? fallbackPivot_() : pointAt_(pixel);
    dragButton_ = event.button;
    pressMods_ = event.mods;
    pressPixel_ = pixel;
    lastPixel_ = pixel;
    moved_ = false;
    return true;
}

bool CameraController::release_(const MouseButtonEvent& event)
{
    if (drag_ == Drag::None || event.button != dragButton_)
        return false;
    dragTo_(event.position.cast<double>());
    wasClick_ = !moved_ && dragButton_ == GLFW_MOUSE_BUTTON_LEFT &&
                (pressMods_ & ~(GLFW_MOD_CONTROL | GLFW_MOD_SHIFT | GLFW_MOD_SUPER)) == 0;
    wasContextClick_ = !moved_ && dragButton_ == GLFW_MOUSE_BUTTON_RIGHT && pressMods_ == 0;
    drag_ = Drag::None;
    return true;
}

void CameraController::cancelDrag()
{
    drag_ = Drag::None;
    wasClick_ = false;
    wasContextClick_ = false;
}

bool CameraController::handle(const MouseMoveEvent& event, double now)
{
    update(now);
    if (drag_ == Drag::None)
        return false;
    dragTo_(event.position.cast<double>());
    return true;
}

void CameraController::dragTo_(const Vector2d& pixel)
{
    if (!moved_ && (pixel - pressPixel_).norm() <= clickPixels)
        return;
    const bool turns = drag_ == Drag::Orbit || drag_ == Drag::FreeOrbit;
    if (!moved_ && turns)
    {
        pivot_ = dragPoint_;
        camera_.focusOn(dragPoint_);
    }
    moved_ = true;
    const Vector2d delta = pixel - lastPixel_;
    const Vector2d turn = delta * std::numbers::pi / std::max(viewport_.height, 1);
    switch (drag_)
    {
    case Drag::Orbit:
        camera_.orbit(dragPoint_, turn.x(), turn.y());
        break;
    case Drag::FreeOrbit:
        camera_.orbitFreely(dragPoint_, turn.x(), turn.y());
        break;
    case Drag::Pan:
        camera_.pan(dragPoint_, lastPixel_, pixel, viewport_);
        break;
    case Drag::Zoom:
        zoomTo_(std::exp(-delta.y() * 3 / std::max(viewport_.height, 1)), dragPoint_);
        break;
    case Drag::None:
        break;
    }
    lastPixel_ = pixel;
}

void CameraController::zoomTo_(double factor, const Vector3d& point)
{
    if (!sceneBox_.isEmpty() && sceneBox_.diagonal().norm() > 0)
    {
        const double size = sceneBox_.diagonal().norm();
        factor = std::clamp(factor, camera_.distance() / (size * 1e3), camera_.distance() / (size * 1e-6));
    }
    camera_.zoom(factor, point);
}

bool CameraController::handle(const ScrollEvent& event, double now)
{
    update(now);
    stopAnimation_();
    zoomTo_(std::pow(zoomPerNotch, static_cast<double>(event.offset.y())), pointAt_(event.position.cast<double>()));
    wheelRestTime_ = now + wheelRestSeconds;
    return true;
}

bool CameraController::handle(const KeyEvent& event, double now)
{
    if (event.action == KeyEvent::Action::Release)
        return false;
    const int mods = event.mods & (GLFW_MOD_SHIFT | GLFW_MOD_CONTROL | GLFW_MOD_ALT | GLFW_MOD_SUPER);
    if (const int digit = digitOf(event.key); digit >= 0 && (mods == 0 || mods == GLFW_MOD_CONTROL))
        return viewKey_(digit, mods == GLFW_MOD_CONTROL, now);
    switch (event.key)
    {
    case GLFW_KEY_F:
    case GLFW_KEY_HOME:
    case GLFW_KEY_KP_DECIMAL:
    case GLFW_KEY_PERIOD:
        if (mods != 0)
            return false;
        fitScene(now);
        return true;
    default:
        return false;
    }
}

bool CameraController::viewKey_(int digit, bool opposite, double now)
{
    const auto view = [&](StandardView plain, StandardView other)
    {
        turnTo(Camera::standardRotation(opposite ? other : plain), now);
        return true;
    };
    switch (digit)
    {
    case 1:
        return view(StandardView::Front, StandardView::Back);
    case 3:
        return view(StandardView::Right, StandardView::Left);
    case 7:
        return view(StandardView::Top, StandardView::Bottom);
    default:
        break;
    }
    if (opposite)
        return false;
    switch (digit)
    {
    case 0:
        fitScene(now);
        return true;
    case 5:
        toggleProjection();
        return true;
    case 9:
    {
        const Eigen::Quaterniond& rotation = (animation_ ? animation_->to : camera_).rotation();
        const Vector3d up = rotation.conjugate() * Vector3d::UnitY();
        turnTo(rotation * Eigen::Quaterniond(Eigen::AngleAxisd(std::numbers::pi, up)), now);
        return true;
    }
    default:
        return false;
    }
}

void CameraController::toggleProjection()
{
    const auto toggled = [](Camera& camera)
    {
        camera.setProjection(camera.projection() == Projection::Perspective ? Projection::Orthographic
                                                                            : Projection::Perspective);
    };
    toggled(camera_);
    if (animation_)
    {
        toggled(animation_->from);
        toggled(animation_->to);
    }
}

void CameraController::turnTo(const Eigen::Quaterniond& rotation, double now)
{
    update(now);
    Camera turned = animation_ ? animation_->to : camera_;
    if (sceneBox_.isEmpty() || !isInside(sceneBox_, turned, viewport_))
    {
        // A detail is looked at: what is in the middle stays there.
        const Vector2d middle(viewport_.width / 2.0, viewport_.height / 2.0);
        const auto point = pointUnderCursor_ && !animation_ ? pointUnderCursor_(middle) : std::nullopt;
        if (point)
            turned.focusOn(*point);
        turned.setRotation(rotation);
    }
    else
    {
        turned.setRotation(rotation);
        fitTo_(turned);
    }
    animateTo(turned, now);
}

void CameraController::fitTo_(Camera& camera) const
{
    if (fitter_)
        fitter_(camera);
    else
        camera.fit(sceneBox_, {viewport_, coveredTop_});
}

void CameraController::fitScene(double now)
{
    update(now);
    Camera fitted = animation_ ? animation_->to : camera_;
    fitTo_(fitted);
    animateTo(fitted, now);
}

void CameraController::fit(const Box3d& box, double now)
{
    if (box.isEmpty())
        return;
    update(now);
    Camera fitted = animation_ ? animation_->to : camera_;
    fitted.fit(box, {viewport_, coveredTop_});
    animateTo(fitted, now);
}

void CameraController::animateTo(const Camera& camera, double now)
{
    animation_ = Animation{camera_, camera, now};
}

void CameraController::finishAnimation()
{
    if (animation_)
        setCamera(Camera(animation_->to));
}

bool CameraController::update(double now)
{
    if (!animation_)
        return false;
    const double t = std::clamp((now - animation_->start) / animationSeconds, 0.0, 1.0);
    camera_ = Camera::interpolate(animation_->from, animation_->to, t * t * (3 - 2 * t));
    if (t >= 1)
        stopAnimation_();
    return true;
}

bool CameraController::isMoving(double now) const
{
    return (drag_ != Drag::None && moved_) || animation_ || now < wheelRestTime_;
}

std::optional<double> CameraController::restTime(double now) const
{
    if (drag_ != Drag::None || animation_ || now >= wheelRestTime_)
        return {};
    return wheelRestTime_;
}

} // namespace VX
