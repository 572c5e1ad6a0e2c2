#pragma once

#include "RenderShapes.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/SceneRenderer.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace VX
{

inline void PrintTo(const Color& color, std::ostream* out)
{
    *out << "(" << int(color.r) << ", " << int(color.g) << ", " << int(color.b) << ")";
}

/// A scene in front of an orthographic camera that looks along +y: the picture shows x from -4 to 4 and z from -3 to 3,
/// fifty pixels a unit, with the origin in the middle.
class RenderFixture : public testing::Test
{
protected:
    static constexpr PixelSize size{400, 300};

    RenderFixture()
    {
        frame_.root = root_.get();
        frame_.size = size;
        frame_.options.samples = 1;
        frame_.options.featureEdges = false;
        Camera& camera = frame_.camera;
        camera.setProjection(Projection::Orthographic);
        camera.setStandardView(StandardView::Front);
        camera.setTarget(Vector3d::Zero());
        camera.setDistance(3 / std::tan(Camera::fieldOfView / 2));
    }

    void SetUp() override
    {
        auto window = OffscreenWindow::create(size);
        ASSERT_TRUE(window) << window.error();
        window_ = std::move(*window);
        renderer_ = std::make_unique<SceneRenderer>();
    }

    std::shared_ptr<ObjectMesh> add_(std::shared_ptr<const Mesh> mesh)
    {
        auto object = std::make_shared<ObjectMesh>(std::move(mesh));
        root_->addChild(object);
        return object;
    }

    std::shared_ptr<ObjectMesh> add_(std::shared_ptr<const Mesh> mesh, const Vector3d& place)
    {
        auto object = add_(std::move(mesh));
        object->setTransform(Transform(Eigen::Translation3d(place)));
        return object;
    }

    Image draw_()
    {
        renderer_->draw(frame_);
        return renderer_->readPixels();
    }

    /// Where the picture shows the point (x, anything, z).
    static Vector2d pixelAt_(double x, double z) { return {200 + 50 * x, 150 - 50 * z}; }

    static Color colorAt_(const Image& image, double x, double z)
    {
        const Vector2d pixel = pixelAt_(x, z);
        return image.at(static_cast<int>(pixel.x()), static_cast<int>(pixel.y()));
    }

    /// The pixels of which a channel differs by more than `tolerance`.
    static int difference_(const Image& a, const Image& b, int tolerance = 2)
    {
        if (a.size != b.size)
            return a.size.width * a.size.height;
        int count = 0;
        for (std::size_t i = 0; i < a.pixels.size(); ++i)
        {
            const Color& p = a.pixels[i];
            const Color& q = b.pixels[i];
            count +=
                std::abs(p.r - q.r) > tolerance || std::abs(p.g - q.g) > tolerance || std::abs(p.b - q.b) > tolerance
                    ? 1
                    : 0;
        }
        return count;
    }

    static int brightness_(const Color& color) { return color.r + color.g + color.b; }

    /// The picture of the empty scene at this height.
    [[nodiscard]] Color background_(double z) const
    {
        const SceneOptions& o = frame_.options;
        const double t = (z + 3) / 6;
        const auto mix = [&](int low, int high)
        { return static_cast<std::uint8_t>(std::lround(low + (high - low) * t)); };
        return {mix(o.backgroundBottom.r, o.backgroundTop.r), mix(o.backgroundBottom.g, o.backgroundTop.g),
                mix(o.backgroundBottom.b, o.backgroundTop.b), 255};
    }

    static bool isNear_(const Color& a, const Color& b, int tolerance = 3)
    {
        return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance && std::abs(a.b - b.b) <= tolerance;
    }

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    SceneFrame frame_;
    std::unique_ptr<OffscreenWindow> window_;
    std::unique_ptr<SceneRenderer> renderer_;
};

} // namespace VX
