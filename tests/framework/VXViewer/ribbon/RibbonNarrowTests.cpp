#include "RibbonFixture.h"

#include <gmock/gmock.h>

namespace VX
{

using testing::ElementsAre;

class RibbonNarrowTests : public VX::Test::RibbonFixture
{
protected:
    void makeNarrow_(int width)
    {
        session_.window().setFramebufferSize({width, 600});
        driver_.settle();
    }

    /// What of the ribbon lies outside of the window or over one another.
    [[nodiscard]] static std::vector<std::string> misplaced_(float width)
    {
        std::vector<UiItem> items;
        for (const UiItem& item : UiTree::instance().items())
        {
            if (item.kind != UiKind::Window && (item.window == "Ribbon" || item.window == "Ribbon Header"))
                items.push_back(item);
        }
        std::vector<std::string> found;
        for (auto a = items.begin(); a != items.end(); ++a)
        {
            if (a->min.x() < 0 || a->max.x() > width || a->visibleMax != a->max)
                found.push_back(a->label + " is cut off");
            for (auto b = items.begin(); b != a; ++b)
            {
                const Vector2f overlap = a->max.cwiseMin(b->max) - a->min.cwiseMax(b->min);
                if (overlap.minCoeff() > 0.5F)
                    found.push_back(a->label + " covers " + b->label);
            }
        }
        return found;
    }
};

TEST_F(RibbonNarrowTests, FitsAnyWidthOfTheWindow)
{
    for (int width = 1200; width >= 240; width -= 40)
    {
        makeNarrow_(width);
        EXPECT_THAT(misplaced_(static_cast<float>(width)), ElementsAre()) << width;
    }
}

TEST_F(RibbonNarrowTests, MakesOneButtonOfAGroupThatDoesNotFit)
{
    makeNarrow_(130);
    driver_.press("Tools", "Ribbon");
    driver_.press("Measure", "Ribbon Group");
    EXPECT_THAT(menu_->pressed, ElementsAre("Measure"));
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon Group"));
}

TEST_F(RibbonNarrowTests, OpensADropDownOfAGroupThatDoesNotFit)
{
    makeNarrow_(130);
    driver_.press("Tools", "Ribbon");
    driver_.press("Sides", "Ribbon Group");
    driver_.press("From Front", "Ribbon Drop-Down");
    EXPECT_THAT(menu_->pressed, ElementsAre("From Front"));
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon Group"));
}

TEST_F(RibbonNarrowTests, ListsTabsThatDoNotFit)
{
    makeNarrow_(240);
    ASSERT_FALSE(driver_.shows("Second", "Ribbon Header"));
    driver_.press("More tabs", "Ribbon Header");
    driver_.press("Second", "More Tabs");
    EXPECT_TRUE(driver_.shows("Other Thing", "Ribbon"));
}

TEST_F(RibbonNarrowTests, OffersTheSearchAsAButtonWhereItsFieldDoesNotFit)
{
    makeNarrow_(300);
    driver_.press("Search for commands", "Ribbon Header");
    driver_.type("measure");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre("Measure"));
}

} // namespace VX
