#include "RenderFixture.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace VX
{

class SceneRendererStandInTests : public RenderFixture
{
protected:
    void SetUp() override
    {
        RenderFixture::SetUp();
        renderer_ = std::make_unique<SceneRenderer>([this] { ready_ = true; });
        // Without its stand-ins it is too much for a software renderer.
        add_(Shapes::makeSphere(400));
    }

    void waitForStandIn_()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!ready_ && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ASSERT_TRUE(ready_);
    }

    std::atomic<bool> ready_ = false;
};

TEST_F(SceneRendererStandInTests, AtRestTheFullDetailIsDrawn)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    renderer_->draw(frame_);
    EXPECT_FALSE(renderer_->statistics().simplified);
    EXPECT_GT(renderer_->statistics().triangles, 250000U);
    EXPECT_FALSE(ready_) << "nobody asked for a stand-in";
}

TEST_F(SceneRendererStandInTests, WhileMovingAStandInIsDrawnAsSoonAsItIsReady)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    const Image full = draw_();
    frame_.interactive = true;
    EXPECT_TRUE(renderer_->draw(frame_));
    EXPECT_TRUE(renderer_->statistics().simplified);
    EXPECT_LE(renderer_->statistics().triangles, 250000U);
    waitForStandIn_();
    EXPECT_TRUE(renderer_->draw(frame_));
    EXPECT_LE(renderer_->statistics().triangles, 160000U);
    // It looks much like the whole.
    EXPECT_LT(difference_(renderer_->readPixels(), full, 40), 400);

    frame_.interactive = false;
    EXPECT_TRUE(renderer_->draw(frame_));
    EXPECT_FALSE(renderer_->statistics().simplified);
    EXPECT_EQ(difference_(renderer_->readPixels(), full, 0), 0);
}

TEST_F(SceneRendererStandInTests, StandInsCanBePreparedBeforeTheViewMoves)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    renderer_->prepareStandIns();
    renderer_->draw(frame_);
    renderer_->prepareStandIns();
    waitForStandIn_();
    frame_.interactive = true;
    renderer_->draw(frame_);
    EXPECT_LE(renderer_->statistics().triangles, 160000U);
}

TEST_F(SceneRendererStandInTests, AStandInHasNoHoles)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    renderer_->draw(frame_);
    renderer_->prepareStandIns();
    waitForStandIn_();
    frame_.interactive = true;
    for (int i = 0; i < 5; ++i)
    {
        frame_.camera.orbit(Vector3d::Zero(), 0.3, 0.2);
        const Image image = draw_();
        ASSERT_TRUE(renderer_->statistics().simplified);
        int holes = 0;
        for (double x = -0.9; x < 0.9; x += 0.02)
        {
            const double reach = std::sqrt(0.9 - x * x);
            for (double z = -reach; z < reach; z += 0.02)
                holes += isNear_(colorAt_(image, x, z), background_(z)) ? 1 : 0;
        }
        EXPECT_EQ(holes, 0);
    }
}

TEST_F(SceneRendererStandInTests, FewTrianglesInTheViewAreDrawnInFullWhileMoving)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    frame_.camera.setTarget({0, 0, 0.9});
    frame_.camera.setDistance(0.5);
    const Image full = draw_();
    renderer_->prepareStandIns();
    waitForStandIn_();
    frame_.interactive = true;
    EXPECT_EQ(difference_(draw_(), full, 0), 0);
    EXPECT_FALSE(renderer_->statistics().simplified);
}

TEST_F(SceneRendererStandInTests, NoPartIsLeftOutWhileMoving)
{
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    const auto far = add_(Shapes::makeSquare(), {2.5, 3, 1.5});
    far->setTransform(far->transform() * Eigen::Scaling(0.2));
    far->setColor({255, 0, 0, 255});
    frame_.interactive = true;
    const Color color = colorAt_(draw_(), 2.6, 1.4);
    EXPECT_GT(color.r, color.b + 100);
}

TEST_F(SceneRendererStandInTests, AStandInOfAMeshThatIsGoneIsDropped)
{
    renderer_->draw(frame_);
    renderer_->prepareStandIns();
    root_->removeChild(*root_->children().front());
    frame_.interactive = true;
    renderer_->draw(frame_);
    renderer_.reset();
}

} // namespace VX
