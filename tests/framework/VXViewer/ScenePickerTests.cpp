#include "RenderShapes.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/ScenePicker.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <deque>

namespace VX
{

/// Looks along +y at the plane of x (-4 to 4) and z (-3 to 3), fifty pixels a unit.
class ScenePickerTests : public testing::Test
{
protected:
    ScenePickerTests()
    {
        request_.root = root_.get();
        request_.size = {400, 300};
        request_.camera.setProjection(Projection::Orthographic);
        request_.camera.setStandardView(StandardView::Front);
        request_.camera.setTarget(Vector3d::Zero());
        request_.camera.setDistance(3 / std::tan(Camera::fieldOfView / 2));
    }

    template <class T>
    std::shared_ptr<T> add_(std::shared_ptr<T> object, const Vector3d& place = Vector3d::Zero())
    {
        object->setTransform(Transform(Eigen::Translation3d(place)));
        root_->addChild(object);
        return object;
    }

    std::shared_ptr<ObjectMesh> addCube_(const Vector3d& place = Vector3d::Zero())
    {
        return add_(std::make_shared<ObjectMesh>(Shapes::makeCube()), place);
    }

    std::optional<PickResult> pickAt_(double x, double z)
    {
        request_.pixel = {200 + 50 * x, 150 - 50 * z};
        return picker_.pickNow(request_);
    }

    /// What a worker posted, in order.
    struct Posted
    {
        Mutex mutex;
        std::condition_variable_any changed;
        std::deque<std::function<void()>> commands VX_GUARDED_BY(mutex);

        void post(std::function<void()> command)
        {
            {
                const MutexLock lock(mutex);
                commands.push_back(std::move(command));
            }
            changed.notify_all();
        }

        /// Runs the next command; false where none comes in time.
        bool runNext()
        {
            std::function<void()> command;
            {
                MutexLock lock(mutex);
                const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
                while (commands.empty() && changed.wait_until(lock, end) == std::cv_status::no_timeout)
                {
                }
                if (commands.empty())
                    return false;
                command = std::move(commands.front());
                commands.pop_front();
            }
            command();
            return true;
        }
    };

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    ScenePicker::Request request_;
    Posted posted_;
    ScenePicker picker_{[this](std::function<void()> command) { posted_.post(std::move(command)); }};
};

TEST_F(ScenePickerTests, HitsTheTriangleUnderThePixel)
{
    const auto cube = addCube_();
    // The front face is made of triangles 4 (lower right) and 5 (upper left).
    const auto lower = pickAt_(0.5, -0.6);
    const auto upper = pickAt_(-0.6, 0.5);
    ASSERT_TRUE(lower);
    ASSERT_TRUE(upper);
    EXPECT_EQ(lower->object.lock(), cube);
    EXPECT_EQ(lower->element, 4U);
    EXPECT_EQ(upper->element, 5U);
    EXPECT_TRUE(lower->point.isApprox(Vector3d(0.5, -1, -0.6), 1e-5)) << lower->point.transpose();
}

TEST_F(ScenePickerTests, MissesBesideTheObject)
{
    addCube_();
    EXPECT_FALSE(pickAt_(1.2, 0));
}

TEST_F(ScenePickerTests, HitsTheNearestOfSeveral)
{
    addCube_({0, 5, 0});
    const auto nearest = addCube_({0, -5, 0});
    addCube_();
    const auto hit = pickAt_(0, 0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->object.lock(), nearest);
    EXPECT_NEAR(hit->point.y(), -6, 1e-5);
}

TEST_F(ScenePickerTests, LooksThroughWhatIsHidden)
{
    const auto behind = addCube_({0, 5, 0});
    addCube_()->setVisible(false);
    const auto inOtherViewport = addCube_({0, -5, 0});
    inOtherViewport->setVisibilityMask(ViewportMask(2));
    const auto hit = pickAt_(0, 0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->object.lock(), behind);
}

TEST_F(ScenePickerTests, InPerspectiveToo)
{
    addCube_({0.5, 0, 0});
    request_.camera.setProjection(Projection::Perspective);
    request_.pixel = request_.camera.project({0.9, -1, 0.5}, request_.size).value();
    const auto hit = picker_.pickNow(request_);
    ASSERT_TRUE(hit);
    EXPECT_TRUE(hit->point.isApprox(Vector3d(0.9, -1, 0.5), 1e-5)) << hit->point.transpose();
}

TEST_F(ScenePickerTests, HitsWhatAnOrthographicPictureShowsBehindTheEye)
{
    addCube_();
    request_.camera.setTarget({0, 100, 0});
    EXPECT_TRUE(pickAt_(0, 0));
}

TEST_F(ScenePickerTests, HitsTurnedAndStretchedObjects)
{
    const auto cube = addCube_();
    Transform transform = Transform::Identity();
    transform.translate(Vector3d(1, 0, 0))
        .rotate(Eigen::AngleAxisd(0.5, Vector3d::UnitZ()))
        .scale(Vector3d(0.1, 2, -3));
    cube->setTransform(transform);
    const auto hit = pickAt_(1, 2.5);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->object.lock(), cube);
    EXPECT_NEAR(hit->point.z(), 2.5, 1e-5);
    EXPECT_FALSE(pickAt_(1, 3.2));
}

TEST_F(ScenePickerTests, HitsFarFromTheOrigin)
{
    const Vector3d far(1e7, -2e7, 5e6);
    addCube_(far);
    request_.camera.setTarget(far);
    const auto hit = pickAt_(0.5, -0.6);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->element, 4U);
    EXPECT_TRUE((hit->point - far).isApprox(Vector3d(0.5, -1, -0.6), 1e-5));
}

TEST_F(ScenePickerTests, AFlatObjectSeenOnEdgeAndAnEmptyOneAreMissed)
{
    add_(std::make_shared<ObjectMesh>(std::make_shared<Mesh>()));
    add_(std::make_shared<ObjectMesh>());
    const auto squashed = addCube_();
    squashed->setTransform(Transform(Eigen::Scaling(0.0, 1.0, 1.0)));
    EXPECT_FALSE(pickAt_(0, 0));
}

TEST_F(ScenePickerTests, AnEditedMeshIsPickedInItsNewForm)
{
    const auto cube = addCube_();
    EXPECT_TRUE(pickAt_(0, 0));
    cube->setMesh(Shapes::makeCube({2, 0, 0}));
    EXPECT_FALSE(pickAt_(0, 0));
    EXPECT_TRUE(pickAt_(2, 0));
}

TEST_F(ScenePickerTests, HitsAPointWithinAFewPixels)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{-1, 0, 0}, {1, 0, 0}, {1, -2, 0}};
    const auto points = add_(std::make_shared<ObjectPoints>(cloud));
    const auto hit = pickAt_(1.06, 0.04);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->object.lock(), points);
    EXPECT_EQ(hit->element, 2U) << "the nearer of the two";
    EXPECT_FALSE(pickAt_(0, 0));
    EXPECT_FALSE(pickAt_(1.3, 0));
}

TEST_F(ScenePickerTests, HitsALineWithinAFewPixels)
{
    auto lines = std::make_shared<Lines>();
    lines->points = {{-2, 0, 1}, {2, 0, 1}, {0, 0, -2}};
    lines->segments = {{0, 2}, {0, 1}};
    const auto object = add_(std::make_shared<ObjectLines>(lines));
    const auto hit = pickAt_(0.5, 1.05);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->object.lock(), object);
    EXPECT_EQ(hit->element, 1U);
    EXPECT_TRUE(hit->point.isApprox(Vector3d(0.5, 0, 1), 1e-9));
    EXPECT_FALSE(pickAt_(0.5, 1.3));
}

TEST_F(ScenePickerTests, ALineOnASurfaceIsHitAndOneBehindItIsNot)
{
    const auto cube = addCube_();
    const auto addLine = [&](float y)
    {
        auto lines = std::make_shared<Lines>();
        lines->points = {{-1, y, 0}, {1, y, 0}};
        lines->segments = {{0, 1}};
        return add_(std::make_shared<ObjectLines>(lines));
    };
    addLine(0);
    EXPECT_EQ(pickAt_(0.2, 0)->object.lock(), cube);
    const auto onSurface = addLine(-1);
    EXPECT_EQ(pickAt_(0.2, 0)->object.lock(), onSurface);
}

TEST_F(ScenePickerTests, AnswersThroughThePoster)
{
    const auto cube = addCube_();
    request_.pixel = {200, 150};
    std::optional<PickResult> result;
    bool called = false;
    picker_.pick(request_,
                 [&](std::optional<PickResult> hit)
                 {
                     called = true;
                     result = std::move(hit);
                 });
    EXPECT_FALSE(called);
    ASSERT_TRUE(posted_.runNext());
    EXPECT_TRUE(called);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->object.lock(), cube);
}

TEST_F(ScenePickerTests, AnswersAMissToo)
{
    request_.pixel = {200, 150};
    bool missed = false;
    picker_.pick(request_, [&](const std::optional<PickResult>& hit) { missed = !hit; });
    ASSERT_TRUE(posted_.runNext());
    EXPECT_TRUE(missed);
}

TEST_F(ScenePickerTests, PicksTheSceneAsItWasWhenAsked)
{
    const auto cube = addCube_();
    request_.pixel = {200, 150};
    std::shared_ptr<Object> found;
    picker_.pick(request_, [&](const std::optional<PickResult>& hit) { found = hit ? hit->object.lock() : nullptr; });
    cube->setTransform(Transform(Eigen::Translation3d(50, 0, 0)));
    ASSERT_TRUE(posted_.runNext());
    EXPECT_EQ(found, cube);
}

TEST_F(ScenePickerTests, APickOfAPickerThatIsGoneIsNeverAnswered)
{
    addCube_();
    request_.pixel = {200, 150};
    bool called = false;
    {
        ScenePicker picker([this](std::function<void()> command) { posted_.post(std::move(command)); });
        picker.pick(request_, [&](const std::optional<PickResult>&) { called = true; });
        picker.pick(request_, [&](const std::optional<PickResult>&) { called = true; });
    }
    const MutexLock lock(posted_.mutex);
    for (const auto& command : posted_.commands)
        command();
    EXPECT_FALSE(called);
}

} // namespace VX
