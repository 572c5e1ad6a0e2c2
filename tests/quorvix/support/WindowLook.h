#pragma once

#include "tests/support/ui/ImageCompare.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/Locale.h>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

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

/// Each theme in each language at each scale; French, written in letters as German is, is left out.
inline auto allLooks()
{
    using enum ColorTheme::Preset;
    std::vector<WindowLook> looks;
    for (const ColorTheme::Preset theme : {Dark, Light})
        for (const char* language : {"en", "de", "zh_CN", "ja"})
            for (const int percent : {100, 200})
                looks.push_back({theme, language, percent});
    return testing::ValuesIn(looks);
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
