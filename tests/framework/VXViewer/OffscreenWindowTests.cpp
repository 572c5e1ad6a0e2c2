#include <VXViewer/OffscreenWindow.h>

#include <gtest/gtest.h>

#include <thread>

namespace VX
{

class OffscreenWindowTests : public testing::Test
{
protected:
    void SetUp() override
    {
        auto window = OffscreenWindow::create({320, 200}, 1.5F);
        ASSERT_TRUE(window) << window.error();
        window_ = std::move(*window);
    }

    std::unique_ptr<OffscreenWindow> window_;
};

TEST_F(OffscreenWindowTests, HasTheSizeAndScaleItWasCreatedWith)
{
    EXPECT_EQ(window_->framebufferSize(), (PixelSize{320, 200}));
    EXPECT_FLOAT_EQ(window_->contentScale(), 1.5F);
    EXPECT_NE(window_->defaultFramebuffer(), 0U);
    EXPECT_EQ(window_->glfwWindow(), nullptr);
}

TEST_F(OffscreenWindowTests, KeepsInputInOrderUntilItIsTaken)
{
    window_->inject(KeyEvent{65, 0, KeyEvent::Action::Press, 2});
    window_->inject(CharEvent{U'a'});
    EXPECT_TRUE(window_->hasEvents());
    const std::vector<InputEvent> events = window_->takeEvents();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(std::get<KeyEvent>(events[0]).key, 65);
    EXPECT_EQ(std::get<CharEvent>(events[1]).codepoint, U'a');
    EXPECT_FALSE(window_->hasEvents());
}

TEST_F(OffscreenWindowTests, ReportsANewSizeAsAnEvent)
{
    window_->setFramebufferSize({100, 80});
    EXPECT_EQ(window_->framebufferSize(), (PixelSize{100, 80}));
    const std::vector<InputEvent> events = window_->takeEvents();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_TRUE(std::holds_alternative<ResizeEvent>(events.front()));
}

TEST_F(OffscreenWindowTests, AWakeUpBeforeTheWaitEndsIt)
{
    std::thread([&] { window_->wake(); }).join();
    window_->waitEvents(std::nullopt);
    // Only one wait: the next one ends by its time.
    window_->waitEvents(0.01);
}

TEST_F(OffscreenWindowTests, InputEndsTheWait)
{
    std::thread worker([&] { window_->inject(CharEvent{U'x'}); });
    window_->waitEvents(std::nullopt);
    worker.join();
    EXPECT_TRUE(window_->hasEvents());
}

TEST_F(OffscreenWindowTests, RemembersTheRequestToClose)
{
    EXPECT_FALSE(window_->isCloseRequested());
    window_->requestClose(true);
    EXPECT_TRUE(window_->isCloseRequested());
}

TEST_F(OffscreenWindowTests, HasAClipboardOfItsOwn)
{
    window_->setClipboard("text");
    EXPECT_EQ(window_->clipboard(), "text");
}

} // namespace VX
