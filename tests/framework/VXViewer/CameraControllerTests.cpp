#include <VXViewer/CameraController.h>

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

/// A scene that is the plane y = 0 between -10 and 10, seen from the front.
class CameraControllerTests : public testing::Test
{
protected:
    CameraControllerTests()
    {
        controller_.setViewport(viewport);
        controller_.setSceneBox(sceneBox_);
        Camera camera;
        camera.setStandardView(StandardView::Front);
        camera.setTarget({0, 0, 0});
        camera.setDistance(60);
        controller_.setCamera(camera);
    }

    std::optional<Vector3d> pointUnderCursor_(const Vector2d& pixel)
    {
        const Camera& camera = controller_.camera();
        const Ray ray = camera.ray(pixel, viewport);
        if (std::abs(ray.direction.y()) < 1e-9)
            return {};
        const Vector3d point = ray.origin - ray.direction * (ray.origin.y() / ray.direction.y());
        return point.cwiseAbs().maxCoeff() <= 10 ? std::optional(point) : std::nullopt;
    }

    void press_(int button, const Vector2f& at, int mods = 0, int clicks = 1)
    {
        controller_.handle(MouseButtonEvent{button, true, mods, at, clicks}, now_);
    }

    void move_(const Vector2f& to) { controller_.handle(MouseMoveEvent{to, 0}, now_); }

    void release_(int button, const Vector2f& at)
    {
        controller_.handle(MouseButtonEvent{button, false, 0, at, 1}, now_);
    }

    void drag_(int button, const Vector2f& from, const Vector2f& to, int mods = 0)
    {
        press_(button, from, mods);
        move_(to);
        release_(button, to);
    }

    bool key_(int key, int mods = 0)
    {
        return controller_.handle(KeyEvent{key, 0, KeyEvent::Action::Press, mods}, now_);
    }

    void finishAnimation_()
    {
        now_ += 10;
        controller_.update(now_);
        ASSERT_FALSE(controller_.isAnimating());
    }

    [[nodiscard]] Vector2d pixelOf_(const Vector3d& point) const
    {
        return controller_.camera().project(point, viewport).value();
    }

    static constexpr PixelSize viewport{800, 600};
    const Vector2f onScene_{450, 320};
    const Box3d sceneBox_{Vector3d(-10, -0.1, -10), Vector3d(10, 0.1, 10)};
    CameraController controller_{[this](const Vector2d& pixel) { return pointUnderCursor_(pixel); }};
    double now_ = 100;
};

TEST_F(CameraControllerTests, ALeftDragOrbitsAboutThePointUnderTheCursor)
{
    const Vector3d pivot = pointUnderCursor_(onScene_.cast<double>()).value();
    drag_(GLFW_MOUSE_BUTTON_LEFT, onScene_, {500, 300});
    EXPECT_TRUE(pixelOf_(pivot).isApprox(onScene_.cast<double>(), 1e-6));
    EXPECT_FALSE(controller_.camera().direction().isApprox(Vector3d::UnitY(), 0.01));
    ASSERT_TRUE(controller_.pivot());
    EXPECT_TRUE(controller_.pivot()->isApprox(pivot, 1e-9));
}

TEST_F(CameraControllerTests, ALeftDragOnTheBackgroundOrbitsAboutTheScene)
{
    drag_(GLFW_MOUSE_BUTTON_LEFT, {5, 5}, {60, 5});
    EXPECT_TRUE(pixelOf_(sceneBox_.center()).isApprox(Vector2d(400, 300), 1e-6));
    EXPECT_FALSE(controller_.camera().direction().isApprox(Vector3d::UnitY(), 0.01));
}

TEST_F(CameraControllerTests, ADragWhoseEventsArriveTogetherCountsInFull)
{
    drag_(GLFW_MOUSE_BUTTON_LEFT, onScene_, onScene_ + Vector2f(300, 0));
    // Half the viewport's height is a quarter turn.
    EXPECT_NEAR(controller_.camera().direction().dot(Vector3d::UnitY()), 0, 1e-6);
}

TEST_F(CameraControllerTests, AMiddleDragPans)
{
    const Vector3d point = pointUnderCursor_(onScene_.cast<double>()).value();
    drag_(GLFW_MOUSE_BUTTON_MIDDLE, onScene_, {500, 250});
    EXPECT_TRUE(pixelOf_(point).isApprox(Vector2d(500, 250), 1e-6));
    EXPECT_TRUE(controller_.camera().direction().isApprox(Vector3d::UnitY(), 1e-9));
}

TEST_F(CameraControllerTests, ALeftDragWithShiftPans)
{
    const Vector3d point = pointUnderCursor_(onScene_.cast<double>()).value();
    drag_(GLFW_MOUSE_BUTTON_LEFT, onScene_, {500, 250}, GLFW_MOD_SHIFT);
    EXPECT_TRUE(pixelOf_(point).isApprox(Vector2d(500, 250), 1e-6));
}

TEST_F(CameraControllerTests, ARightDragUpwardsMagnifies)
{
    const double before = controller_.camera().distance();
    drag_(GLFW_MOUSE_BUTTON_RIGHT, onScene_, onScene_ - Vector2f(0, 100));
    EXPECT_LT(controller_.camera().distance(), before * 0.8);
}

TEST_F(CameraControllerTests, ALeftDragWithAltTurnsOverThePole)
{
    drag_(GLFW_MOUSE_BUTTON_LEFT, {400, 100}, {400, 550}, GLFW_MOD_ALT);
    EXPECT_LT(controller_.camera().up().z(), 0);
}

TEST_F(CameraControllerTests, TheWheelZoomsToTheCursor)
{
    const Vector3d point = pointUnderCursor_(onScene_.cast<double>()).value();
    controller_.handle(ScrollEvent{{0, 3}, 0, onScene_}, now_);
    EXPECT_TRUE(pixelOf_(point).isApprox(onScene_.cast<double>(), 1e-6));
    EXPECT_LT(controller_.camera().depth(point), 60 / 1.5);
}

TEST_F(CameraControllerTests, TheWheelEndsAtALimit)
{
    for (int i = 0; i < 1000; ++i)
        controller_.handle(ScrollEvent{{0, -5}, 0, onScene_}, now_);
    EXPECT_LT(controller_.camera().distance(), 1e6);
    EXPECT_TRUE(controller_.camera().target().allFinite());
}

TEST_F(CameraControllerTests, AfterTheWheelTheViewComesToRestByItself)
{
    EXPECT_FALSE(controller_.restTime(now_));
    controller_.handle(ScrollEvent{{0, 1}, 0, onScene_}, now_);
    EXPECT_TRUE(controller_.isMoving(now_));
    const auto rest = controller_.restTime(now_);
    ASSERT_TRUE(rest);
    EXPECT_GT(*rest, now_);
    EXPECT_FALSE(controller_.isMoving(*rest));
}

TEST_F(CameraControllerTests, APressAndReleaseInPlaceIsAClick)
{
    const Camera before = controller_.camera();
    press_(GLFW_MOUSE_BUTTON_LEFT, onScene_);
    EXPECT_FALSE(controller_.isMoving(now_));
    release_(GLFW_MOUSE_BUTTON_LEFT, onScene_ + Vector2f(2, 1));
    EXPECT_TRUE(controller_.wasClick());
    EXPECT_EQ(controller_.camera(), before);
}

TEST_F(CameraControllerTests, ADragIsNoClickEvenWhenItEndsWhereItBegan)
{
    press_(GLFW_MOUSE_BUTTON_LEFT, onScene_);
    move_(onScene_ + Vector2f(50, 0));
    EXPECT_TRUE(controller_.isMoving(now_));
    EXPECT_TRUE(controller_.isOrbiting());
    move_(onScene_);
    release_(GLFW_MOUSE_BUTTON_LEFT, onScene_);
    EXPECT_FALSE(controller_.wasClick());
    EXPECT_FALSE(controller_.isMoving(now_));
}

TEST_F(CameraControllerTests, ARightClickIsNoClickThatSelects)
{
    press_(GLFW_MOUSE_BUTTON_RIGHT, onScene_);
    release_(GLFW_MOUSE_BUTTON_RIGHT, onScene_);
    EXPECT_FALSE(controller_.wasClick());
}

TEST_F(CameraControllerTests, ACancelledDragFollowsTheMouseNoMore)
{
    press_(GLFW_MOUSE_BUTTON_LEFT, onScene_);
    move_(onScene_ + Vector2f(50, 0));
    controller_.cancelDrag();
    const Camera before = controller_.camera();
    move_(onScene_ + Vector2f(150, 0));
    EXPECT_EQ(controller_.camera(), before);
    EXPECT_FALSE(controller_.isDragging());
}

TEST_F(CameraControllerTests, ADoubleClickMovesThePointToTheMiddle)
{
    const Vector3d point = pointUnderCursor_(onScene_.cast<double>()).value();
    press_(GLFW_MOUSE_BUTTON_LEFT, onScene_, 0, 2);
    EXPECT_TRUE(controller_.isAnimating());
    finishAnimation_();
    EXPECT_TRUE(pixelOf_(point).isApprox(Vector2d(400, 300), 1e-6));
    EXPECT_TRUE(controller_.pivot()->isApprox(point, 1e-9));
}

TEST_F(CameraControllerTests, AnAnimationMovesTheViewLittleByLittle)
{
    const Camera before = controller_.camera();
    controller_.turnTo(Camera::standardRotation(StandardView::Top), now_);
    EXPECT_EQ(controller_.camera(), before);
    now_ += 0.1;
    EXPECT_TRUE(controller_.update(now_));
    EXPECT_TRUE(controller_.isMoving(now_));
    EXPECT_GT(controller_.camera().direction().dot(-Vector3d::UnitZ()), 0.05);
    EXPECT_LT(controller_.camera().direction().dot(-Vector3d::UnitZ()), 0.99);
    finishAnimation_();
    EXPECT_TRUE(controller_.camera().direction().isApprox(-Vector3d::UnitZ(), 1e-9));
    EXPECT_FALSE(controller_.update(now_));
}

TEST_F(CameraControllerTests, APressEndsAnAnimationWhereItStands)
{
    controller_.turnTo(Camera::standardRotation(StandardView::Top), now_);
    now_ += 0.1;
    press_(GLFW_MOUSE_BUTTON_LEFT, onScene_);
    EXPECT_FALSE(controller_.isAnimating());
    EXPECT_LT(controller_.camera().direction().dot(-Vector3d::UnitZ()), 0.99);
}

TEST_F(CameraControllerTests, TurningAwayFromADetailKeepsTheDetailInTheMiddle)
{
    controller_.handle(ScrollEvent{{0, 15}, 0, onScene_}, now_);
    now_ += 1;
    const Vector3d detail = pointUnderCursor_(Vector2d(400, 300)).value();
    controller_.turnTo(Camera::standardRotation(StandardView::Isometric), now_);
    finishAnimation_();
    EXPECT_TRUE(pixelOf_(detail).isApprox(Vector2d(400, 300), 1e-3));
}

TEST_F(CameraControllerTests, FitShowsTheWholeScene)
{
    controller_.handle(ScrollEvent{{0, 15}, 0, onScene_}, now_);
    for (const int key : {GLFW_KEY_F, GLFW_KEY_HOME, GLFW_KEY_KP_0, GLFW_KEY_0, GLFW_KEY_KP_DECIMAL, GLFW_KEY_PERIOD})
    {
        Camera close = controller_.camera();
        close.setDistance(1);
        controller_.setCamera(close);
        EXPECT_TRUE(key_(key));
        finishAnimation_();
        EXPECT_GT(controller_.camera().distance(), 20) << key;
    }
}

TEST_F(CameraControllerTests, FitUsesTheCloserFitterWhereThereIsOne)
{
    controller_.setFitter([](Camera& camera) { camera.setDistance(7); });
    key_(GLFW_KEY_F);
    finishAnimation_();
    EXPECT_DOUBLE_EQ(controller_.camera().distance(), 7);
}

TEST_F(CameraControllerTests, OtherKeysAreLeftToOthers)
{
    EXPECT_FALSE(key_(GLFW_KEY_A));
    EXPECT_FALSE(key_(GLFW_KEY_F, GLFW_MOD_CONTROL));
    EXPECT_FALSE(key_(GLFW_KEY_1, GLFW_MOD_ALT));
    EXPECT_FALSE(controller_.handle(KeyEvent{GLFW_KEY_F, 0, KeyEvent::Action::Release, 0}, now_));
}

TEST_F(CameraControllerTests, FiveTogglesTheProjection)
{
    key_(GLFW_KEY_KP_5);
    EXPECT_EQ(controller_.camera().projection(), Projection::Orthographic);
    key_(GLFW_KEY_5);
    EXPECT_EQ(controller_.camera().projection(), Projection::Perspective);
}

TEST_F(CameraControllerTests, TheProjectionChangesWhileTheViewTurnsOn)
{
    key_(GLFW_KEY_KP_9);
    controller_.toggleProjection();
    finishAnimation_();
    EXPECT_EQ(controller_.camera().projection(), Projection::Orthographic);
    EXPECT_TRUE(controller_.camera().direction().isApprox(-Vector3d::UnitY(), 1e-9));
}

TEST_F(CameraControllerTests, AnAnimationCanBeCutShort)
{
    key_(GLFW_KEY_KP_9);
    controller_.finishAnimation();
    EXPECT_FALSE(controller_.isAnimating());
    EXPECT_TRUE(controller_.camera().direction().isApprox(-Vector3d::UnitY(), 1e-9));
}

TEST_F(CameraControllerTests, NineLooksFromTheOppositeSide)
{
    key_(GLFW_KEY_KP_9);
    finishAnimation_();
    EXPECT_TRUE(controller_.camera().direction().isApprox(-Vector3d::UnitY(), 1e-9));
    EXPECT_TRUE(controller_.camera().up().isApprox(Vector3d::UnitZ(), 1e-9));
}

TEST_F(CameraControllerTests, AnEmptySceneCanBeOrbitedAndFitted)
{
    controller_.setSceneBox(Box3d());
    drag_(GLFW_MOUSE_BUTTON_LEFT, {5, 5}, {60, 5});
    key_(GLFW_KEY_F);
    finishAnimation_();
    EXPECT_TRUE(controller_.camera().target().allFinite());
}

struct ViewKey
{
    int key;
    int mods;
    StandardView view;
};

class CameraControllerViewKeyTests : public CameraControllerTests, public testing::WithParamInterface<ViewKey>
{
};

INSTANTIATE_TEST_SUITE_P(KeypadAndRow, CameraControllerViewKeyTests,
                         testing::Values(ViewKey{GLFW_KEY_KP_1, 0, StandardView::Front},
                                         ViewKey{GLFW_KEY_KP_3, 0, StandardView::Right},
                                         ViewKey{GLFW_KEY_KP_7, 0, StandardView::Top},
                                         ViewKey{GLFW_KEY_KP_1, GLFW_MOD_CONTROL, StandardView::Back},
                                         ViewKey{GLFW_KEY_KP_3, GLFW_MOD_CONTROL, StandardView::Left},
                                         ViewKey{GLFW_KEY_KP_7, GLFW_MOD_CONTROL, StandardView::Bottom},
                                         ViewKey{GLFW_KEY_1, 0, StandardView::Front},
                                         ViewKey{GLFW_KEY_3, GLFW_MOD_CONTROL, StandardView::Left},
                                         // A locked keypad is still a keypad.
                                         ViewKey{GLFW_KEY_KP_7, GLFW_MOD_NUM_LOCK, StandardView::Top}));

TEST_P(CameraControllerViewKeyTests, TurnsToItsView)
{
    Camera camera = controller_.camera();
    camera.setStandardView(StandardView::Isometric);
    controller_.setCamera(camera);
    EXPECT_TRUE(key_(GetParam().key, GetParam().mods));
    finishAnimation_();
    EXPECT_TRUE(controller_.camera().rotation().isApprox(Camera::standardRotation(GetParam().view), 1e-9));
}

} // namespace VX
