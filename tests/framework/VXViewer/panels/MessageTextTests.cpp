#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

class MessageTextTests : public testing::Test
{
protected:
    void show_(const std::string& text)
    {
        menu_->showModalMessage(text, NotificationType::Error);
        driver_.settle();
    }

    [[nodiscard]] std::string clipboard_() const { return session_.window().clipboard(); }

    /// A text of many lines.
    static std::string longText_()
    {
        std::string text;
        for (int i = 0; i < 300; ++i)
            text += "Line " + std::to_string(i) + " says that something is wrong here.\n";
        return text;
    }

    std::shared_ptr<ImGuiMenu> menu_ = std::make_shared<ImGuiMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(MessageTextTests, CopiesTheWholeTextAsItWasWritten)
{
    const std::string text =
        "Cannot open \"part.stl\": the file ends in the middle of a triangle, which happens when a "
        "download is interrupted. Download it again.";
    show_(text);
    driver_.press("Copy", "Error Modal");
    EXPECT_EQ(clipboard_(), text);
    EXPECT_TRUE(UiTree::instance().hasWindow("Error Modal"));
}

TEST_F(MessageTextTests, CopiesAllMessagesWithTheKeyboard)
{
    show_("First");
    show_("Second");
    driver_.key(GLFW_KEY_C, GLFW_MOD_CONTROL);
    EXPECT_EQ(clipboard_(), "First\n\nSecond");
}

TEST_F(MessageTextTests, CopiesWhatIsMarked)
{
    show_("First Second");
    const UiItem text = *driver_.find("First Second", "Error Modal");
    driver_.click(text.min + Vector2f(6, 6), GLFW_MOUSE_BUTTON_LEFT, 0, 1);
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, text.min + Vector2f(6, 6), 2});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, false, 0, text.min + Vector2f(6, 6), 2});
    driver_.settle();
    driver_.key(GLFW_KEY_C, GLFW_MOD_CONTROL);
    EXPECT_EQ(clipboard_(), "First");
}

TEST_F(MessageTextTests, ScrollsALongTextInsideTheWindow)
{
    show_(longText_());
    for (const PixelSize size : {PixelSize{1000, 700}, PixelSize{400, 300}, PixelSize{240, 200}})
    {
        session_.window().setFramebufferSize(size);
        driver_.settle();
        const UiItem window = *driver_.find("Error Modal");
        EXPECT_GE(window.min.minCoeff(), 0) << size.width;
        EXPECT_LE(window.max.x(), static_cast<float>(size.width));
        EXPECT_LE(window.max.y(), static_cast<float>(size.height));
    }
    session_.window().setFramebufferSize({1000, 700});
    driver_.settle();
    driver_.press("OK", "Error Modal");
    EXPECT_FALSE(UiTree::instance().hasWindow("Error Modal"));
}

TEST_F(MessageTextTests, BreaksAWordThatIsWiderThanTheWindow)
{
    const std::string text(500, 'x');
    show_(text);
    driver_.press("Copy", "Error Modal");
    EXPECT_EQ(clipboard_(), text);
}

} // namespace VX
