#include "ItemsFixture.h"

#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/MainLoop.h>

#include <gtest/gtest.h>

namespace VX
{

/// These change the view and not the scene: none is a step.
class ViewItemsTests : public VX::Test::ItemsFixture
{
protected:
    ~ViewItemsTests() override { EXPECT_EQ(history_().position(), 0U); }

    void press_(const std::string& name)
    {
        EXPECT_TRUE(menu_->pressItem(name)) << item_(name).unavailableReason();
        EXPECT_TRUE(driver_.waitFor([&] { return !viewer_.view().controller().isAnimating(); }));
        driver_.settle();
    }

    [[nodiscard]] const SceneOptions& options_() const { return viewer_.view().options(); }

    static ItemEnabledPerViewport& perViewport_(const std::string& name)
    {
        return dynamic_cast<ItemEnabledPerViewport&>(item_(name));
    }
};

class AxisViewTests : public ViewItemsTests, public testing::WithParamInterface<std::pair<const char*, StandardView>>
{
};

TEST_P(AxisViewTests, TurnsTheCameraThere)
{
    Camera expected;
    expected.setStandardView(GetParam().second);
    Camera away = viewer_.view().camera();
    away.setStandardView(GetParam().second == StandardView::Left ? StandardView::Top : StandardView::Left);
    viewer_.view().controller().setCamera(away);
    ASSERT_FALSE(away.rotation().isApprox(expected.rotation(), 0.1));
    press_(GetParam().first);
    EXPECT_TRUE(viewer_.view().camera().rotation().isApprox(expected.rotation(), 1e-6));
}

INSTANTIATE_TEST_SUITE_P(
    Views, AxisViewTests,
    testing::Values(std::pair("View Front", StandardView::Front), std::pair("View Back", StandardView::Back),
                    std::pair("View Left", StandardView::Left), std::pair("View Right", StandardView::Right),
                    std::pair("View Top", StandardView::Top), std::pair("View Bottom", StandardView::Bottom),
                    std::pair("View Isometric", StandardView::Isometric)));

TEST_F(ViewItemsTests, FitShowsTheWholeScene)
{
    Camera away = viewer_.view().camera();
    away.setTarget({1000, 0, 0});
    viewer_.view().controller().setCamera(away);
    press_("Fit");
    EXPECT_LT((viewer_.view().camera().target() - Vector3d(0.5, 0.5, 0.5)).norm(), 1.0);
}

TEST_F(ViewItemsTests, FitSelectedShowsWhatIsSelected)
{
    c_->setTransform(Transform(Eigen::Translation3d(100, 0, 0)));
    c_->setSelected(true);
    press_("Fit Selected");
    EXPECT_LT((viewer_.view().camera().target() - Vector3d(100.5, 0.5, 0.5)).norm(), 1.0);
}

TEST_F(ViewItemsTests, TogglesTheProjection)
{
    const Projection before = viewer_.view().camera().projection();
    press_("Toggle Projection Mode");
    EXPECT_NE(viewer_.view().camera().projection(), before);
    press_("Toggle Projection Mode");
    EXPECT_EQ(viewer_.view().camera().projection(), before);
}

TEST_F(ViewItemsTests, TheProjectionIsFixedWhereTheItemIsNotEnabled)
{
    perViewport_("Toggle Projection Mode").setEnabledViewports({});
    EXPECT_FALSE(menu_->pressItem("Toggle Projection Mode"));
    EXPECT_EQ(item_("Toggle Projection Mode").unavailableReason(), "The projection of this view is fixed.");
}

TEST_F(ViewItemsTests, ShowsAndHidesTheGlobalBasis)
{
    press_("Show_Hide Global Basis");
    EXPECT_FALSE(options_().globalBasis.isEmpty());
    EXPECT_TRUE(item_("Show_Hide Global Basis").isActive());
    press_("Show_Hide Global Basis");
    EXPECT_TRUE(options_().globalBasis.isEmpty());
}

TEST_F(ViewItemsTests, KnowsWhenTheGlobalBasisIsShownByOthers)
{
    viewer_.view().options().globalBasis = ViewportMask::all();
    EXPECT_TRUE(item_("Show_Hide Global Basis").isActive());
    press_("Show_Hide Global Basis");
    EXPECT_TRUE(options_().globalBasis.isEmpty());
}

TEST_F(ViewItemsTests, ShowsTheScaleIndicatorInGivenViewports)
{
    perViewport_("Draw Scale Indicator").setEnabledViewports(ViewportMask::all());
    EXPECT_EQ(options_().scaleIndicator, ViewportMask::all());
    press_("Draw Scale Indicator");
    EXPECT_TRUE(options_().scaleIndicator.isEmpty());
}

TEST_F(ViewItemsTests, SwitchesTheWireframe)
{
    press_("Wireframe");
    EXPECT_TRUE(options_().wireframe);
    EXPECT_TRUE(item_("Wireframe").isActive());
    press_("Wireframe");
    EXPECT_FALSE(options_().wireframe);
}

TEST_F(ViewItemsTests, SwitchesTheEdges)
{
    ASSERT_TRUE(options_().featureEdges);
    press_("Edges");
    EXPECT_FALSE(options_().featureEdges);
    press_("Edges");
    EXPECT_TRUE(options_().featureEdges);
}

TEST_F(ViewItemsTests, AWindowWithoutAScreenCannotFillIt)
{
    EXPECT_FALSE(menu_->pressItem("Full Screen"));
    EXPECT_EQ(item_("Full Screen").unavailableReason(), "This window is not on a screen that it could fill.");
}

TEST_F(ViewItemsTests, ListsTheShortcuts)
{
    press_("Shortcuts");
    EXPECT_TRUE(item_("Shortcuts").isActive());
    EXPECT_TRUE(UiTree::instance().hasWindow("Shortcuts"));
}

} // namespace VX
