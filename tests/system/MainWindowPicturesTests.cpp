#include "tests/support/ui/ImageCompare.h"
#include "tests/system/ProgramRun.h"

#include <VXViewer/ImageFile.h>

#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

namespace VX
{

namespace
{

/// How the window is shown: theme, language, the scale in per cent, the size in pixels.
using Look = std::tuple<std::string, std::string, int, std::string>;

std::string nameOf(const Look& look)
{
    const auto& [theme, language, percent, size] = look;
    return theme + "-" + language + "-" + std::to_string(percent) + "-" + size;
}

std::string testNameOf(const testing::TestParamInfo<Look>& look)
{
    std::string name = nameOf(look.param);
    std::erase(name, '-');
    return name;
}

class MainWindowPictures : public testing::TestWithParam<Look>
{
protected:
    MainWindowPictures()
    {
        const auto& [theme, language, percent, size] = GetParam();
        Json::Value config;
        config["theme"]["preset"] = theme;
        config["viewer"]["language"] = language;
        config["viewer"]["UIScalePercent"] = percent;
        const auto folder = program_.userFolder().path() / "config" / "Quorvix";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "config.json") << config;
    }

    VX::Test::ProgramRun program_;
};

} // namespace

TEST_P(MainWindowPictures, LookAsTheyDidWhenTheyWereJudged)
{
    const auto file = program_.folder().path() / "window.png";
    const auto result = program_.run({std::string(QX_SOURCE_DIR) + "/samples/bearing-block.step", "-windowShot",
                                      file.string(), "-size", std::get<3>(GetParam())});
    ASSERT_EQ(result.status, 0) << result.errors;
    const auto picture = readPng(file);
    ASSERT_TRUE(picture) << picture.error();
    EXPECT_TRUE(VX::Test::matchesReference(*picture, QX_SOURCE_DIR "/docs/user/pictures/" + nameOf(GetParam()) + ".png",
                                           QX_TEST_OUTPUT_DIR));
}

INSTANTIATE_TEST_SUITE_P(Of, MainWindowPictures,
                         testing::Combine(testing::Values("dark", "light"), testing::Values("en", "de"),
                                          testing::Values(100, 200), testing::Values("1280x800", "800x600")),
                         testNameOf);

INSTANTIATE_TEST_SUITE_P(InMoreLanguages, MainWindowPictures,
                         testing::Combine(testing::Values("light"), testing::Values("fr", "ja", "zh_CN"),
                                          testing::Values(100, 200), testing::Values("800x600")),
                         testNameOf);

} // namespace VX
