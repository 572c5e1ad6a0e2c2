#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>

namespace VX
{

namespace
{

/// A menu with notifications over the scene, and the button of their history in a window at the top.
class NotifyingMenu : public ImGuiMenu
{
public:
    void init(Viewer* viewer) override
    {
        ImGuiMenu::init(viewer);
        notifier.emplace(*viewer, [this] { return now; });
    }

    void shutdown() override
    {
        notifier.reset();
        ImGuiMenu::shutdown();
    }

    void drawAdditionalWindows() override
    {
        notifier->draw(viewer_()->view().area());
        ImGui::SetNextWindowPos({UI::px(400), UI::px(60)});
        UI::beginWindow("Bar", ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_AlwaysAutoResize);
        notifier->drawHistoryButton(UI::px(28));
        UI::endWindow();
        ImGuiMenu::drawAdditionalWindows();
    }

    double now = 0;
    std::optional<RibbonNotifier> notifier;
};

RibbonNotification message(std::string text)
{
    RibbonNotification notification;
    notification.header = "Header";
    notification.text = std::move(text);
    return notification;
}

} // namespace

class RibbonNotifierTests : public testing::Test
{
protected:
    void push_(const RibbonNotification& notification)
    {
        menu_->notifier->push(notification);
        driver_.settle();
    }

    void pass_(double seconds)
    {
        menu_->now += seconds;
        session_.viewer().incrementForceRedrawFrames();
        driver_.settle();
    }

    void expectAllInsideTheWindow_() const
    {
        const PixelSize size = session_.viewer().framebufferSize();
        const Vector2f end(static_cast<float>(size.width), static_cast<float>(size.height));
        for (const UiItem& item : UiTree::instance().items())
        {
            if (item.kind != UiKind::Window || !item.label.starts_with("Notification"))
                continue;
            EXPECT_GE(item.min.minCoeff(), 0) << item.label;
            EXPECT_LE((item.max - end).maxCoeff(), 0) << item.label;
        }
    }

    std::shared_ptr<NotifyingMenu> menu_ = std::make_shared<NotifyingMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(RibbonNotifierTests, ShowsHeaderAndText)
{
    push_(message("All is well"));
    EXPECT_TRUE(driver_.shows("Header", "Notification 1"));
    EXPECT_TRUE(driver_.shows("All is well", "Notification 1"));
}

TEST_F(RibbonNotifierTests, GoesIntoTheHistoryWhenItsLifetimeIsOver)
{
    push_(message("Short"));
    pass_(4.9);
    EXPECT_TRUE(driver_.shows("Short"));
    pass_(0.2);
    EXPECT_FALSE(driver_.shows("Short"));
    ASSERT_EQ(menu_->notifier->history().size(), 1U);
    EXPECT_EQ(menu_->notifier->history().front().notification.text, "Short");
}

TEST_F(RibbonNotifierTests, StaysUntilItIsClosedWithoutALifetime)
{
    RibbonNotification lasting = message("Lasting");
    lasting.lifeTimeSec = 0;
    push_(lasting);
    pass_(3600);
    EXPECT_TRUE(driver_.shows("Lasting"));
    driver_.press("Close", "Notification 1");
    EXPECT_FALSE(driver_.shows("Lasting"));
}

TEST_F(RibbonNotifierTests, DrawsNothingWhileItWaits)
{
    push_(message("Short"));
    const std::uint64_t frames = session_.viewer().loop().framesDrawn();
    EXPECT_FALSE(session_.viewer().loop().turn(false));
    EXPECT_EQ(session_.viewer().loop().framesDrawn(), frames);
}

TEST_F(RibbonNotifierTests, LetsNoTimePassWhileTheMouseRestsOnIt)
{
    push_(message("Short"));
    driver_.hover("Short");
    pass_(60);
    EXPECT_TRUE(driver_.shows("Short"));
    driver_.moveTo({500, 200});
    pass_(4.9);
    EXPECT_TRUE(driver_.shows("Short"));
    pass_(0.2);
    EXPECT_FALSE(driver_.shows("Short"));
}

TEST_F(RibbonNotifierTests, CountsEqualOnesAndBeginsTheirLifetimeAnew)
{
    push_(message("Same"));
    pass_(4);
    push_(message("Same"));
    push_(message("Same"));
    EXPECT_TRUE(driver_.shows("\u00D73"));
    ASSERT_EQ(menu_->notifier->shown().size(), 1U);
    pass_(4);
    EXPECT_TRUE(driver_.shows("Same"));
}

TEST_F(RibbonNotifierTests, TellsKindsApart)
{
    push_(message("Same"));
    RibbonNotification warning = message("Same");
    warning.type = NotificationType::Warning;
    push_(warning);
    EXPECT_EQ(menu_->notifier->shown().size(), 2U);
}

TEST_F(RibbonNotifierTests, SendsTheOldestOfMoreThanFiveIntoTheHistory)
{
    for (int i = 1; i <= 7; ++i)
        push_(message(fmt::format("Text {}", i)));
    EXPECT_FALSE(driver_.shows("Text 2"));
    EXPECT_TRUE(driver_.shows("Text 3"));
    EXPECT_TRUE(driver_.shows("Text 7"));
    EXPECT_EQ(menu_->notifier->history().size(), 2U);
}

TEST_F(RibbonNotifierTests, StacksTheNewestAtTheBottomWithoutOverlap)
{
    push_(message("First"));
    push_(message("Second"));
    const UiItem first = *driver_.find("Notification 1");
    const UiItem second = *driver_.find("Notification 2");
    EXPECT_LT(first.max.y(), second.min.y());
}

TEST_F(RibbonNotifierTests, RunsTheActionOfItsButtonAndGoes)
{
    int pressed = 0;
    RibbonNotification notification = message("New version");
    notification.buttonName = "Download";
    notification.onButtonClick = [&] { ++pressed; };
    push_(notification);
    driver_.press("Download", "Notification 1");
    EXPECT_EQ(pressed, 1);
    EXPECT_FALSE(driver_.shows("New version"));
}

TEST_F(RibbonNotifierTests, HasNoButtonWithoutAnAction)
{
    RibbonNotification notification = message("New version");
    notification.buttonName = "Download";
    push_(notification);
    EXPECT_FALSE(driver_.shows("Download"));
}

TEST_F(RibbonNotifierTests, AnActionMayNotifyAgain)
{
    RibbonNotification notification = message("First");
    notification.buttonName = "More";
    notification.onButtonClick = [this] { menu_->notifier->push(message("Second")); };
    push_(notification);
    driver_.press("More");
    EXPECT_TRUE(driver_.shows("Second"));
}

TEST_F(RibbonNotifierTests, KeepsThoseOfOtherTagsOffTheScreen)
{
    menu_->notifier->setShownTags(static_cast<unsigned>(NotificationTag::General));
    RibbonNotification advice = message("Advice");
    advice.tags = static_cast<unsigned>(NotificationTag::Advice);
    push_(advice);
    EXPECT_FALSE(driver_.shows("Advice"));
    EXPECT_EQ(menu_->notifier->history().size(), 1U);
    advice.tags = allNotificationTags;
    push_(advice);
    EXPECT_TRUE(driver_.shows("Advice"));
}

TEST_F(RibbonNotifierTests, StaysInsideAWindowOfAnySize)
{
    std::string longText;
    for (int i = 0; i < 200; ++i)
        longText += "a very long text ";
    push_(message(longText));
    push_(message("Short"));
    for (const PixelSize size :
         {PixelSize{1280, 800}, PixelSize{600, 400}, PixelSize{320, 240}, PixelSize{200, 160}, PixelSize{90, 90}})
    {
        session_.window().setFramebufferSize(size);
        driver_.settle();
        SCOPED_TRACE(fmt::format("{}x{}", size.width, size.height));
        expectAllInsideTheWindow_();
    }
}

TEST_F(RibbonNotifierTests, WaitsWithItsLifetimeWhereThereIsNoRoom)
{
    session_.window().setFramebufferSize({90, 90});
    driver_.settle();
    push_(message("Patient"));
    pass_(60);
    session_.window().setFramebufferSize({1000, 700});
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Patient"));
}

TEST_F(RibbonNotifierTests, ListsTheEarlierOnesNewestFirst)
{
    push_(message("First"));
    push_(message("Second"));
    pass_(6);
    EXPECT_EQ(driver_.find("Notifications", "Bar")->value, "on");
    driver_.press("Notifications", "Bar");
    ASSERT_TRUE(driver_.shows("First", "Notifications"));
    ASSERT_TRUE(driver_.shows("Second", "Notifications"));
    EXPECT_GT(driver_.find("First")->min.y(), driver_.find("Second")->min.y());
    EXPECT_EQ(driver_.find("Notifications", "Bar")->value, "");
}

TEST_F(RibbonNotifierTests, ForgetsTheHistoryWhenAsked)
{
    push_(message("First"));
    pass_(6);
    driver_.press("Notifications", "Bar");
    driver_.press("Clear", "Notifications");
    EXPECT_TRUE(driver_.shows("No notifications yet"));
    EXPECT_TRUE(menu_->notifier->history().empty());
}

TEST_F(RibbonNotifierTests, RunsTheActionFromTheHistoryToo)
{
    int pressed = 0;
    RibbonNotification notification = message("New version");
    notification.buttonName = "Download";
    notification.onButtonClick = [&] { ++pressed; };
    push_(notification);
    pass_(6);
    driver_.press("Notifications", "Bar");
    driver_.press("Download", "Notifications");
    EXPECT_EQ(pressed, 1);
}

} // namespace VX
