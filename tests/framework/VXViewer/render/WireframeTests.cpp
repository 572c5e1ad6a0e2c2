#include "RenderFixture.h"

namespace VX
{

class WireframeTests : public RenderFixture
{
};

TEST_F(WireframeTests, DrawsTheSidesOfTheTriangles)
{
    add_(Shapes::makeSquare());
    const Image surface = draw_();
    frame_.options.wireframe = true;
    const Image wire = draw_();
    // On the diagonal, and beside it.
    EXPECT_LT(brightness_(colorAt_(wire, 0.31, 0.31)), brightness_(colorAt_(surface, 0.31, 0.31)) - 150);
    EXPECT_EQ(colorAt_(wire, 0.5, -0.2), colorAt_(surface, 0.5, -0.2));
}

TEST_F(WireframeTests, IsRightInPerspectiveAndAtSharpEdges)
{
    frame_.camera.setProjection(Projection::Perspective);
    frame_.camera.setStandardView(StandardView::Isometric);
    add_(Shapes::makeCube());
    const Image surface = draw_();
    frame_.options.wireframe = true;
    const int changed = difference_(draw_(), surface, 30);
    // Three squares of about 70 pixels a side: nine sides and three diagonals, a pixel or two wide.
    EXPECT_GT(changed, 600);
    EXPECT_LT(changed, 3000);
}

TEST_F(WireframeTests, LeavesStandInsAsTheyAre)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    add_(Shapes::makeSphere(400));
    frame_.interactive = true;
    const Image surface = draw_();
    ASSERT_TRUE(renderer_->statistics().simplified);
    frame_.options.wireframe = true;
    EXPECT_EQ(difference_(draw_(), surface, 0), 0);
}

} // namespace VX
