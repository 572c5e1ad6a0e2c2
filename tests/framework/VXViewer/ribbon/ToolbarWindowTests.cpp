#include "RibbonFixture.h"

#include <gmock/gmock.h>

namespace VX
{

using testing::ElementsAre;

class ToolbarWindowTests : public VX::Test::RibbonFixture
{
protected:
    static constexpr const char* name_ = "Customize Toolbar";

    static bool isOpen_() { return UiTree::instance().hasWindow(name_); }

    void open_()
    {
        toolbar_.openCustomize();
        viewer_.incrementForceRedrawFrames(2);
        driver_.settle();
    }

    void resize_(PixelSize size)
    {
        session_.window().setFramebufferSize(size);
        driver_.settle();
    }

    Toolbar& toolbar_ = menu_->toolbar();
};

TEST_F(ToolbarWindowTests, ClosesWithEscape)
{
    driver_.press("Customize the toolbar", "Toolbar");
    ASSERT_TRUE(isOpen_());
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(isOpen_());
}

TEST_F(ToolbarWindowTests, MovesAnItemPastThoseThatAreNotShown)
{
    RibbonConfig config;
    config.hiddenItems = {"Save It"};
    menu_->applyConfig(config);
    toolbar_.setItems({"Measure", "Save It", "Nowhere", "Open It"});
    open_();
    driver_.press("Move Open It up", name_);
    EXPECT_THAT(toolbar_.items(), ElementsAre("Open It", "Save It", "Nowhere", "Measure"));
    driver_.press("Move Open It down", name_);
    EXPECT_THAT(toolbar_.items(), ElementsAre("Measure", "Save It", "Nowhere", "Open It"));
}

TEST_F(ToolbarWindowTests, TheFirstAndTheLastThatAreShownStay)
{
    toolbar_.setItems({"Nowhere", "Measure", "Open It", "Not There"});
    open_();
    EXPECT_FALSE(driver_.find("Move Measure up", name_)->enabled);
    EXPECT_FALSE(driver_.find("Move Open It down", name_)->enabled);
}

TEST_F(ToolbarWindowTests, ComesBackIntoAWindowThatShrinks)
{
    open_();
    for (const PixelSize size : {PixelSize{700, 560}, PixelSize{400, 480}, PixelSize{300, 300}})
    {
        resize_(size);
        const UiItem window = *driver_.find(name_);
        EXPECT_GE(window.min.minCoeff(), 0) << size.width;
        EXPECT_LE(window.max.x(), static_cast<float>(size.width));
        EXPECT_LE(window.max.y(), static_cast<float>(size.height));
    }
}

TEST_F(ToolbarWindowTests, StaysWhereTheToolbarHasNoRoom)
{
    open_();
    resize_({150, 500});
    EXPECT_FALSE(UiTree::instance().hasWindow("Toolbar"));
    EXPECT_TRUE(isOpen_());
}

} // namespace VX
