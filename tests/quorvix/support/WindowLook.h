#pragma once

#include "tests/support/ui/ImageCompare.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/Locale.h>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

namespace VX::Test
{

/// How a window is shown while its picture is taken.
struct WindowLook
{
    ColorTheme::Preset theme = ColorTheme::Preset::Dark;
    std::string language = "en";
    int percent = 100; ///< of the design's size

    [[nodiscard]] float scale() const { return static_cast<float>(percent) / 100; }

    [[nodiscard]] int pixels(float units) const { return static_cast<int>(std::lround(units * scale())); }

    [[nodiscard]] PixelSize pixels(PixelSize units) const
    {
        return {pixels(static_cast<float>(units.width)), pixels(static_cast<float>(units.height))};
    }

    /// "dark-en-100"
    [[nodiscard]] std::string name() const
    {
        return (theme == ColorTheme::Preset::Dark ? "dark-" : "light-") + language + "-" + std::to_string(percent);
    }

    /// From here on the interface, which must be there, looks so.
    void apply() const
    {
        theme == ColorTheme::Preset::Dark ? ColorTheme::setupDefaultDark() : ColorTheme::setupDefaultLight();
        Locale::addDomain("Quorvix");
        Locale::set(language);
    }

    /// The interface looks as usual again.
    static void restore()
    {
        Locale::set("en");
        ColorTheme::setupDefaultDark();
    }
};

/// How the test library names a look.
inline void PrintTo(const WindowLook& look, std::ostream* out)
{
    *out << look.name();
}

/// Every language, theme and scale: the languages in the dark theme, and in the light one at twice the size what is
/// written in letters and in other characters.
inline auto allLooks()
{
    using enum ColorTheme::Preset;
    return testing::Values(WindowLook{Dark, "en", 100}, WindowLook{Dark, "de", 100}, WindowLook{Dark, "zh_CN", 100},
                           WindowLook{Dark, "ja", 100}, WindowLook{Light, "en", 200}, WindowLook{Light, "zh_CN", 200});
}

inline std::string lookName(const testing::TestParamInfo<WindowLook>& look)
{
    std::string name = look.param.name();
    std::erase_if(name, [](char c) { return c == '-' || c == '_'; });
    return name;
}

/// Whether `picture` of the window `name` is the one that was judged.
[[nodiscard]] inline testing::AssertionResult looksAsJudged(const Image& picture, const std::string& name,
                                                            const WindowLook& look)
{
    return matchesReference(picture, QX_SOURCE_DIR "/tests/quorvix/reference/" + name + "-" + look.name() + ".png",
                            QX_TEST_OUTPUT_DIR);
}

} // namespace VX::Test
