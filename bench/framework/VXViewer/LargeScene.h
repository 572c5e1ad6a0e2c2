#pragma once

#include <VXMesh/Object.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/SceneRenderer.h>

#include <tools/BumpyTorus.h>

#include <cmath>
#include <cstdint>
#include <memory>

namespace VX
{

inline constexpr PixelSize benchPicture{1280, 800};

/// Large meshes in front of a camera that turns, in a window without a screen.
class LargeScene
{
public:
    /// @param parts  among which the triangles are shared out, beside one another
    explicit LargeScene(std::uint32_t triangles, std::uint32_t parts = 1)
        : window_(OffscreenWindow::create(benchPicture).value())
    {
        const auto columns = static_cast<std::uint32_t>(std::ceil(std::sqrt(parts)));
        for (std::uint32_t i = 0; i < parts; ++i)
        {
            const auto part = std::make_shared<ObjectMesh>(makeBumpyTorus(triangles / parts));
            part->setTransform(Transform(Eigen::Translation3d(250.0 * (i % columns), 250.0 * (i / columns), 0)));
            root->addChild(part);
        }
        frame.root = root.get();
        frame.size = benchPicture;
        SceneRenderer::fit(frame.camera, *root, {frame.size});
        pivot_ = SceneRenderer::visibleBox(*root).center();
    }

    /// The next picture of a slow orbit.
    void turn() { frame.camera.orbit(pivot_, 0.02, 0); }

    /// So that a small part of the whole fills the picture.
    void comeClose() { frame.camera.zoom(8, root->children().front()->worldBox().max()); }

    std::shared_ptr<Object> root = std::make_shared<Object>();
    SceneFrame frame;

private:
    std::unique_ptr<OffscreenWindow> window_;
    Vector3d pivot_;
};

} // namespace VX
