#include "RenderFixture.h"

#include <VXViewer/CornerControllerObject.h>

#include <epoxy/gl.h>

#include <algorithm>

namespace VX
{

class CornerControllerObjectTests : public RenderFixture
{
protected:
    CornerControllerObjectTests()
    {
        frame_.camera.setProjection(Projection::Perspective);
        controller_.setViewport(size);
        controller_.setCamera(frame_.camera);
    }

    [[nodiscard]] Vector2d middle_(float scale = 1) const
    {
        const PixelRect area = cube_.area(size, scale);
        return {area.x + area.width / 2.0, area.y + area.height / 2.0};
    }

    [[nodiscard]] std::optional<Eigen::Vector3i> partAt_(const Vector2d& fromMiddle) const
    {
        return cube_.partAt(middle_() + fromMiddle, frame_.camera, size, 1);
    }

    Image drawCube_(float scale = 1)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, window_->defaultFramebuffer());
        glViewport(0, 0, size.width, size.height);
        glDisable(GL_SCISSOR_TEST);
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        cube_.draw(frame_.camera, size, scale);
        Image image{size, std::vector<Color>(static_cast<std::size_t>(size.width) * size.height)};
        for (int y = 0; y < size.height; ++y)
            glReadPixels(0, size.height - 1 - y, size.width, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                         &image.pixels[static_cast<std::size_t>(y) * size.width]);
        return image;
    }

    static int litPixels_(const Image& image)
    {
        return static_cast<int>(std::count_if(image.pixels.begin(), image.pixels.end(),
                                              [](const Color& color) { return brightness_(color) > 100; }));
    }

    CornerControllerObject cube_{{"Right", "Left", "Back", "Front", "Top", "Bottom"}};
    CameraController controller_;
};

TEST_F(CornerControllerObjectTests, StandsInTheUpperRightCorner)
{
    for (const float scale : {1.0F, 2.0F})
    {
        const PixelRect area = cube_.area(size, scale);
        EXPECT_GT(area.x, size.width / 3);
        EXPECT_LT(area.x + area.width, size.width);
        EXPECT_GT(area.y, 0);
        EXPECT_EQ(area.width, static_cast<int>(112 * scale));
        EXPECT_EQ(area.height, area.width);
    }
}

TEST_F(CornerControllerObjectTests, ThePartInTheMiddleIsTheFaceLookedAt)
{
    for (const auto& [view, part] : {std::pair(StandardView::Front, Eigen::Vector3i(0, -1, 0)),
                                     std::pair(StandardView::Right, Eigen::Vector3i(1, 0, 0)),
                                     std::pair(StandardView::Top, Eigen::Vector3i(0, 0, 1)),
                                     std::pair(StandardView::Bottom, Eigen::Vector3i(0, 0, -1)),
                                     std::pair(StandardView::Isometric, Eigen::Vector3i(1, -1, 1))})
    {
        frame_.camera.setStandardView(view);
        ASSERT_TRUE(partAt_({0, 0}));
        EXPECT_EQ(*partAt_({0, 0}), part);
    }
}

TEST_F(CornerControllerObjectTests, NearTheBordersOfAFaceAreItsEdgesAndCorners)
{
    EXPECT_EQ(*partAt_({22, 0}), Eigen::Vector3i(1, -1, 0));
    EXPECT_EQ(*partAt_({0, -22}), Eigen::Vector3i(0, -1, 1));
    EXPECT_EQ(*partAt_({-22, 22}), Eigen::Vector3i(-1, -1, -1));
    EXPECT_FALSE(partAt_({40, 0}));
}

TEST_F(CornerControllerObjectTests, AClickTurnsTheViewToThePart)
{
    EXPECT_TRUE(cube_.click(middle_() + Vector2d(22, -22), controller_, size, 1, 5));
    EXPECT_TRUE(controller_.isAnimating());
    controller_.update(100);
    EXPECT_TRUE(controller_.camera().direction().isApprox(Vector3d(-1, 1, -1).normalized(), 1e-9));
    EXPECT_GT(controller_.camera().up().z(), 0.5);
}

TEST_F(CornerControllerObjectTests, AClickBesideTheCubeIsNotUsed)
{
    EXPECT_FALSE(cube_.click({20, 200}, controller_, size, 1, 5));
    EXPECT_FALSE(controller_.isAnimating());
}

TEST_F(CornerControllerObjectTests, WhereItIsNotEnabledItTakesNothingAndDrawsNothing)
{
    cube_.enable(ViewportMask());
    EXPECT_FALSE(partAt_({0, 0}));
    EXPECT_EQ(litPixels_(drawCube_()), 0);
    cube_.enable(ViewportMask(2));
    EXPECT_EQ(litPixels_(drawCube_()), 0);
}

TEST_F(CornerControllerObjectTests, FromAboveTheNearestQuarterTurnIsKept)
{
    frame_.camera.setStandardView(StandardView::Right);
    const Eigen::Quaterniond rotation = CornerControllerObject::rotationFor({0, 0, 1}, frame_.camera);
    EXPECT_TRUE((rotation.conjugate() * -Vector3d::UnitZ()).isApprox(-Vector3d::UnitZ(), 1e-9));
    frame_.camera.setRotation(rotation);
    frame_.camera.orbitFreely(Vector3d::Zero(), 0.2, 0);
    frame_.camera.setRotation(Camera::lookRotation(-Vector3d::UnitZ(), Vector3d(-1, 0.2, 0)));
    const Eigen::Quaterniond again = CornerControllerObject::rotationFor({0, 0, 1}, frame_.camera);
    EXPECT_TRUE((again.conjugate() * Vector3d::UnitY()).isApprox(-Vector3d::UnitX(), 1e-9));
}

TEST_F(CornerControllerObjectTests, TheHighlightFollowsTheMouse)
{
    const Image plain = drawCube_();
    EXPECT_TRUE(cube_.hover(middle_(), frame_.camera, size, 1));
    EXPECT_FALSE(cube_.hover(middle_() + Vector2d(1, 1), frame_.camera, size, 1));
    const Image highlighted = drawCube_();
    EXPECT_GT(difference_(highlighted, plain, 20), 500);
    EXPECT_TRUE(cube_.hover({10, 10}, frame_.camera, size, 1));
    EXPECT_EQ(difference_(drawCube_(), plain, 0), 0);
}

TEST_F(CornerControllerObjectTests, IsDrawnInItsAreaWithItsLabelAndTheAxes)
{
    const Image image = drawCube_();
    const PixelRect area = cube_.area(size, 1);
    int red = 0;
    int blue = 0;
    int ink = 0;
    for (int y = 0; y < size.height; ++y)
    {
        for (int x = 0; x < size.width; ++x)
        {
            const Color color = image.at(x, y);
            if (brightness_(color) == 0)
                continue;
            ASSERT_TRUE(x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height);
            red += color.r > color.b + 100 ? 1 : 0;
            blue += color.b > color.r + 100 ? 1 : 0;
            const bool inFace = std::abs(x - middle_().x()) < 15 && std::abs(y - middle_().y()) < 12;
            ink += inFace && brightness_(color) < 300 ? 1 : 0;
        }
    }
    EXPECT_GT(red, 30);
    EXPECT_GT(blue, 30);
    EXPECT_GT(ink, 20);
}

TEST_F(CornerControllerObjectTests, GrowsWithTheScale)
{
    const int single = litPixels_(drawCube_(1));
    EXPECT_GT(single, 1000);
    EXPECT_NEAR(litPixels_(drawCube_(2)) / 4.0 / single, 1, 0.1);
}

TEST_F(CornerControllerObjectTests, IsLeftOutOfAPictureThatIsTooSmall)
{
    cube_.draw(frame_.camera, {60, 50}, 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

} // namespace VX
