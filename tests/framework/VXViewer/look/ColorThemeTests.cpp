#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Config.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/UI.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace VX
{

namespace
{

Color colorOf(ImU32 packed)
{
    return {
        static_cast<std::uint8_t>(packed >> IM_COL32_R_SHIFT), static_cast<std::uint8_t>(packed >> IM_COL32_G_SHIFT),
        static_cast<std::uint8_t>(packed >> IM_COL32_B_SHIFT), static_cast<std::uint8_t>(packed >> IM_COL32_A_SHIFT)};
}

Color colorOf(RibbonColor color)
{
    return colorOf(ColorTheme::getRibbonColor(color));
}

} // namespace

void PrintTo(const Color& color, std::ostream* stream)
{
    *stream << "rgb(" << int{color.r} << ", " << int{color.g} << ", " << int{color.b} << ")";
}

class ColorThemeTests : public testing::Test
{
protected:
    ~ColorThemeTests() override { ColorTheme::setupDefaultDark(); }

    static void writeTheme(const std::string& name, const std::string& text)
    {
        const std::filesystem::path folder = getUserConfigDir() / "themes";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (name + ".json")) << text;
    }

    static std::string errorOf(const std::string& name)
    {
        const auto shown = ColorTheme::setupUserTheme(name);
        return shown ? std::string() : shown.error();
    }

    VX::Test::TempConfig config_;
};

TEST_F(ColorThemeTests, IsDarkAtFirst)
{
    EXPECT_EQ(ColorTheme::getType(), ColorTheme::Type::Preset);
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Dark);
    EXPECT_EQ(colorOf(UI::color(UI::Color::Window)), (Color{0x1E, 0x21, 0x26}));
}

TEST_F(ColorThemeTests, ChangesAllColorsWithThePreset)
{
    ColorTheme::setupDefaultLight();
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
    EXPECT_EQ(colorOf(UI::color(UI::Color::Panel)), (Color{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(colorOf(RibbonColor::Text), (Color{0x1C, 0x1F, 0x23}));
    EXPECT_EQ(ColorTheme::viewportTop(), (Color{0xF2, 0xF4, 0xF7}));
    EXPECT_EQ(ColorTheme::viewportBottom(), (Color{0xD9, 0xDE, 0xE5}));
}

TEST_F(ColorThemeTests, NamesItsPresets)
{
    EXPECT_EQ(ColorTheme::getPresetName(ColorTheme::Preset::Dark), "Dark");
    EXPECT_EQ(ColorTheme::getPresetName(ColorTheme::Preset::Light), "Light");
}

TEST_F(ColorThemeTests, KnowsTheRibbonsColorsByTheirNumbers)
{
    EXPECT_EQ(ColorTheme::getRibbonColor(2), UI::color(UI::Color::Panel));
    EXPECT_EQ(ColorTheme::getRibbonColor(13), UI::color(UI::Color::Text));
    EXPECT_EQ(ColorTheme::getRibbonColor(14), ColorTheme::getRibbonColor(RibbonColor::Icon));
}

TEST_F(ColorThemeTests, GivesTheTextColorForARibbonColorThatIsNotThere)
{
    EXPECT_EQ(ColorTheme::getRibbonColor(-1), UI::color(UI::Color::Text));
    EXPECT_EQ(ColorTheme::getRibbonColor(1000), UI::color(UI::Color::Text));
}

TEST_F(ColorThemeTests, TellsOfAChangeOnceTheColorsHaveChanged)
{
    std::vector<Color> seen;
    const boost::signals2::scoped_connection connection =
        ColorTheme::onChanged([&] { seen.push_back(ColorTheme::viewportTop()); });
    ColorTheme::setupDefaultLight();
    EXPECT_THAT(seen, testing::ElementsAre(Color{0xF2, 0xF4, 0xF7}));
}

TEST_F(ColorThemeTests, TellsNothingWhenNothingChanges)
{
    int changes = 0;
    const boost::signals2::scoped_connection connection = ColorTheme::onChanged([&] { ++changes; });
    ColorTheme::setupDefaultDark();
    ColorTheme::restore();
    EXPECT_EQ(changes, 0);
}

TEST_F(ColorThemeTests, RestoresThePresetThatWasChosen)
{
    ColorTheme::setupDefaultLight();
    const Json::Value chosen = Config::instance().getJson("theme", Json::nullValue);
    ColorTheme::setupDefaultDark();
    Config::instance().setJson("theme", chosen);
    ColorTheme::restore();
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
}

TEST_F(ColorThemeTests, FindsTheFilesOfTheUsersThemes)
{
    writeTheme("Sunset", "{}");
    writeTheme("Forest", "{}");
    std::ofstream(getUserConfigDir() / "themes" / "notes.txt") << "nothing";
    std::filesystem::create_directory(getUserConfigDir() / "themes" / "folder.json");
    ColorTheme::updateUserThemesList();
    EXPECT_THAT(ColorTheme::foundUserThemes(), testing::ElementsAre("Forest", "Sunset"));
}

TEST_F(ColorThemeTests, FindsNoThemesWithoutTheirFolder)
{
    ColorTheme::updateUserThemesList();
    EXPECT_THAT(ColorTheme::foundUserThemes(), testing::IsEmpty());
}

TEST_F(ColorThemeTests, TakesAUsersColorsAndThePresetsForTheOthers)
{
    writeTheme("Paper", R"({"base": "light", "colors": {"window": "#102030", "selectedFaces": "#0a0B0c"}})");
    EXPECT_EQ(errorOf("Paper"), "");
    EXPECT_EQ(ColorTheme::getType(), ColorTheme::Type::User);
    EXPECT_EQ(ColorTheme::getUserThemeName(), "Paper");
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
    EXPECT_EQ(colorOf(UI::color(UI::Color::Window)), (Color{0x10, 0x20, 0x30}));
    EXPECT_EQ(ColorTheme::selectedFaces(), (Color{0x0A, 0x0B, 0x0C}));
    EXPECT_EQ(colorOf(UI::color(UI::Color::Panel)), (Color{0xFF, 0xFF, 0xFF}));
}

TEST_F(ColorThemeTests, RestoresTheUsersThemeThatWasChosen)
{
    writeTheme("Paper", R"({"base": "light", "colors": {}})");
    EXPECT_EQ(errorOf("Paper"), "");
    const Json::Value chosen = Config::instance().getJson("theme", Json::nullValue);
    ColorTheme::setupDefaultDark();
    Config::instance().setJson("theme", chosen);
    ColorTheme::restore();
    EXPECT_EQ(ColorTheme::getUserThemeName(), "Paper");
}

TEST_F(ColorThemeTests, RestoresTheDarkPresetWhereTheUsersThemeIsGone)
{
    Json::Value chosen;
    chosen["user"] = "Gone";
    Config::instance().setJson("theme", chosen);
    const VX::Test::LogCapture log;
    ColorTheme::restore();
    EXPECT_EQ(ColorTheme::getType(), ColorTheme::Type::Preset);
    EXPECT_THAT(log.texts(spdlog::level::warn),
                testing::ElementsAre("The color theme that was chosen last cannot be used: the dark one is shown."));
}

TEST_F(ColorThemeTests, PutsUpWithAStoredChoiceOfTheWrongType)
{
    for (const Json::Value& wrong : {Json::Value(3), Json::Value("light"), Json::Value(Json::arrayValue)})
    {
        Config::instance().setJson("theme", wrong);
        ColorTheme::restore();
        EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Dark) << wrong.type();
    }
}

struct DamagedTheme
{
    const char* text;
    const char* problem;
};

class ColorThemeDamageTests : public ColorThemeTests, public testing::WithParamInterface<DamagedTheme>
{
};

TEST_P(ColorThemeDamageTests, SaysWhatIsWrongAndKeepsTheColors)
{
    ColorTheme::setupDefaultLight();
    writeTheme("Broken", GetParam().text);
    EXPECT_EQ(errorOf("Broken"), std::string("Cannot use the theme \"Broken\": ") + GetParam().problem);
    EXPECT_EQ(ColorTheme::getType(), ColorTheme::Type::Preset);
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
}

INSTANTIATE_TEST_SUITE_P(
    Files, ColorThemeDamageTests,
    testing::Values(
        DamagedTheme{"[]", "its file holds no JSON object."},
        DamagedTheme{R"({"base": "blue", "colors": {}})", R"("base" is neither "dark" nor "light".)"},
        DamagedTheme{R"({"base": 1, "colors": {}})", R"("base" is neither "dark" nor "light".)"},
        DamagedTheme{"{}", R"("colors" is missing or no object.)"},
        DamagedTheme{R"({"colors": []})", R"("colors" is missing or no object.)"},
        DamagedTheme{R"({"colors": {"wall": "#000000"}})", R"(there is no color "wall".)"},
        DamagedTheme{R"({"colors": {"text": "red"}})", R"(the color "text" is not of the form "#RRGGBB".)"},
        DamagedTheme{R"({"colors": {"text": "#12345"}})", R"(the color "text" is not of the form "#RRGGBB".)"},
        DamagedTheme{R"({"colors": {"text": "#12345G"}})", R"(the color "text" is not of the form "#RRGGBB".)"},
        DamagedTheme{R"({"colors": {"text": "#-12345"}})", R"(the color "text" is not of the form "#RRGGBB".)"},
        DamagedTheme{R"({"colors": {"text": 0}})", R"(the color "text" is not of the form "#RRGGBB".)"}));

TEST_F(ColorThemeTests, SaysWhereAFileIsNoJson)
{
    writeTheme("Broken", "{\n  \"colors\": oops\n}");
    EXPECT_THAT(errorOf("Broken"), testing::StartsWith("Cannot use the theme \"Broken\": Cannot read \"Broken.json\": "
                                                       "line 2"));
}

TEST_F(ColorThemeTests, SaysThatAThemeIsNotThere)
{
    EXPECT_EQ(errorOf("Gone"), "Cannot use the theme \"Gone\": there is no such file in the folder of the themes.");
}

TEST_F(ColorThemeTests, ReadsNoFileOutsideTheFolder)
{
    std::ofstream(getUserConfigDir() / "outside.json") << R"({"colors": {}})";
    EXPECT_EQ(errorOf("../outside"),
              "Cannot use the theme \"../outside\": there is no such file in the folder of the themes.");
}

TEST_F(ColorThemeTests, RefusesAHugeFile)
{
    writeTheme("Huge", std::string(1'000'000, ' '));
    EXPECT_EQ(errorOf("Huge"), "Cannot use the theme \"Huge\": its file is too large.");
}

TEST_F(ColorThemeTests, LoadsTheExampleOfTheDocumentation)
{
    std::ifstream page(QX_SOURCE_DIR "/docs/user/themes.md");
    const std::string text(std::istreambuf_iterator<char>(page), {});
    const std::string opening = "```json\n";
    const std::size_t begin = text.find(opening);
    ASSERT_NE(begin, std::string::npos);
    const std::size_t from = begin + opening.size();
    writeTheme("Example", text.substr(from, text.find("```", from) - from));
    EXPECT_EQ(errorOf("Example"), "");
}

} // namespace VX
