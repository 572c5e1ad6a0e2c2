#pragma once

#include <VXMesh/Object.h>
#include <VXViewer/Camera.h>
#include <VXViewer/Image.h>
#include <VXViewer/VisibleFaces.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace VX
{

/// How the scene is drawn.
struct SceneOptions
{
    Color backgroundTop{0x3A, 0x3F, 0x47, 255};
    Color backgroundBottom{0x23, 0x26, 0x2B, 255};
    /// The dark lines along sharp edges: of meshes, and the objects of lines below a mesh.
    bool featureEdges = true;
    /// The sides of the triangles, drawn over the surface; not in simplified pictures, and fading where they crowd.
    bool wireframe = false;
    /// Of selected faces, lit as the surface is.
    Color selectedFaces{0xE8, 0x4F, 0xC4, 255};
    /// Instead of the background's colours: the picture is transparent where nothing is drawn.
    bool transparentBackground = false;
    /// The viewports whose picture has the axes of the scene's origin in it.
    ViewportMask globalBasis;
    /// The viewports with a bar that tells how large things are; the interface draws it.
    ViewportMask scaleIndicator;
    /// The viewport that is drawn: objects not visible there are left out.
    ViewportMask viewport{1};
    /// Samples a pixel: 0 takes what suits the graphics (1 on a software renderer, 4 elsewhere).
    int samples = 0;
    /// Pixels in a unit of design: line widths and point sizes follow.
    float scale = 1;

    friend bool operator==(const SceneOptions&, const SceneOptions&) = default;
};

/// All that a picture depends on.
struct SceneFrame
{
    const Object* root = nullptr; ///< drawn with everything below it; may be null
    /// Drawn as well with everything below it, in scene coordinates: what is no part of the scene yet. May be null.
    const Object* preview = nullptr;
    Camera camera;
    PixelSize size;
    SceneOptions options;
    /// While the view moves: large meshes are drawn by a simplified stand-in, so that the pictures come fast.
    bool interactive = false;
    /// A mark drawn at this point of the scene, as the middle of an orbit.
    std::optional<Vector3d> pivotMark;
};

/// What was done for a picture.
struct SceneStatistics
{
    std::uint64_t frames = 0;    ///< pictures drawn since the beginning; one taken from the cache does not count
    std::uint64_t triangles = 0; ///< sent to the graphics for the last picture
    bool simplified = false;     ///< stand-ins or a part of the detail instead of all of it
};

/// Draws the scene into a framebuffer of its own, which is kept and used again until something changes.
/// Meshes, their buffers and stand-ins are kept per geometry: instances share them.
/// @threads the UI thread, with the OpenGL context current that was current at construction
class VXVIEWER_API SceneRenderer
{
public:
    /// Cheap: buffers, shaders and framebuffers come with the first picture that needs them.
    /// @param standInReady  called on a worker thread when a stand-in was made, so that the loop can wake up; may be
    ///                      empty
    explicit SceneRenderer(std::function<void()> standInReady = {});

    /// Waits for workers. The OpenGL context must be current.
    ~SceneRenderer();

    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    /// Draws the picture unless the cached one is the same.
    /// @return true when it was drawn anew
    bool draw(const SceneFrame& frame);

    /// Forgets the cached picture: the next `draw` draws.
    void invalidate();

    /// Copies the picture into `framebuffer` with its lower left corner at `x`, `y` (OpenGL's window coordinates),
    /// unscaled. Leaves `framebuffer` bound and the viewport at the copied area.
    void blit(unsigned framebuffer, int x = 0, int y = 0);

    /// The faces of all meshes that are seen inside `area` of the picture of `frame`, in full detail: those of which a
    /// pixel shows, and those smaller than a pixel that nothing hides. Draws the picture unless it is the cached one;
    /// finding the faces themselves is left to the processor, which is asked in parallel.
    /// @param area  in pixels from the upper left corner of the picture
    /// @return the objects with a face there
    [[nodiscard]] std::vector<VisibleFaces> visibleFaces(const SceneFrame& frame, const PixelRect& area);

    /// The picture; empty before the first `draw`. Colours are not premultiplied with alpha.
    [[nodiscard]] Image readPixels();

    /// The size of the picture.
    [[nodiscard]] PixelSize size() const;

    /// The point of the scene that the cached picture shows nearest to `pixel`, at most a few pixels away so that
    /// thin lines and points are hit; nothing on the background.
    [[nodiscard]] std::optional<Vector3d> pointUnderCursor(const Vector2d& pixel);

    /// The extent of the visible objects below `root` in viewport `viewport`, in scene coordinates.
    [[nodiscard]] static Box3d visibleBox(const Object& root, ViewportMask viewport = ViewportMask(1));

    /// Moves `camera`, without turning it, until what is visible below `root` fills `area` but for a margin:
    /// closer than `Camera::fit` of its box. An empty scene changes nothing.
    static void fit(Camera& camera, const Object& root, const FitArea& area, ViewportMask viewport = ViewportMask(1));

    [[nodiscard]] const SceneStatistics& statistics() const;

    /// True on a renderer without graphics hardware.
    [[nodiscard]] bool isSoftware() const;

    /// Begins to make the stand-ins that moving needs, on a worker. For the loop to call when the first picture stands
    /// and nothing else is to do; without it they are begun when the view moves first.
    void prepareStandIns();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace VX
