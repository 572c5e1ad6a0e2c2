#include "RenderFixture.h"

#include <algorithm>

namespace VX
{

class TransparencyTests : public RenderFixture
{
};

TEST_F(TransparencyTests, WhatLiesBehindShowsThrough)
{
    add_(Shapes::makeSquare(1))->setColor({0, 0, 255, 255});
    const auto front = add_(Shapes::makeSquare(-1));
    front->setColor({255, 0, 0, 255});
    const Color hidden = colorAt_(draw_(), 0, 0);
    front->setColor({255, 0, 0, 128});
    const Color shown = colorAt_(draw_(), 0, 0);
    EXPECT_LT(hidden.b, 60);
    EXPECT_GT(shown.b, 90);
    EXPECT_GT(shown.r, 90);
}

TEST_F(TransparencyTests, TheOrderOfTheObjectsInTheTreeDoesNotCount)
{
    const auto first = add_(Shapes::makeSquare(-1));
    const auto second = add_(Shapes::makeSquare(1));
    first->setColor({255, 0, 0, 128});
    second->setColor({0, 0, 255, 128});
    const Image front = draw_();
    root_->removeChild(*first);
    root_->addChild(first);
    EXPECT_EQ(difference_(draw_(), front, 0), 0);
    EXPECT_GT(colorAt_(front, 0, 0).r, colorAt_(front, 0, 0).b + 20) << "the near one is over the far one";
}

TEST_F(TransparencyTests, AnOpaqueObjectHidesATransparentOneBehindIt)
{
    add_(Shapes::makeSquare(1))->setColor({0, 0, 255, 128});
    const Image alone = draw_();
    add_(Shapes::makeSquare(-1))->setColor({255, 0, 0, 255});
    const Color color = colorAt_(draw_(), 0, 0);
    EXPECT_GT(colorAt_(alone, 0, 0).b, 100);
    EXPECT_LT(color.b, 60);
}

TEST_F(TransparencyTests, AnOpenSurfaceShowsItsFarSideThroughItsNearOne)
{
    auto mesh = Shapes::makeCube();
    // Without its side towards the right it is no solid.
    mesh->triangles.erase(mesh->triangles.begin() + 2, mesh->triangles.begin() + 4);
    mesh->faceColors.assign(10, {255, 0, 0, 255});
    // The far side, +y.
    mesh->faceColors[4] = mesh->faceColors[5] = {0, 255, 0, 255};
    add_(mesh)->setColor({255, 255, 255, 128});
    EXPECT_GT(colorAt_(draw_(), 0, 0).g, 50);
}

TEST_F(TransparencyTests, APictureWithoutBackgroundIsTransparentThere)
{
    add_(Shapes::makeSquare());
    const Color opaque = colorAt_(draw_(), 0, 0);
    frame_.options.transparentBackground = true;
    const Image image = draw_();
    EXPECT_EQ(colorAt_(image, 2, 0).a, 0);
    EXPECT_EQ(colorAt_(image, 0, 0), opaque);
}

TEST_F(TransparencyTests, ATransparentObjectKeepsItsColorInAPictureWithoutBackground)
{
    const auto object = add_(Shapes::makeSquare());
    object->setColor({200, 40, 40, 255});
    frame_.options.transparentBackground = true;
    const Color opaque = colorAt_(draw_(), 0, 0);
    object->setColor({200, 40, 40, 128});
    const Color half = colorAt_(draw_(), 0, 0);
    EXPECT_NEAR(half.a, 128, 1);
    EXPECT_TRUE(isNear_(half, opaque, 3));
}

TEST_F(TransparencyTests, EdgesOfATransparentObjectHaveNoFringe)
{
    frame_.options.featureEdges = true;
    frame_.options.backgroundTop = frame_.options.backgroundBottom = {255, 255, 255, 255};
    const auto object = add_(Shapes::makeSquare());
    object->setColor({200, 40, 40, 128});
    const Transform turn(Eigen::AngleAxisd(0.35, Vector3d::UnitY()));
    object->setTransform(turn);
    const Image image = draw_();
    const auto greenAt = [&](double u, double v)
    {
        const Vector3d place = turn * Vector3d(u, 0, v);
        return int{colorAt_(image, place.x(), place.z()).g};
    };
    int lightest = 0;
    for (double v = -0.9; v < 0.9; v += 0.01)
    {
        for (double u = 0.94; u < 0.98; u += 0.005)
            lightest = std::max(lightest, greenAt(u, v));
    }
    EXPECT_LE(lightest, greenAt(0.5, 0) + 12);
}

} // namespace VX
