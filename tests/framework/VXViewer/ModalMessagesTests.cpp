#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>
#include <imgui_internal.h>

namespace VX
{

class ModalMessagesTests : public testing::Test
{
protected:
    void show_(const std::string& text, NotificationType type)
    {
        menu_->showModalMessage(text, type);
        driver_.settle();
    }

    static bool isOpen_(const char* window) { return UiTree::instance().hasWindow(window); }

    std::shared_ptr<ImGuiMenu> menu_ = std::make_shared<RibbonMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(ModalMessagesTests, ShowsAnErrorUntilTheUserConfirmsIt)
{
    show_("Cannot open \"part.stl\".", NotificationType::Error);
    EXPECT_TRUE(driver_.shows("Cannot open \"part.stl\".", "Error Modal"));
    driver_.press("OK", "Error Modal");
    EXPECT_FALSE(isOpen_("Error Modal"));
}

TEST_F(ModalMessagesTests, ClosesWithEnterAndWithEscape)
{
    show_("First", NotificationType::Warning);
    EXPECT_TRUE(isOpen_("Warning Modal"));
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_FALSE(isOpen_("Warning Modal"));
    show_("Second", NotificationType::Warning);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(isOpen_("Warning Modal"));
}

TEST_F(ModalMessagesTests, CoversTheRestOfTheInterface)
{
    session_.viewer().scene().addChild(VX::Test::makeBox("Box"));
    show_("Text", NotificationType::Info);
    EXPECT_EQ(driver_.obstacle("Box", "Scene"), "\"Box\" in \"Scene\" is covered");
}

TEST_F(ModalMessagesTests, DimsTheRestOfTheInterfaceAtOnce)
{
    show_("First", NotificationType::Warning);
    EXPECT_EQ(ImGui::GetCurrentContext()->DimBgRatio, 1);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_EQ(ImGui::GetCurrentContext()->DimBgRatio, 0);
}

TEST_F(ModalMessagesTests, JoinsMessagesOfOneKindAndLeavesOutRepetitions)
{
    show_("First", NotificationType::Error);
    show_("Second", NotificationType::Error);
    show_("First", NotificationType::Error);
    EXPECT_EQ(UiTree::instance().find("First", "Error Modal").size(), 1U);
    EXPECT_TRUE(driver_.shows("Second", "Error Modal"));
    driver_.press("OK", "Error Modal");
    EXPECT_FALSE(isOpen_("Error Modal"));
}

TEST_F(ModalMessagesTests, ShowsMessagesOfDifferentKindsOneAfterTheOther)
{
    show_("Bad", NotificationType::Error);
    show_("Odd", NotificationType::Warning);
    EXPECT_FALSE(isOpen_("Warning Modal"));
    driver_.press("OK", "Error Modal");
    EXPECT_TRUE(driver_.shows("Odd", "Warning Modal"));
}

TEST_F(ModalMessagesTests, PutsTheFileDialogAsideWhileAMessageIsShown)
{
    menu_->chooseFilesToOpen();
    driver_.settle();
    driver_.type("some text");
    show_("Bad", NotificationType::Error);
    EXPECT_FALSE(isOpen_("File Dialog"));
    driver_.press("OK", "Error Modal");
    EXPECT_TRUE(isOpen_("File Dialog"));
    EXPECT_TRUE(session_.viewer().getMenuPlugin() == menu_);
}

TEST_F(ModalMessagesTests, LeavesKeysToTheMessage)
{
    session_.viewer().scene().addChild(VX::Test::makeBox("Box"));
    session_.viewer().scene().children().front()->setSelected(true);
    show_("Bad", NotificationType::Error);
    driver_.key(GLFW_KEY_DELETE);
    EXPECT_EQ(session_.viewer().scene().children().size(), 1U);
}

} // namespace VX
