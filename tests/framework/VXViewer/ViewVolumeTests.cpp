#include "render/ViewVolume.h"

#include <gtest/gtest.h>

#include <random>

namespace VX
{

class ViewVolumeTests : public testing::TestWithParam<Projection>
{
protected:
    static constexpr PixelSize viewport{400, 300};

    [[nodiscard]] Camera camera_() const
    {
        Camera camera;
        camera.setProjection(GetParam());
        camera.setStandardView(StandardView::Front);
        camera.setTarget({0, 0, 0});
        camera.setDistance(10);
        return camera;
    }

    [[nodiscard]] ViewVolume volume_(const Camera& camera) const
    {
        const ClipRange range{1, 20};
        return {camera.viewMatrix(), camera.projectionMatrix(viewport, range), GetParam()};
    }

    static Box3f boxAt_(const Vector3f& center, float halfSide = 0.1F)
    {
        return {center.array() - halfSide, center.array() + halfSide};
    }
};

INSTANTIATE_TEST_SUITE_P(BothProjections, ViewVolumeTests,
                         testing::Values(Projection::Perspective, Projection::Orthographic));

TEST_P(ViewVolumeTests, ShowsWhatIsInTheViewAndNotWhatIsBesideIt)
{
    const ViewVolume volume = volume_(camera_());
    EXPECT_TRUE(volume.mayShow(boxAt_({0, 0, 0})));
    EXPECT_TRUE(volume.mayShow(boxAt_({0, 0, 0}, 1000)));
    EXPECT_FALSE(volume.mayShow(boxAt_({20, 0, 0})));
    EXPECT_FALSE(volume.mayShow(boxAt_({0, 0, -20})));
    EXPECT_FALSE(volume.mayShow(boxAt_({0, -12, 0})));
    EXPECT_FALSE(volume.mayShow(boxAt_({0, 12, 0})));
    EXPECT_FALSE(volume.mayShow(Box3f()));
}

TEST_P(ViewVolumeTests, ABoxAcrossTheBorderShows)
{
    const ViewVolume volume = volume_(camera_());
    const Vector3d atBorder = camera_().unproject(Vector2d(0, 150), 10, viewport);
    EXPECT_TRUE(volume.mayShow(boxAt_(atBorder.cast<float>())));
}

TEST_P(ViewVolumeTests, FacesAwayOnlyWhereEveryTriangleWouldBeSeenFromBehind)
{
    const ViewVolume volume = volume_(camera_());
    const Box3f box = boxAt_({0, 0, 0});
    EXPECT_TRUE(volume.facesAway(box, Box3f(Vector3f(0, 1, 0))));
    EXPECT_FALSE(volume.facesAway(box, Box3f(Vector3f(0, -1, 0))));
    EXPECT_FALSE(volume.facesAway(box, Box3f(Vector3f(-0.1F, -0.1F, -0.1F), Vector3f(0.1F, 1, 0.1F))));
    EXPECT_TRUE(volume.facesAway(box, Box3f()));
}

TEST_P(ViewVolumeTests, NeverFacesAwayWhereSomeTriangleShowsItsFront)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(-4, 4);
    const auto vector = [&] { return Vector3f(place(random), place(random), place(random)); };
    const Camera camera = camera_();
    const ViewVolume volume = volume_(camera);
    int away = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Box3f box(vector());
        box.extend(Vector3f(box.min() + vector() / 8));
        Box3f normals(vector().normalized());
        normals.extend(Vector3f(normals.min() + vector() / 8));
        if (!volume.facesAway(box, normals))
            continue;
        ++away;
        for (int k = 0; k < 50; ++k)
        {
            const Vector3d point = box.sample().cast<double>();
            const Vector3d normal = normals.sample().cast<double>();
            const Vector3d towards =
                GetParam() == Projection::Perspective ? Vector3d(point - camera.eye()) : camera.direction();
            ASSERT_GE(normal.dot(towards), 0);
        }
    }
    EXPECT_GT(away, 300);
}

} // namespace VX
