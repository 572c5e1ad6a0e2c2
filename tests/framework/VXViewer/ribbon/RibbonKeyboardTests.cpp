#include "RibbonFixture.h"

#include <gmock/gmock.h>

namespace VX
{

using testing::Contains;
using testing::ElementsAre;

class RibbonKeyboardTests : public VX::Test::RibbonFixture
{
protected:
    /// Presses and releases Alt.
    void pressAlt_()
    {
        session_.window().inject(KeyEvent{GLFW_KEY_LEFT_ALT, 0, KeyEvent::Action::Press, GLFW_MOD_ALT});
        session_.window().inject(KeyEvent{GLFW_KEY_LEFT_ALT, 0, KeyEvent::Action::Release, 0});
        driver_.settle();
    }
};

TEST_F(RibbonKeyboardTests, PressesAnItemWithoutTheMouse)
{
    driver_.key(GLFW_KEY_F10);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre("Save It"));
}

TEST_F(RibbonKeyboardTests, MovesWithTheArrows)
{
    pressAlt_();
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(driver_.shows("Other Thing", "Ribbon"));
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon"));
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre("Open It"));
}

TEST_F(RibbonKeyboardTests, ReachesEveryItemWithTab)
{
    constexpr int stops = 16;
    for (int stop = 0; stop < stops; ++stop)
    {
        menu_->setCollapsed(false);
        menu_->openTab("Home");
        driver_.key(GLFW_KEY_F10);
        for (int i = 0; i < stop; ++i)
            driver_.key(GLFW_KEY_TAB);
        driver_.key(GLFW_KEY_ENTER);
        driver_.key(GLFW_KEY_ESCAPE);
        driver_.key(GLFW_KEY_ESCAPE);
    }
    for (const char* name : {"Open It", "Save It", "Close It", "Measure", "Tool A", "Tool B"})
        EXPECT_THAT(menu_->pressed, Contains(name));
}

TEST_F(RibbonKeyboardTests, ChoosesFromADropDown)
{
    driver_.press("Sides", "Ribbon");
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre("From Top"));
}

TEST_F(RibbonKeyboardTests, ClosesADropDownWithEscape)
{
    driver_.press("Sides", "Ribbon");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon Drop-Down"));
}

TEST_F(RibbonKeyboardTests, EndsWithEscapeAndWithAnyKeyOfAnotherUse)
{
    driver_.key(GLFW_KEY_F10);
    driver_.key(GLFW_KEY_ESCAPE);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre());
    driver_.key(GLFW_KEY_F10);
    driver_.key(GLFW_KEY_A);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre());
}

TEST_F(RibbonKeyboardTests, TakesNoAltThatBelongsToAChord)
{
    driver_.key(GLFW_KEY_1, GLFW_MOD_ALT);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre());
}

TEST_F(RibbonKeyboardTests, TakesNoAltThatTheWindowLostWithTheKeyboard)
{
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_ALT, 0, KeyEvent::Action::Press, GLFW_MOD_ALT});
    session_.window().inject(FocusEvent{false});
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_ALT, 0, KeyEvent::Action::Release, 0});
    driver_.settle();
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre());
}

TEST_F(RibbonKeyboardTests, OpensTheSearchWithoutTheMouse)
{
    driver_.key(GLFW_KEY_F10);
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_ENTER);
    driver_.type("measure");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre("Measure"));
}

TEST_F(RibbonKeyboardTests, TellsWhyAnItemCannotBePressed)
{
    item_("Save It").reason = "Nothing to save.";
    viewer_.incrementForceRedrawFrames();
    driver_.settle();
    driver_.key(GLFW_KEY_F10);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->notifications, ElementsAre("Nothing to save."));
}

} // namespace VX
