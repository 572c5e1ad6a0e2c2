#include <VXViewer/Camera.h>

#include <gtest/gtest.h>

#include <numbers>

namespace VX
{

namespace
{

constexpr PixelSize viewport{1280, 800};
const Vector2d middle(640, 400);

Camera makeCamera(Projection projection = Projection::Perspective)
{
    Camera camera;
    camera.setProjection(projection);
    camera.setTarget({10, -20, 30});
    camera.setDistance(50);
    return camera;
}

double pixelsApart(const Camera& camera, const Vector3d& a, const Vector3d& b)
{
    return (camera.project(a, viewport).value() - camera.project(b, viewport).value()).norm();
}

} // namespace

class CameraTests : public testing::TestWithParam<Projection>
{
protected:
    const Camera camera_ = makeCamera(GetParam());
};

INSTANTIATE_TEST_SUITE_P(BothProjections, CameraTests,
                         testing::Values(Projection::Perspective, Projection::Orthographic), [](const auto& test)
                         { return test.param == Projection::Perspective ? "Perspective" : "Orthographic"; });

TEST_P(CameraTests, ShowsTheTargetInTheMiddle)
{
    EXPECT_TRUE(camera_.project(camera_.target(), viewport)->isApprox(middle, 1e-9));
}

TEST_P(CameraTests, UnprojectsWhatItProjected)
{
    const Vector3d point(14, -25, 33);
    const Vector2d pixel = camera_.project(point, viewport).value();
    EXPECT_TRUE(camera_.unproject(pixel, camera_.depth(point), viewport).isApprox(point, 1e-9));
}

TEST_P(CameraTests, TheRayThroughAPixelMeetsWhatIsSeenThere)
{
    const Vector3d point(14, -25, 33);
    const Ray ray = camera_.ray(camera_.project(point, viewport).value(), viewport);
    EXPECT_NEAR(ray.direction.norm(), 1, 1e-12);
    EXPECT_NEAR((point - ray.origin).cross(ray.direction).norm(), 0, 1e-9);
    EXPECT_GT((point - ray.origin).dot(ray.direction), 0);
}

TEST_P(CameraTests, TheMatricesShowThePointWhereProjectSays)
{
    const Vector3d point(14, -25, 33);
    const ClipRange range = camera_.clipRange(Box3d(Vector3d(0, -30, 20), Vector3d(20, -10, 40)));
    const Eigen::Vector4d clip = camera_.projectionMatrix(viewport, range) * camera_.viewMatrix() * point.homogeneous();
    const Vector2d pixel((clip.x() / clip.w() + 1) / 2 * viewport.width,
                         (1 - clip.y() / clip.w()) / 2 * viewport.height);
    EXPECT_TRUE(camera_.project(point, viewport)->isApprox(pixel, 1e-9));
    EXPECT_LT(std::abs(clip.z()), clip.w());
}

TEST_P(CameraTests, AFittedBoxLiesInsideWithAMarginOnAllSides)
{
    Camera camera = camera_;
    const Box3d box(Vector3d(-3, 100, 7), Vector3d(9, 104, 8));
    camera.fit(box, {viewport});
    Eigen::AlignedBox2d seen;
    for (int i = 0; i < 8; ++i)
        seen.extend(camera.project(box.corner(static_cast<Box3d::CornerType>(i)), viewport).value());
    EXPECT_TRUE(seen.center().isApprox(middle, 0.02));
    const double share = std::max(seen.sizes().x() / viewport.width, seen.sizes().y() / viewport.height);
    EXPECT_GT(share, 0.8);
    EXPECT_LT(share, 0.9);
    EXPECT_EQ(camera.rotation().coeffs(), camera_.rotation().coeffs());
}

TEST_P(CameraTests, AFitLeavesFreeWhatIsCovered)
{
    constexpr int covered = 120;
    for (const Vector3d& size : {Vector3d(12, 4, 1), Vector3d(1, 1, 20)})
    {
        Camera camera = camera_;
        const Box3d box(Vector3d(-3, 100, 7), Vector3d(-3, 100, 7) + size);
        camera.fit(box, {viewport, covered});
        Eigen::AlignedBox2d seen;
        for (int i = 0; i < 8; ++i)
            seen.extend(camera.project(box.corner(static_cast<Box3d::CornerType>(i)), viewport).value());
        const double above = seen.min().y() - covered;
        const double below = viewport.height - seen.max().y();
        EXPECT_NEAR(above, below, 1e-6);
        EXPECT_GT(above, 0);
        const double share =
            std::max(seen.sizes().x() / viewport.width, seen.sizes().y() / (viewport.height - covered));
        EXPECT_GT(share, 0.8);
        EXPECT_LT(share, 0.9);
    }
}

TEST_P(CameraTests, AFittedPointHasAFiniteDistance)
{
    Camera camera = camera_;
    camera.fit(Box3d(Vector3d(5, 6, 7)), {viewport});
    EXPECT_TRUE(camera.target().isApprox(Vector3d(5, 6, 7)));
    EXPECT_GT(camera.distance(), 0);
    EXPECT_LT(camera.distance(), 1);
}

TEST_P(CameraTests, AFitComesBackFromFarAway)
{
    const Box3d box(Vector3d(9, -21, 29), Vector3d(11, -19, 31));
    Camera near = camera_;
    near.fit(box, {viewport});
    Camera far = camera_;
    far.setTarget({7e15, -3e15, 1e15});
    far.setDistance(1e15);
    far.fit(box, {viewport});
    EXPECT_TRUE(far.target().isApprox(near.target(), 1e-12));
    EXPECT_NEAR(far.distance(), near.distance(), 1e-9);
}

TEST_P(CameraTests, AnEmptyBoxChangesNothing)
{
    Camera camera = camera_;
    camera.fit(Box3d(), {viewport});
    EXPECT_EQ(camera, camera_);
}

TEST_P(CameraTests, AnOrbitKeepsItsPivotInPlace)
{
    Camera camera = camera_;
    const Vector3d pivot(14, -25, 33);
    camera.orbit(pivot, 0.7, -0.3);
    EXPECT_TRUE(camera.project(pivot, viewport)->isApprox(camera_.project(pivot, viewport).value(), 1e-9));
    EXPECT_NEAR(camera.depth(pivot), camera_.depth(pivot), 1e-9);
    EXPECT_GT(pixelsApart(camera, pivot, camera.target()), 1);
}

TEST_P(CameraTests, AnOrbitMovesTheNearSideAlongWithTheMouse)
{
    Camera camera = camera_;
    camera.setStandardView(StandardView::Front);
    const Vector3d nearSide = camera.target() - Vector3d(0, 5, 0);
    const Vector2d before = camera.project(nearSide, viewport).value();
    camera.orbit(camera.target(), 0.1, 0.1);
    const Vector2d after = camera.project(nearSide, viewport).value();
    EXPECT_GT(after.x(), before.x());
    EXPECT_GT(after.y(), before.y());
}

TEST_P(CameraTests, AnOrbitStopsAtThePoles)
{
    Camera camera = camera_;
    camera.orbit(camera.target(), 0, 10);
    EXPECT_NEAR(camera.direction().z(), -1, 1e-9);
    camera.orbit(camera.target(), 0.5, 1);
    EXPECT_NEAR(camera.direction().z(), -1, 1e-9);
    camera.orbit(camera.target(), 0, -10);
    EXPECT_NEAR(camera.direction().z(), 1, 1e-9);
}

TEST_P(CameraTests, AFreeOrbitGoesOverThePoles)
{
    Camera camera = camera_;
    camera.setStandardView(StandardView::Front);
    camera.orbitFreely(camera.target(), 0, std::numbers::pi * 0.75);
    EXPECT_LT(camera.up().z(), -0.5);
}

TEST_P(CameraTests, APanTakesThePointUnderTheCursorAlong)
{
    Camera camera = camera_;
    const Vector3d point(14, -25, 33);
    const Vector2d from = camera.project(point, viewport).value();
    const Vector2d to = from + Vector2d(100, -60);
    camera.pan(point, from, to, viewport);
    EXPECT_TRUE(camera.project(point, viewport)->isApprox(to, 1e-9));
    EXPECT_NEAR(camera.depth(point), camera_.depth(point), 1e-9);
}

TEST_P(CameraTests, AZoomKeepsItsPointInPlace)
{
    Camera camera = camera_;
    const Vector3d point(14, -25, 33);
    camera.zoom(3, point);
    EXPECT_TRUE(camera.project(point, viewport)->isApprox(camera_.project(point, viewport).value(), 1e-9));
    EXPECT_NEAR(camera.pixelSize(point, viewport), camera_.pixelSize(point, viewport) / 3, 1e-12);
}

TEST_P(CameraTests, FocusingDoesNotChangeThePicture)
{
    Camera camera = camera_;
    const Vector3d point(14, -25, 33);
    const Vector3d other(3, -22, 41);
    camera.focusOn(point);
    EXPECT_NEAR(camera.depth(point), camera.distance(), 1e-9);
    EXPECT_TRUE(camera.project(other, viewport)->isApprox(camera_.project(other, viewport).value(), 1e-9));
}

TEST_P(CameraTests, TheClipRangeHoldsTheScene)
{
    const Box3d box(Vector3d(0, -30, 20), Vector3d(20, -10, 40));
    const ClipRange range = camera_.clipRange(box);
    for (int i = 0; i < 8; ++i)
    {
        const double depth = camera_.depth(box.corner(static_cast<Box3d::CornerType>(i)));
        EXPECT_GT(depth, range.nearPlane);
        EXPECT_LT(depth, range.farPlane);
    }
}

TEST_P(CameraTests, TheClipRangeOfNothingIsUsable)
{
    const ClipRange range = camera_.clipRange(Box3d());
    EXPECT_LT(range.nearPlane, range.farPlane);
    EXPECT_TRUE(camera_.projectionMatrix(viewport, range).allFinite());
}

TEST(CameraProjectionTests, TogglingKeepsTheSizeInThePlaneOfTheTarget)
{
    Camera camera = makeCamera();
    const Vector3d beside = camera.target() + camera.right() * 4 + camera.up() * 2;
    const Vector2d before = camera.project(beside, viewport).value();
    camera.setProjection(Projection::Orthographic);
    EXPECT_TRUE(camera.project(beside, viewport)->isApprox(before, 1e-9));
}

TEST(CameraProjectionTests, InsideTheSceneTheNearPlaneStaysInFrontOfTheEye)
{
    Camera camera = makeCamera();
    camera.setDistance(0.5);
    const ClipRange range = camera.clipRange(Box3d(Vector3d::Constant(-100), Vector3d::Constant(100)));
    EXPECT_GT(range.nearPlane, 0);
    EXPECT_LT(range.nearPlane, 0.01);
    EXPECT_GT(range.farPlane, 100);
}

TEST(CameraProjectionTests, APointBehindTheEyeIsNotSeen)
{
    const Camera camera = makeCamera();
    EXPECT_FALSE(camera.project(camera.eye() - camera.direction(), viewport));
}

TEST(CameraProjectionTests, FocusingBehindTheEyeChangesNothing)
{
    Camera camera = makeCamera();
    camera.focusOn(camera.eye() - camera.direction());
    EXPECT_EQ(camera, makeCamera());
}

struct StandardViewCase
{
    StandardView view;
    Vector3d direction;
    Vector3d up;
};

class CameraStandardViewTests : public testing::TestWithParam<StandardViewCase>
{
};

INSTANTIATE_TEST_SUITE_P(All, CameraStandardViewTests,
                         testing::Values(StandardViewCase{StandardView::Front, {0, 1, 0}, {0, 0, 1}},
                                         StandardViewCase{StandardView::Back, {0, -1, 0}, {0, 0, 1}},
                                         StandardViewCase{StandardView::Left, {1, 0, 0}, {0, 0, 1}},
                                         StandardViewCase{StandardView::Right, {-1, 0, 0}, {0, 0, 1}},
                                         StandardViewCase{StandardView::Top, {0, 0, -1}, {0, 1, 0}},
                                         StandardViewCase{StandardView::Bottom, {0, 0, 1}, {0, -1, 0}}));

TEST_P(CameraStandardViewTests, LooksAlongItsAxis)
{
    Camera camera = makeCamera();
    camera.setStandardView(GetParam().view);
    EXPECT_TRUE(camera.direction().isApprox(GetParam().direction, 1e-9));
    EXPECT_TRUE(camera.up().isApprox(GetParam().up, 1e-9));
    EXPECT_TRUE(camera.target().isApprox(makeCamera().target()));
}

TEST(CameraInterpolationTests, BeginsAndEndsWithItsCameras)
{
    const Camera from = makeCamera();
    Camera to = makeCamera(Projection::Orthographic);
    to.setStandardView(StandardView::Top);
    EXPECT_EQ(Camera::interpolate(from, to, 0), from);
    EXPECT_EQ(Camera::interpolate(from, to, 1), to);
}

TEST(CameraInterpolationTests, AZoomTowardsAPointKeepsThePointInPlaceAllTheWay)
{
    const Camera from = makeCamera();
    const Vector3d point(14, -25, 33);
    Camera to = from;
    to.zoom(20, point);
    for (const double t : {0.2, 0.5, 0.8})
    {
        const Vector2d pixel = Camera::interpolate(from, to, t).project(point, viewport).value();
        EXPECT_TRUE(pixel.isApprox(from.project(point, viewport).value(), 1e-6)) << t;
    }
}

} // namespace VX
