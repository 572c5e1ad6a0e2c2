#pragma once

#include <VXMesh/ViewportMask.h>
#include <VXViewer/CameraController.h>

#include <array>
#include <memory>
#include <string>

namespace VX
{

/// The cube in the upper right corner that shows how the scene is turned: its faces are labelled, the axes of the
/// scene stand beside it, and a click on a face, edge or corner turns the view to look from there.
/// @threads the UI thread; `draw` and the destructor with the OpenGL context current
class VXVIEWER_API CornerControllerObject
{
public:
    /// The labels in the order +x, -x, +y, -y, +z, -z.
    using Labels = std::array<std::string, 6>;

    /// Labelled in the user's language: Right, Left, Back, Front, Top, Bottom.
    CornerControllerObject();
    explicit CornerControllerObject(Labels labels);
    ~CornerControllerObject();

    CornerControllerObject(const CornerControllerObject&) = delete;
    CornerControllerObject& operator=(const CornerControllerObject&) = delete;

    /// Labels it anew in the user's language; with the OpenGL context current once it was drawn.
    void translateLabels();

    /// Shows the cube in these viewports.
    void enable(ViewportMask mask);

    [[nodiscard]] ViewportMask enabledIn() const { return mask_; }

    /// The square of the picture that the cube takes up, pixels from the upper left corner of the viewport.
    [[nodiscard]] PixelRect area(PixelSize viewport, float scale) const;

    /// Draws into the bound framebuffer, where OpenGL's viewport of `viewport` pixels is; depth there may be
    /// overwritten, and the viewport is changed. Does nothing where not enabled for `drawnIn`.
    void draw(const Camera& camera, PixelSize viewport, float scale, ViewportMask drawnIn = ViewportMask(1));

    /// Tells where the mouse is. @return true when the highlight changed: a new picture is wanted
    bool hover(const Vector2d& pixel, const Camera& camera, PixelSize viewport, float scale);

    /// Tells that the mouse has left the viewport.
    void endHover() { hovered_.reset(); }

    /// A face, edge or corner under `pixel`: the direction from the middle of the cube to it, each part -1, 0 or 1.
    [[nodiscard]] std::optional<Eigen::Vector3i> partAt(const Vector2d& pixel, const Camera& camera, PixelSize viewport,
                                                        float scale) const;

    /// The rotation of the camera that looks from `part` at the scene. From above and below, the nearest quarter turn
    /// to that of `camera` is kept.
    [[nodiscard]] static Eigen::Quaterniond rotationFor(const Eigen::Vector3i& part, const Camera& camera);

    /// A left click: turns the view when it meets the cube. @return true when it did
    bool click(const Vector2d& pixel, CameraController& controller, PixelSize viewport, float scale, double now);

private:
    struct Graphics;

    /// Whether there is room for the cube.
    [[nodiscard]] bool fits_(PixelSize viewport, float scale) const;

    ViewportMask mask_;
    Labels labels_;
    std::optional<Eigen::Vector3i> hovered_;
    std::unique_ptr<Graphics> graphics_;
};

} // namespace VX
