#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/CommandLoop.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <thread>

namespace VX
{

class MainLoopTests : public testing::Test
{
protected:
    VX::Test::ViewerSession session_{std::make_shared<ImGuiMenu>()};
    Viewer& viewer_ = session_.viewer();
    MainLoop& loop_ = viewer_.loop();
    VX::Test::UiDriver driver_{session_};
};

TEST_F(MainLoopTests, DrawsNothingWhileNothingChanges)
{
    driver_.settle();
    const std::uint64_t frames = loop_.framesDrawn();
    EXPECT_FALSE(loop_.turn(false));
    EXPECT_FALSE(loop_.turn(false));
    EXPECT_EQ(loop_.framesDrawn(), frames);
}

TEST_F(MainLoopTests, TakesTheSceneFromTheCacheWhileOnlyTheInterfaceChanges)
{
    viewer_.scene().addChild(VX::Test::makeBox("Box"));
    driver_.settle();
    const std::uint64_t pictures = viewer_.view().statistics().frames;
    const std::uint64_t frames = loop_.framesDrawn();
    driver_.moveTo({40, 20});
    driver_.moveTo({140, 300});
    EXPECT_GT(loop_.framesDrawn(), frames);
    EXPECT_EQ(viewer_.view().statistics().frames, pictures);
}

TEST_F(MainLoopTests, DrawsTheSceneAnewWhenAnObjectChanges)
{
    const auto box = VX::Test::makeBox("Box");
    viewer_.scene().addChild(box);
    driver_.settle();
    const std::uint64_t pictures = viewer_.view().statistics().frames;
    box->setVisible(false);
    driver_.settle();
    EXPECT_EQ(viewer_.view().statistics().frames, pictures + 1);
}

TEST_F(MainLoopTests, WakesUpForAnEmptyEventFromAnotherThread)
{
    driver_.settle();
    const std::uint64_t frames = loop_.framesDrawn();
    std::thread waker([&] { viewer_.postEmptyEvent(); });
    EXPECT_TRUE(loop_.turn(true));
    waker.join();
    EXPECT_GT(loop_.framesDrawn(), frames);
}

TEST_F(MainLoopTests, WakesUpForACommand)
{
    driver_.settle();
    bool onUiThread = false;
    std::thread worker([&] { CommandLoop::appendCommand([&] { onUiThread = CommandLoop::isOnUiThread(); }); });
    loop_.turn(true);
    worker.join();
    driver_.settle();
    EXPECT_TRUE(onUiThread);
}

TEST_F(MainLoopTests, DrawsAFrameWhenTheTimeOfARequestedOneHasCome)
{
    driver_.settle();
    const std::uint64_t frames = loop_.framesDrawn();
    loop_.requestFrameAfter(0.02);
    EXPECT_FALSE(loop_.turn(false));
    EXPECT_TRUE(loop_.turn(true));
    EXPECT_EQ(loop_.framesDrawn(), frames + 1);
}

TEST_F(MainLoopTests, CallsATimerAgainAndAgainWithoutDrawing)
{
    driver_.settle();
    const std::uint64_t frames = loop_.framesDrawn();
    int calls = 0;
    const auto timer = loop_.callEvery(0.02, [&] { ++calls; });
    EXPECT_TRUE(loop_.turn(true));
    EXPECT_TRUE(loop_.turn(true));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(loop_.framesDrawn(), frames);
}

TEST_F(MainLoopTests, CallsATimerNoMoreOnceItsOwnerHasLetGoOfIt)
{
    driver_.settle();
    int calls = 0;
    auto timer = loop_.callEvery(0, [&] { ++calls; });
    loop_.turn(false);
    timer.reset();
    EXPECT_FALSE(loop_.turn(false));
    EXPECT_EQ(calls, 1);
}

TEST_F(MainLoopTests, DrawsForcedFrames)
{
    driver_.settle();
    const std::uint64_t frames = loop_.framesDrawn();
    viewer_.incrementForceRedrawFrames(4, true);
    driver_.settle();
    EXPECT_EQ(loop_.framesDrawn(), frames + 4);
}

TEST_F(MainLoopTests, DrawsAnAnimationToItsEndAndThenRests)
{
    viewer_.scene().addChild(VX::Test::makeBox("Box"));
    driver_.settle();
    const std::uint64_t pictures = viewer_.view().statistics().frames;
    viewer_.view().showFrom(StandardView::Top);
    driver_.settle();
    EXPECT_FALSE(viewer_.view().controller().isAnimating());
    EXPECT_GT(viewer_.view().statistics().frames, pictures + 1);
    EXPECT_TRUE(viewer_.view().camera().direction().isApprox(-Vector3d::UnitZ(), 1e-6));
}

TEST_F(MainLoopTests, EndsWhenTheWindowIsAskedToClose)
{
    CommandLoop::appendCommand([&] { viewer_.requestClose(); }, StartPosition::SetupDone);
    loop_.run();
    EXPECT_TRUE(viewer_.window()->isCloseRequested());
}

TEST_F(MainLoopTests, TellsOnceWhenEverythingIsOpenAndDrawn)
{
    const VX::Test::TempDir folder;
    viewer_.openFiles({folder.write("part.stl", VX::Test::triangleStl())});
    int calls = 0;
    std::size_t children = 0;
    loop_.whenLoaded(
        [&]
        {
            ++calls;
            children = viewer_.scene().children().size();
        });
    driver_.waitFor([&] { return calls > 0; });
    driver_.settle();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(children, 1U);
}

TEST_F(MainLoopTests, CapturesTheWindowAsItLooks)
{
    const Image image = loop_.captureWindow();
    EXPECT_EQ(image.size, viewer_.framebufferSize());
    // The panel at the left, not the scene's background.
    EXPECT_EQ(image.at(4, 300), (Color{0x26, 0x2A, 0x30, 255}));
}

} // namespace VX
