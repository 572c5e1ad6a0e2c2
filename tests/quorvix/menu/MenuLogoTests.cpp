#include "MenuFixture.h"

#include <VXViewer/UiTree.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace VX
{

namespace
{

class MenuLogoTest : public VX::Test::MenuFixture
{
protected:
    static std::optional<UiItem> logo_()
    {
        const auto& items = UiTree::instance().items();
        const auto found = std::ranges::find_if(items, [](const UiItem& item)
                                                { return item.kind == UiKind::Icon && item.value == "MainLogo"; });
        return found != items.end() ? std::optional(*found) : std::nullopt;
    }
};

TEST_F(MenuLogoTest, standsAtTheLeftOfTheHeader)
{
    start_();
    const auto logo = logo_();
    ASSERT_TRUE(logo);
    EXPECT_EQ(logo->min, Vector2f(12, 2));
    EXPECT_EQ(logo->max, Vector2f(40, 30));
}

TEST_F(MenuLogoTest, growsWithTheScale)
{
    start_({2000, 1400}, 2);
    const auto logo = logo_();
    ASSERT_TRUE(logo);
    EXPECT_EQ(logo->min, Vector2f(24, 4));
    EXPECT_EQ(logo->max, Vector2f(80, 60));
}

TEST_F(MenuLogoTest, leavesTheQuickAccessTheRoomAtItsRight)
{
    addItem_("Mark");
    RibbonSchemaHolder::schema().quickAccess = {"Mark"};
    RibbonSchemaHolder::markChanged();
    start_();
    const auto item = driver_->find("Mark");
    ASSERT_TRUE(item);
    EXPECT_GE(item->min.x(), 40);
    QuorvixMenuUIConfig config;
    config.drawLogo = false;
    menu_->setQuorvixMenuConfig(config);
    viewer_().incrementForceRedrawFrames(2);
    driver_->settle();
    const auto moved = driver_->find("Mark");
    ASSERT_TRUE(moved);
    EXPECT_LT(moved->min.x(), item->min.x());
}

TEST_F(MenuLogoTest, isNotThereWhenSwitchedOff)
{
    QuorvixMenuUIConfig config;
    config.drawLogo = false;
    menu_->setQuorvixMenuConfig(config);
    start_();
    EXPECT_FALSE(logo_());
}

TEST_F(MenuLogoTest, isThereInTheNarrowestWindowThatHasRoom)
{
    start_({600, 500});
    EXPECT_TRUE(logo_());
}

TEST_F(MenuLogoTest, isNotThereInANarrowerWindow)
{
    start_({599, 500});
    EXPECT_FALSE(logo_());
}

} // namespace

} // namespace VX
