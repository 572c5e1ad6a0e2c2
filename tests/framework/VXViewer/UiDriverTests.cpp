#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/UI.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// Buttons in every situation in which a press cannot reach one.
class MenuWithObstacles : public ImGuiMenu
{
public:
    void drawAdditionalWindows() override
    {
        ImGui::SetNextWindowPos({400, 200});
        ImGui::SetNextWindowSize({300, 200});
        UI::beginWindow("Below", ImGuiWindowFlags_NoDecoration);
        if (UI::button("Free"))
            ++presses;
        UI::button("Twin##1");
        UI::button("Twin##2");
        {
            const UI::ScopedDisabled disabled;
            UI::button("Disabled");
        }
        ImGui::SetCursorPos({150, 100});
        UI::button("Covered", {100, 28});
        ImGui::SetCursorPos({10, 500});
        UI::button("Clipped");
        UI::endWindow();

        ImGui::SetNextWindowPos({540, 290});
        ImGui::SetNextWindowSize({140, 60});
        UI::beginWindow("Above", ImGuiWindowFlags_NoDecoration);
        UI::endWindow();
    }

    int presses = 0;
};

} // namespace

class UiDriverTests : public testing::Test
{
protected:
    std::shared_ptr<MenuWithObstacles> menu_ = std::make_shared<MenuWithObstacles>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(UiDriverTests, PressesAWidgetByItsName)
{
    EXPECT_TRUE(driver_.press("Free"));
    EXPECT_EQ(menu_->presses, 1);
}

TEST_F(UiDriverTests, RefusesAWidgetThatIsNotThere)
{
    EXPECT_EQ(driver_.obstacle("Missing"), "\"Missing\" is not there");
    EXPECT_EQ(driver_.obstacle("Free", "Above"), "\"Free\" in \"Above\" is not there");
}

TEST_F(UiDriverTests, RefusesANameThatIsThereTwice)
{
    EXPECT_EQ(driver_.obstacle("Twin"), "\"Twin\" is there more than once");
}

TEST_F(UiDriverTests, RefusesADisabledWidget)
{
    EXPECT_EQ(driver_.obstacle("Disabled"), "\"Disabled\" is disabled");
}

TEST_F(UiDriverTests, RefusesAWidgetUnderAnotherWindow)
{
    EXPECT_EQ(driver_.obstacle("Covered"), "\"Covered\" is covered");
}

TEST_F(UiDriverTests, RefusesAWidgetThatIsScrolledOutOfItsWindow)
{
    EXPECT_EQ(driver_.obstacle("Clipped"), "\"Clipped\" is clipped away");
}

} // namespace VX
