#include "GalleryMenu.h"
#include "tests/support/ui/ImageCompare.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/Viewer.h>

#include <cmath>
#include <string>
#include <tuple>

namespace VX
{

/// The widgets in a theme and at a scale, compared with pictures that were looked at.
class GalleryTests : public testing::TestWithParam<std::tuple<ColorTheme::Preset, int>>
{
};

TEST_P(GalleryTests, LooksAsItShould)
{
    const auto [preset, percent] = GetParam();
    const float scale = static_cast<float>(percent) / 100;
    const auto scaled = [&](int units) { return static_cast<int>(std::lround(static_cast<float>(units) * scale)); };
    const VX::Test::ViewerSession session(std::make_shared<VX::Test::GalleryMenu>(), {scaled(684), scaled(512)}, scale);
    VX::Test::UiDriver driver(session);
    preset == ColorTheme::Preset::Light ? ColorTheme::setupDefaultLight() : ColorTheme::setupDefaultDark();
    driver.settle();
    const Image picture = session.viewer().loop().captureWindow();
    ColorTheme::setupDefaultDark();

    const std::string name = "gallery-" + std::string(preset == ColorTheme::Preset::Light ? "light" : "dark") + "-" +
                             std::to_string(percent) + ".png";
    EXPECT_TRUE(VX::Test::matchesReference(picture, QX_SOURCE_DIR "/tests/framework/VXViewer/look/reference/" + name,
                                           QX_TEST_OUTPUT_DIR));
}

INSTANTIATE_TEST_SUITE_P(Themes, GalleryTests,
                         testing::Combine(testing::Values(ColorTheme::Preset::Dark, ColorTheme::Preset::Light),
                                          testing::Values(100, 150, 200)));

} // namespace VX
