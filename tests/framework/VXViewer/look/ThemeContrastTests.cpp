#include "tests/support/TempConfig.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/UI.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace VX
{

namespace
{

using Role = UI::Color;

constexpr float leastForText = 4.5F;

/// Icons, lines and the like need less than text.
constexpr float leastForSigns = 3;

/// The relative luminance of the Web Content Accessibility Guidelines 2.2.
float luminance(ImU32 color)
{
    const auto channel = [&](int shift)
    {
        const float value = static_cast<float>(color >> shift & 0xFFU) / 255;
        return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
    };
    return 0.2126F * channel(IM_COL32_R_SHIFT) + 0.7152F * channel(IM_COL32_G_SHIFT) +
           0.0722F * channel(IM_COL32_B_SHIFT);
}

/// The contrast ratio of the same guidelines: 1 to 21.
float contrast(ImU32 a, ImU32 b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05F) / (darker + 0.05F);
}

struct Pair
{
    const char* name;
    std::vector<Role> foregrounds;
    std::vector<Role> backgrounds;
};

void expectContrast(const Pair& pair, float least)
{
    for (const Role foreground : pair.foregrounds)
    {
        for (const Role background : pair.backgrounds)
            EXPECT_GE(contrast(UI::color(foreground), UI::color(background)), least)
                << pair.name << ": role " << static_cast<int>(foreground) << " on role "
                << static_cast<int>(background);
    }
}

} // namespace

class ThemeContrastTests : public testing::TestWithParam<ColorTheme::Preset>
{
protected:
    ThemeContrastTests()
    {
        GetParam() == ColorTheme::Preset::Light ? ColorTheme::setupDefaultLight() : ColorTheme::setupDefaultDark();
    }

    ~ThemeContrastTests() override { ColorTheme::setupDefaultDark(); }

    VX::Test::TempConfig config_;
};

TEST_P(ThemeContrastTests, TextCanBeReadOnEveryBackgroundItIsUsedOn)
{
    expectContrast(
        {"text",
         {Role::Text},
         {Role::Window, Role::Panel, Role::Raised, Role::RaisedHovered, Role::RaisedPressed, Role::Selection}},
        leastForText);
    expectContrast({"secondary text",
                    {Role::SecondaryText},
                    {Role::Window, Role::Panel, Role::Raised, Role::RaisedHovered, Role::Selection}},
                   leastForText);
    expectContrast({"messages", {Role::Warning, Role::Error, Role::Success}, {Role::Window, Role::Panel, Role::Raised}},
                   leastForText);
    expectContrast({"contextual tabs", {Role::AccentHovered}, {Role::Window, Role::Panel}}, leastForText);
    expectContrast({"on the accent", {Role::AccentText}, {Role::Accent, Role::AccentHovered}}, leastForText);
}

TEST_P(ThemeContrastTests, SignsStandOutFromWhatTheyAreOn)
{
    expectContrast({"accent", {Role::Accent}, {Role::Window, Role::Panel, Role::Raised}}, leastForSigns);
}

TEST_P(ThemeContrastTests, TheRibbonCanBeRead)
{
    const std::vector<std::pair<RibbonColor, RibbonColor>> pairs{
        {RibbonColor::TabText, RibbonColor::Header},       {RibbonColor::TabTextActive, RibbonColor::TabActive},
        {RibbonColor::TabText, RibbonColor::Hovered},      {RibbonColor::Text, RibbonColor::Background},
        {RibbonColor::GroupName, RibbonColor::Background}, {RibbonColor::Text, RibbonColor::Hovered},
        {RibbonColor::Text, RibbonColor::Pressed},         {RibbonColor::Text, RibbonColor::Active},
        {RibbonColor::Icon, RibbonColor::Background},      {RibbonColor::Icon, RibbonColor::Toolbar},
        {RibbonColor::Text, RibbonColor::Notification},    {RibbonColor::Icon, RibbonColor::Header}};
    for (const auto& [foreground, background] : pairs)
    {
        EXPECT_GE(contrast(ColorTheme::getRibbonColor(foreground), ColorTheme::getRibbonColor(background)),
                  leastForText)
            << static_cast<int>(foreground) << " on " << static_cast<int>(background);
    }
    EXPECT_GE(
        contrast(ColorTheme::getRibbonColor(RibbonColor::IconActive), ColorTheme::getRibbonColor(RibbonColor::Active)),
        leastForSigns);
}

TEST_P(ThemeContrastTests, SelectedFacesStandOutFromTheViewport)
{
    const auto packed = [](const Color& color) { return IM_COL32(color.r, color.g, color.b, 255); };
    for (const Color& background : {ColorTheme::viewportTop(), ColorTheme::viewportBottom()})
        EXPECT_GE(contrast(packed(ColorTheme::selectedFaces()), packed(background)), 2) << "of the viewport";
}

INSTANTIATE_TEST_SUITE_P(Presets, ThemeContrastTests,
                         testing::Values(ColorTheme::Preset::Dark, ColorTheme::Preset::Light));

} // namespace VX
