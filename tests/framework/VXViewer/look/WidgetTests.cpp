#include "GalleryMenu.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>

#include <string>

namespace VX
{

class WidgetTests : public testing::Test
{
protected:
    [[nodiscard]] UiItem item_(const std::string& label) const
    {
        const std::optional<UiItem> found = driver_.find(label);
        EXPECT_TRUE(found) << label;
        return found.value_or(UiItem());
    }

    /// A place in the widget, from 0 at its left to 1 at its right.
    [[nodiscard]] Vector2f placeIn_(const std::string& label, float share) const
    {
        const UiItem item = item_(label);
        return {item.min.x() + share * (item.max.x() - item.min.x()), (item.min.y() + item.max.y()) / 2};
    }

    std::shared_ptr<VX::Test::GalleryMenu> menu_ = std::make_shared<VX::Test::GalleryMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(WidgetTests, ButtonsOfEveryKindCanBePressed)
{
    for (const char* label : {"Open", "Save As", "Front", "Undo", "Torus"})
        driver_.press(label);
    EXPECT_THAT(menu_->pressed, testing::ElementsAre("Open", "Save As", "Front", "Undo", "Torus"));
}

TEST_F(WidgetTests, AnIconButtonTellsItsLabelAndWhetherItIsOn)
{
    EXPECT_EQ(item_("Undo").kind, UiKind::IconButton);
    EXPECT_EQ(item_("Undo").value, "");
    EXPECT_EQ(item_("Visible").value, "on");
    EXPECT_FALSE(item_("Delete").enabled);
}

TEST_F(WidgetTests, EverythingToPressIsAtLeast28UnitsHigh)
{
    for (const UiItem& item : UiTree::instance().items())
    {
        const bool canBePressed = item.kind != UiKind::Window && item.kind != UiKind::Text &&
                                  item.kind != UiKind::ProgressBar && item.kind != UiKind::Icon;
        EXPECT_TRUE(!canBePressed || item.max.y() - item.min.y() >= 28) << item.label;
    }
}

TEST_F(WidgetTests, ARadioButtonTakesItsChoice)
{
    EXPECT_EQ(item_("Smooth").kind, UiKind::Radio);
    EXPECT_EQ(item_("Smooth").value, "on");
    driver_.press("Flat");
    EXPECT_EQ(menu_->choice, 0);
    EXPECT_EQ(item_("Flat").value, "on");
    EXPECT_EQ(item_("Smooth").value, "off");
}

TEST_F(WidgetTests, AComboOpensItsChoices)
{
    driver_.press("Shape");
    driver_.press("Cylinder");
    EXPECT_EQ(menu_->shape, 1);
    EXPECT_EQ(item_("Shape").value, "Cylinder");
}

TEST_F(WidgetTests, ASliderShowsItsNumberWithTheUnit)
{
    EXPECT_EQ(item_("Radius").kind, UiKind::Slider);
    EXPECT_EQ(item_("Radius").value, "2.50 mm");
    EXPECT_EQ(item_("Segments").value, "24");
}

TEST_F(WidgetTests, ASliderFollowsTheMouse)
{
    driver_.drag(placeIn_("Radius", 0.25F), placeIn_("Radius", 0.75F));
    EXPECT_NEAR(menu_->radius, 7.5F, 0.5F);
    driver_.drag(placeIn_("Segments", 0.5F), placeIn_("Segments", 2));
    EXPECT_EQ(menu_->segments, 96);
}

TEST_F(WidgetTests, ANumberThatIsTypedIsBroughtIntoTheRange)
{
    driver_.click(placeIn_("Radius", 0.5F), 0, GLFW_MOD_CONTROL);
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    driver_.type("250");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->radius, 10);
}

TEST_F(WidgetTests, ADragChangesItsNumber)
{
    EXPECT_EQ(item_("Angle").kind, UiKind::Drag);
    EXPECT_EQ(item_("Angle").value, "30.0°");
    const Vector2f from = placeIn_("Angle", 0.5F);
    driver_.drag(from, from + Vector2f(40, 0));
    EXPECT_GT(menu_->angle, 35);
    const Vector2f elsewhere = placeIn_("Angle", 0.1F);
    driver_.drag(elsewhere, elsewhere + Vector2f(400, 0));
    EXPECT_EQ(menu_->angle, 90);
}

TEST_F(WidgetTests, APasswordIsNeitherRecordedNorCopied)
{
    EXPECT_EQ(item_("Password").value, "");
    session_.window().setClipboard("before");
    driver_.press("Password");
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    driver_.key(GLFW_KEY_C, GLFW_MOD_CONTROL);
    EXPECT_EQ(session_.window().clipboard(), "before");
}

TEST_F(WidgetTests, ATextTakesNoMoreCharactersThanItsLimit)
{
    driver_.press("Code");
    driver_.type("12345678");
    EXPECT_EQ(menu_->code, "123456");
}

TEST_F(WidgetTests, TheLimitOfATextCountsCharactersAndNotBytes)
{
    driver_.press("Code");
    driver_.type("äöüäöüß");
    EXPECT_EQ(menu_->code, "äöüäöü");
}

TEST_F(WidgetTests, APasteIsCutToTheLimit)
{
    session_.window().setClipboard("abcdefghij");
    driver_.press("Code");
    driver_.type("1");
    driver_.key(GLFW_KEY_V, GLFW_MOD_CONTROL);
    EXPECT_EQ(menu_->code, "1abcde");
}

TEST_F(WidgetTests, AHeaderOpensAndCloses)
{
    EXPECT_EQ(item_("Transform").kind, UiKind::CollapsingHeader);
    EXPECT_EQ(item_("Transform").value, "open");
    EXPECT_TRUE(driver_.shows("Position 0, 0, 0"));
    driver_.press("Transform");
    EXPECT_EQ(item_("Transform").value, "");
    EXPECT_FALSE(driver_.shows("Position 0, 0, 0"));
}

TEST_F(WidgetTests, ATabShowsWhatIsOnIt)
{
    EXPECT_EQ(item_("Application").kind, UiKind::Tab);
    EXPECT_EQ(item_("Application").value, "selected");
    driver_.press("View");
    EXPECT_EQ(item_("View").value, "selected");
    EXPECT_TRUE(driver_.shows("Edges and samples"));
    EXPECT_FALSE(driver_.shows("Language and theme"));
}

TEST_F(WidgetTests, ARowOfATableCanBePressed)
{
    EXPECT_EQ(item_("Housing").kind, UiKind::TableRow);
    EXPECT_EQ(item_("Housing").value, "Housing\t960");
    driver_.press("Housing");
    EXPECT_EQ(menu_->selectedRow, 2);
}

TEST_F(WidgetTests, NothingCanBePressedWhileItIsDisabled)
{
    menu_->disabled = true;
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    for (const char* label : {"Open", "Undo", "Cube", "Show edges", "Flat", "Shape", "Radius", "Angle", "Name", "View"})
        EXPECT_EQ(driver_.obstacle(label), "\"" + std::string(label) + "\" is disabled");
}

} // namespace VX
