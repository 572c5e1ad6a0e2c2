#include "GalleryMenu.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/Locale.h>
#include <VXViewer/RibbonFontManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>

#include <fstream>

namespace VX
{

namespace
{

using Slot = RibbonFontManager::Slot;

std::size_t indexOf(Slot slot)
{
    return static_cast<std::size_t>(slot);
}

float widthOf(const char* text, UI::Font font)
{
    const ImFont* drawn = UI::font(font);
    return drawn->CalcTextSizeA(drawn->FontSize, FLT_MAX, 0, text).x;
}

bool hasSign(UI::Font font, ImWchar sign)
{
    return UI::font(font)->FindGlyphNoFallback(sign) != nullptr;
}

constexpr ImWchar chineseSign = 0x4E2D; // 中

} // namespace

class FontTests : public testing::Test
{
protected:
    std::shared_ptr<VX::Test::GalleryMenu> menu_ = std::make_shared<VX::Test::GalleryMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
    RibbonFontManager manager_;
};

TEST_F(FontTests, HaveTheirSizes)
{
    EXPECT_GT(UI::font(UI::Font::Headline)->FontSize, UI::font(UI::Font::Regular)->FontSize);
    EXPECT_LT(UI::font(UI::Font::Small)->FontSize, UI::font(UI::Font::Regular)->FontSize);
    EXPECT_EQ(UI::font(UI::Font::SemiBold)->FontSize, UI::font(UI::Font::Regular)->FontSize);
    EXPECT_GT(widthOf("Export", UI::Font::SemiBold), widthOf("Export", UI::Font::Regular));
    EXPECT_EQ(widthOf("iii", UI::Font::Monospace), widthOf("WWW", UI::Font::Monospace));
}

TEST_F(FontTests, AreReplacedWhileTheProgramRuns)
{
    RibbonFontManager::Paths paths = manager_.getCurrentFontPaths();
    const float before = widthOf("Export", UI::Font::Regular);
    paths[indexOf(Slot::Regular)] = paths[indexOf(Slot::Monospace)];
    manager_.setNewFontPaths(paths);
    driver_.settle();
    EXPECT_EQ(manager_.getCurrentFontPaths(), paths);
    EXPECT_NE(widthOf("Export", UI::Font::Regular), before);
    EXPECT_EQ(widthOf("iii", UI::Font::Regular), widthOf("WWW", UI::Font::Regular));
}

TEST_F(FontTests, AFileThatIsNoFontIsStoodInFor)
{
    const VX::Test::TempDir folder;
    const std::filesystem::path file = folder.path() / "broken.ttf";
    std::ofstream(file) << "no font";
    const float before = widthOf("Export", UI::Font::Regular);
    RibbonFontManager::Paths paths = manager_.getCurrentFontPaths();
    paths[indexOf(Slot::Regular)] = file;
    paths[indexOf(Slot::SemiBold)] = folder.path() / "missing.ttf";
    const VX::Test::LogCapture log;
    manager_.setNewFontPaths(paths);
    driver_.settle();
    EXPECT_EQ(widthOf("Export", UI::Font::Regular), before);
    EXPECT_THAT(log.texts(spdlog::level::warn),
                testing::Contains("A font that was set cannot be used: the one of the program stands in."));
}

TEST_F(FontTests, LoadChineseSignsOnlyWhenATextHasThem)
{
    EXPECT_FALSE(hasSign(UI::Font::Regular, chineseSign));
    menu_->name = "中文";
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    for (const UI::Font font : {UI::Font::Regular, UI::Font::SemiBold, UI::Font::Headline, UI::Font::Small})
        EXPECT_TRUE(hasSign(font, chineseSign));
}

TEST_F(FontTests, HaveTheSignsOfTheLanguageInUse)
{
    constexpr ImWchar japaneseSign = 0x3092; // を
    ASSERT_TRUE(Locale::set("zh_CN"));
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_FALSE(hasSign(UI::Font::Regular, japaneseSign));
    for (const UI::Font font : {UI::Font::Regular, UI::Font::SemiBold, UI::Font::Headline, UI::Font::Small})
        EXPECT_TRUE(hasSign(font, chineseSign));
    ASSERT_TRUE(Locale::set("ja"));
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_TRUE(hasSign(UI::Font::Regular, japaneseSign));
    Locale::set("en");
}

TEST_F(FontTests, AskForASignThatNoFontHasOnlyOnce)
{
    menu_->name = "\U00012000";
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_EQ(driver_.find("Name")->value, menu_->name);
}

TEST_F(FontTests, LoadSignsOfTextThatIsDrawnWithoutWidgets)
{
    UI::needGlyphs("\xFF not UTF-8, then Ω and 中");
    session_.viewer().incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_TRUE(hasSign(UI::Font::Regular, chineseSign));
}

TEST_F(FontTests, GrowWithTheUsersScale)
{
    const float before = UI::font(UI::Font::Regular)->FontSize;
    UI::setUserScale(2);
    driver_.settle();
    EXPECT_EQ(UI::scale(), 2);
    EXPECT_NEAR(UI::font(UI::Font::Regular)->FontSize, 2 * before, 1);
    UI::setUserScale(1);
}

TEST_F(FontTests, TheUsersScaleIsMultipliedWithTheWindows)
{
    session_.window().setContentScale(1.5F);
    UI::setUserScale(2);
    driver_.settle();
    EXPECT_EQ(UI::scale(), 3);
    UI::setUserScale(1);
}

TEST_F(FontTests, TheUsersScaleIsBroughtIntoItsRange)
{
    UI::setUserScale(0.1F);
    EXPECT_EQ(UI::userScale(), 0.75F);
    UI::setUserScale(100);
    EXPECT_EQ(UI::userScale(), 3);
    UI::setUserScale(1);
}

} // namespace VX
