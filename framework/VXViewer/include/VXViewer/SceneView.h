#pragma once

#include <VXViewer/CameraController.h>
#include <VXViewer/Export.h>
#include <VXViewer/Image.h>
#include <VXViewer/InputEvent.h>
#include <VXViewer/ScenePicker.h>
#include <VXViewer/SceneRenderer.h>
#include <VXViewer/Window.h>

#include <boost/signals2/connection.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace VX
{

class CornerControllerObject;
class Object;

/// A picture of the scene beside the one in the window.
struct SceneCapture
{
    PixelSize size{};
    std::optional<Camera> camera{};       ///< nothing: the view's
    std::shared_ptr<const Object> root{}; ///< drawn with everything below it; null: the scene
    bool transparentBackground = false;
};

/// The part of the window that shows the scene: its camera, its picture, the view cube, and what the mouse does there.
/// Positions of events are the window's; the view takes off where it begins.
/// @threads the UI thread
class VXVIEWER_API SceneView
{
public:
    explicit SceneView(std::shared_ptr<Object> root);
    ~SceneView();

    SceneView(const SceneView&) = delete;
    SceneView& operator=(const SceneView&) = delete;

    /// Creates what needs the OpenGL context, which is current from now on.
    void startGraphics();

    /// Destroys it, with the context still current.
    void stopGraphics();

    [[nodiscard]] CameraController& controller() { return controller_; }

    [[nodiscard]] const Camera& camera() const { return controller_.camera(); }

    /// How the scene is drawn; `scale` follows `setArea`, the background is the theme's or that of `setBackground`.
    [[nodiscard]] SceneOptions& options() { return options_; }

    [[nodiscard]] const SceneOptions& options() const { return options_; }

    /// Shows these colours behind the scene from now on, whatever the theme is.
    void setBackground(Color top, Color bottom);

    /// Shows the theme's background, as at first, and changes it with the theme.
    void followThemeBackground();

    [[nodiscard]] CornerControllerObject& cornerController() { return *cornerController_; }

    /// The pixels that the scene takes up, from the upper left corner of the window.
    [[nodiscard]] const PixelRect& area() const { return area_; }

    /// @param scale  pixels in a unit of the design
    /// @param coveredTop  pixels along the upper edge of the area that the interface lies over
    void setArea(const PixelRect& area, float scale, int coveredTop = 0);

    /// Where a fit shows the scene: the area without what covers it.
    [[nodiscard]] FitArea fitArea() const { return {size_(), coveredTop_}; }

    [[nodiscard]] bool contains(const Vector2f& position) const;

    /// True over the view cube.
    [[nodiscard]] bool isOnCube(const Vector2f& position) const;

    /// Draws `preview` with the scene, whose coordinates it has, without its being a part of it; null: nothing.
    void setPreview(std::shared_ptr<const Object> preview) { preview_ = std::move(preview); }

    [[nodiscard]] bool hasPreview() const { return preview_ != nullptr; }

    /// The extent of what is visible, in scene coordinates.
    [[nodiscard]] const Box3d& box() const;

    /// Shows all of the scene.
    void fitAll(bool animated = true);

    /// Shows all of `objects`.
    void fit(const std::vector<std::shared_ptr<Object>>& objects);

    /// Turns to `view`, animated, and shows all.
    void showFrom(StandardView view);

    void toggleProjection();

    /// Takes an event in the view, or of a drag that began there. @return true when it was used
    bool handle(const MouseButtonEvent& event);
    bool handle(const MouseMoveEvent& event);
    bool handle(const ScrollEvent& event);
    bool handle(const KeyEvent& event);

    /// `request` is called for a right click in the view (not for a drag) with its position in the window, once the
    /// object under the mouse is selected, if it was not yet.
    void setContextRequest(std::function<void(const Vector2f&)> request) { contextRequest_ = std::move(request); }

    /// The point of the scene that the picture shows at `position`, a point of the window, or a few pixels away.
    [[nodiscard]] std::optional<Vector3d> pointAt(const Vector2f& position);

    /// Finds what is under `position`, a point of the window, on a worker. A newer pick of anybody replaces one that
    /// has not begun: the callback of the older one never comes.
    void pick(const Vector2f& position, ScenePicker::Callback done);

    /// The same at `pixel` of a picture.
    void pick(const SceneCapture& picture, const Vector2d& pixel, ScenePicker::Callback done);

    /// The faces seen within `area`, which is in pixels of the window (SceneRenderer::visibleFaces).
    [[nodiscard]] std::vector<VisibleFaces> visibleFaces(const PixelRect& area);

    /// The same within `area` of a picture.
    [[nodiscard]] std::vector<VisibleFaces> visibleFaces(const SceneCapture& picture, const PixelRect& area);

    /// The mouse went elsewhere: nothing in the view is highlighted any more.
    void endHover();

    /// Ends a drag, as when the window loses the mouse.
    void cancelDrag();

    /// Moves an animation on. @return true while the view goes on to move by itself
    bool animate();

    /// Seconds until the picture changes by itself, as from the stand-in back to full detail; nothing: it does not.
    [[nodiscard]] std::optional<double> secondsToChange() const;

    /// True when the picture in the window is not the one that `draw` would make.
    [[nodiscard]] bool isOutdated() const;

    /// Draws the scene, or takes the picture from the cache, and copies it into the window; then the view cube.
    void draw(const Window& window);

    /// The scene as it is, without interface, in full detail. Empty without graphics.
    [[nodiscard]] Image capture(PixelSize size);

    /// The same of another picture.
    [[nodiscard]] Image take(const SceneCapture& picture);

    /// Of the pictures drawn.
    [[nodiscard]] SceneStatistics statistics() const;

private:
    [[nodiscard]] Vector2d toView_(const Vector2f& position) const;

    [[nodiscard]] PixelSize size_() const { return {area_.width, area_.height}; }

    [[nodiscard]] std::optional<Vector3d> pointUnderCursor_(const Vector2d& pixel);
    [[nodiscard]] SceneFrame frame_() const;

    /// In full detail, and without what is no part of the scene.
    [[nodiscard]] SceneFrame frameOfScene_() const;
    [[nodiscard]] SceneFrame frameOf_(const SceneCapture& picture) const;
    [[nodiscard]] bool isPreviewShown_() const;
    void updateBox_();
    void takeThemeColors_();
    void select_(const Vector2d& pixel, int mods);
    void requestContext_(const Vector2d& pixel, const Vector2f& position);
    void pick_(const Vector2d& pixel, std::function<void(const std::shared_ptr<Object>&)> done);

    std::shared_ptr<Object> root_;
    std::shared_ptr<const Object> preview_;
    std::unique_ptr<CornerControllerObject> cornerController_;
    std::unique_ptr<SceneRenderer> renderer_;
    std::unique_ptr<ScenePicker> picker_;
    std::function<void(const Vector2f&)> contextRequest_;
    CameraController controller_;
    mutable Box3d box_;
    mutable std::uint64_t boxRevision_ = 0;
    /// What the window shows.
    Camera shownCamera_;
    std::uint64_t shownRevision_ = 0;
    SceneOptions shownOptions_;
    std::weak_ptr<const Object> shownPreview_;
    std::uint64_t shownPreviewRevision_ = 0;
    SceneOptions options_;
    bool followsThemeBackground_ = true;
    boost::signals2::scoped_connection themeConnection_;
    PixelRect area_;
    int coveredTop_ = 0;
    float scale_ = 1;
    bool shownMoving_ = false;
    bool dragging_ = false;
    /// The renderer holds another picture than the one in the window.
    bool tookOther_ = false;
};

} // namespace VX
