#include "WelcomeFixture.h"

#include <VXViewer/UiTree.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace VX
{

namespace
{

struct Place
{
    const char* label;
    float x;
    float y;
};

/// Where the cards and what is on them stand, from the middle of the area between the scene list and the right edge,
/// the ribbon and the lower edge.
class WelcomeCardsTest : public VX::Test::WelcomeFixture, public testing::WithParamInterface<float>
{
protected:
    void SetUp() override
    {
        WelcomeFixture::SetUp();
        start_({static_cast<int>(1280 * scale_()), static_cast<int>(800 * scale_())}, scale_());
    }

    static float scale_() { return GetParam(); }

    /// The middle of that area, in pixels.
    [[nodiscard]] Vector2f center_() const
    {
        const PixelSize size = viewer_().framebufferSize();
        return {(static_cast<float>(size.width) + menu_->leftPanelWidth()) / 2,
                (static_cast<float>(size.height) + scale_() * menu_->topPanelHeight()) / 2};
    }

    /// What the position `x`, `y` in the units of the design is in pixels; windows lie at whole ones.
    [[nodiscard]] Vector2f place_(float x, float y) const
    {
        const Vector2f exact = center_() + scale_() * Vector2f(x, y);
        return {std::floor(exact.x()), std::floor(exact.y())};
    }

    /// True where a window without a name that the user reads lies from `min` on and is as large as `units`.
    [[nodiscard]] bool hasCard_(const Vector2f& min, const Vector2f& units) const
    {
        const auto& items = UiTree::instance().items();
        return std::ranges::any_of(items,
                                   [&](const UiItem& item)
                                   {
                                       return item.kind == UiKind::Window && item.label.empty() &&
                                              (item.min - min).norm() < 1.5F &&
                                              (item.max - item.min - scale_() * units).norm() < 1.5F;
                                   });
    }

    void expectAt_(const Place& place, const Vector2f& card) const
    {
        const auto& items = UiTree::instance().items();
        const auto item =
            std::ranges::find_if(items, [&](const UiItem& candidate)
                                 { return candidate.label == place.label || candidate.value == place.label; });
        ASSERT_NE(item, items.end()) << place.label;
        EXPECT_NEAR(item->min.x(), card.x() + scale_() * place.x, 1) << place.label;
        EXPECT_NEAR(item->min.y(), card.y() + scale_() * place.y, 1) << place.label;
        EXPECT_TRUE((item->visibleMin - item->min).isZero()) << place.label << " is clipped";
    }

    /// The distance of the middle of a text to the middle of the card whose left edge is at `left`.
    void expectCentered_(const char* label, float left) const
    {
        const auto item = driver_->find(label);
        ASSERT_TRUE(item) << label;
        EXPECT_NEAR((item->min.x() + item->max.x()) / 2, left + scale_() * 425 / 2, 1) << label;
    }
};

TEST_P(WelcomeCardsTest, standInTheMiddleOfTheFreeArea)
{
    EXPECT_TRUE(hasCard_(place_(-433, -238), {425, 476}));
    EXPECT_TRUE(hasCard_(place_(8, -238), {425, 230}));
    EXPECT_TRUE(hasCard_(place_(8, 8), {425, 230}));
    EXPECT_TRUE(hasCard_(place_(-433, 238), {425, 28}));
}

TEST_P(WelcomeCardsTest, tellHowFilesAreOpened)
{
    const Vector2f card = place_(-433, -238);
    expectAt_({"DragDrop", 148.5F, 102}, card);
    for (const char* text :
         {"Drag & Drop Files", "Anywhere to Open", "To open DICOMs, RAW Voxels, TIFF use", "ribbon menu."})
        expectCentered_(text, card.x());
    EXPECT_NEAR(driver_->find("Drag & Drop Files")->min.y(), card.y() + scale_() * 269, 1);
    EXPECT_GT(driver_->find("Anywhere to Open")->min.y(), driver_->find("Drag & Drop Files")->max.y());
    EXPECT_NEAR(driver_->find("To open DICOMs, RAW Voxels, TIFF use")->min.y(), card.y() + scale_() * 361, 1);
}

TEST_P(WelcomeCardsTest, offerAVideo)
{
    const Vector2f card = place_(8, -238);
    expectAt_({"Quickstart", 36, 23}, card);
    expectAt_({"This curated video collection will", 36, 69}, card);
    expectAt_({"Youtube", 308, 95.2F}, card);
    expectAt_({"Watch Video", 36, 170.2F}, card);
    EXPECT_TRUE(driver_->shows("quickly and efficiently guide you"));
    EXPECT_TRUE(driver_->shows("through the essentials."));
}

TEST_P(WelcomeCardsTest, offerAFirstObject)
{
    const Vector2f card = place_(8, 8);
    expectAt_({"Create Simple Object", 36, 23}, card);
    expectAt_({"Easily generate basic shapes like", 36, 69}, card);
    expectAt_({"Create Object", 36, 170.2F}, card);
    EXPECT_TRUE(driver_->shows("cubes, spheres, and more using"));
    EXPECT_TRUE(driver_->shows("default settings."));
}

TEST_P(WelcomeCardsTest, showTheShapesInAGrid)
{
    for (const Place& place : {Place{"Cube", 273, 40.2F}, Place{"Cylinder", 345, 40.2F}, Place{"Sphere", 273, 98.2F},
                               Place{"Prism", 345, 98.2F}, Place{"Torus", 273, 156.2F}, Place{"Arrow", 345, 156.2F}})
    {
        expectAt_(place, place_(8, 8));
        const auto item = driver_->find(place.label);
        ASSERT_TRUE(item);
        EXPECT_TRUE((item->max - item->min).isApprox(scale_() * Vector2f(64, 50))) << place.label;
    }
}

TEST_P(WelcomeCardsTest, haveButtonsOfOneSize)
{
    for (const char* label : {"Watch Video", "Create Object"})
    {
        const auto item = driver_->find(label);
        ASSERT_TRUE(item);
        EXPECT_TRUE((item->max - item->min).isApprox(scale_() * Vector2f(110, 36))) << label;
    }
}

INSTANTIATE_TEST_SUITE_P(At, WelcomeCardsTest, testing::Values(1.0F, 1.5F, 2.0F),
                         [](const auto& scale) { return std::to_string(static_cast<int>(scale.param * 100)); });

} // namespace

} // namespace VX
