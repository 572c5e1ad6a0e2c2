#include "RenderFixture.h"

#include <VXViewer/CornerControllerObject.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <vector>

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

    Image drawCube_(float scale = 1) { return draw_(cube_, scale); }

    Image draw_(CornerControllerObject& cube, float scale = 1)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, window_->defaultFramebuffer());
        glViewport(0, 0, size.width, size.height);
        glDisable(GL_SCISSOR_TEST);
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        cube.draw(frame_.camera, size, scale);
        Image image{size, std::vector<Color>(static_cast<std::size_t>(size.width) * size.height)};
        for (int y = 0; y < size.height; ++y)
            glReadPixels(0, size.height - 1 - y, size.width, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                         &image.pixels[static_cast<std::size_t>(y) * size.width]);
        return image;
    }

    /// Where the middle of a part is seen, from the middle of the cube.
    [[nodiscard]] Vector2d placeOf_(const Eigen::Vector3i& part) const
    {
        // Edges and corners are as wide as what a face's middle leaves of it.
        constexpr double edgeMiddle = 0.83;
        Vector3d normal = Vector3d::Zero();
        int axis = 0;
        frame_.camera.direction().cwiseProduct(part.cast<double>()).minCoeff(&axis);
        normal[axis] = 1;
        const Vector3d onCube =
            part.cast<double>().cwiseProduct(normal + edgeMiddle * (Vector3d::Ones() - normal)).eval();
        const Vector3d seen = frame_.camera.rotation() * onCube;
        const double halfSide = cube_.area(size, 1).width / 2.0 * 0.46;
        return {seen.x() * halfSide, -seen.y() * halfSide};
    }

    /// Faces, edges and corners.
    static std::vector<Eigen::Vector3i> allParts_()
    {
        std::vector<Eigen::Vector3i> parts;
        for (int i = 0; i < 27; ++i)
        {
            if (i != 13)
                parts.emplace_back(i % 3 - 1, i / 3 % 3 - 1, i / 9 - 1);
        }
        return parts;
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

TEST_F(CornerControllerObjectTests, EveryPartIsHitWhereItIsSeenAndAClickLooksFromThere)
{
    for (const Eigen::Vector3i& part : allParts_())
    {
        frame_.camera.setRotation(CornerControllerObject::rotationFor(part, frame_.camera));
        frame_.camera.orbitFreely(Vector3d::Zero(), 0.3, -0.2);
        controller_.setCamera(frame_.camera);
        ASSERT_TRUE(partAt_(placeOf_(part))) << part.transpose();
        EXPECT_EQ(*partAt_(placeOf_(part)), part) << part.transpose();

        EXPECT_TRUE(cube_.click(middle_() + placeOf_(part), controller_, size, 1, 5));
        controller_.update(100);
        const Vector3d from = part.cast<double>().normalized();
        EXPECT_TRUE(controller_.camera().direction().isApprox(-from, 1e-9)) << part.transpose();
        EXPECT_GE(controller_.camera().up().z(), -1e-9) << part.transpose();
    }
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

TEST_F(CornerControllerObjectTests, TheHighlightEndsWhenTheMouseLeaves)
{
    const Image plain = drawCube_();
    cube_.hover(middle_(), frame_.camera, size, 1);
    cube_.endHover();
    EXPECT_EQ(difference_(drawCube_(), plain, 0), 0);
}

TEST_F(CornerControllerObjectTests, OnlyThePartUnderTheMouseIsHighlighted)
{
    const Image plain = drawCube_();
    cube_.hover(middle_() + Vector2d(22, -22), frame_.camera, size, 1);
    const Image highlighted = drawCube_();
    const auto changed = [&](const Vector2d& fromMiddle)
    {
        const Vector2d pixel = middle_() + fromMiddle;
        const auto x = static_cast<int>(pixel.x());
        const auto y = static_cast<int>(pixel.y());
        return !isNear_(plain.at(x, y), highlighted.at(x, y), 20);
    };
    EXPECT_TRUE(changed({21, -21}));
    EXPECT_FALSE(changed({0, 0}));
    EXPECT_FALSE(changed({21, 0}));
    EXPECT_FALSE(changed({-21, -21}));
}

TEST_F(CornerControllerObjectTests, TheLabelIsDarkOnLightInEveryScale)
{
    for (const float scale : {1.0F, 2.0F})
    {
        const Image image = drawCube_(scale);
        int darkest = 765;
        int brightest = 0;
        for (int y = -8; y < 8; ++y)
        {
            for (int x = -20; x < 20; ++x)
            {
                const Vector2d pixel = middle_(scale) + scale * Vector2d(x, y);
                const int shade = brightness_(image.at(static_cast<int>(pixel.x()), static_cast<int>(pixel.y())));
                darkest = std::min(darkest, shade);
                brightest = std::max(brightest, shade);
            }
        }
        EXPECT_LT(darkest, brightest / 3) << scale;
    }
}

TEST_F(CornerControllerObjectTests, LabelsAreUprightAndNotMirrored)
{
    // The ink of an L lies to the left and below.
    CornerControllerObject cube({"L", "L", "L", "L", "L", "L"});
    CornerControllerObject empty({"", "", "", "", "", ""});
    for (const StandardView view : {StandardView::Front, StandardView::Back, StandardView::Left, StandardView::Right,
                                    StandardView::Top, StandardView::Bottom})
    {
        frame_.camera.setStandardView(view);
        const Image with = draw_(cube);
        const Image without = draw_(empty);
        Eigen::AlignedBox2d box;
        Vector2d sum = Vector2d::Zero();
        int count = 0;
        for (int y = 0; y < size.height; ++y)
        {
            for (int x = 0; x < size.width; ++x)
            {
                if (isNear_(with.at(x, y), without.at(x, y), 60))
                    continue;
                box.extend(Vector2d(x, y));
                sum += Vector2d(x, y);
                ++count;
            }
        }
        ASSERT_GT(count, 10) << static_cast<int>(view);
        EXPECT_LT(sum.x() / count, box.center().x()) << static_cast<int>(view);
        EXPECT_GT(sum.y() / count, box.center().y()) << static_cast<int>(view);
    }
}

TEST_F(CornerControllerObjectTests, HasLabelsInChineseToo)
{
    CornerControllerObject cube({"右侧", "左侧", "后面", "前面", "顶部", "底部"});
    CornerControllerObject empty({"", "", "", "", "", ""});
    frame_.camera.setStandardView(StandardView::Front);
    const Image with = draw_(cube);
    const Image without = draw_(empty);
    int ink = 0;
    for (std::size_t i = 0; i < with.pixels.size(); ++i)
        ink += brightness_(with.pixels[i]) < brightness_(without.pixels[i]) - 100 ? 1 : 0;
    EXPECT_GT(ink, 50);
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
    const PixelRect area = cube_.area({60, 50}, 1);
    const Vector2d middle(area.x + area.width / 2.0, area.y + area.height / 2.0);
    EXPECT_FALSE(cube_.partAt(middle, frame_.camera, {60, 50}, 1));
}

} // namespace VX
