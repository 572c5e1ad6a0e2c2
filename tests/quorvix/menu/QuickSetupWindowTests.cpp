#include "StartupFixture.h"

#include <VXMesh/UserFolders.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/Locale.h>
#include <VXViewer/UiTree.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace VX
{

namespace
{

class QuickSetupWindowTest : public VX::Test::StartupFixture
{
protected:
    void TearDown() override
    {
        Locale::set("en");
        ColorTheme::setupDefaultDark();
        StartupFixture::TearDown();
    }

    /// Starts the program for the first time. The disclaimer is done with.
    void startFirst_()
    {
        start_(roomy);
        haveSettings_();
        setDisclaimer_(0);
        askAtStart_();
    }

    [[nodiscard]] bool shows_() const { return driver_->shows(quickSetupTitle); }

    /// The lists of choices from top to bottom.
    static std::vector<UiItem> combos_()
    {
        std::vector<UiItem> all;
        std::ranges::copy_if(UiTree::instance().items(), std::back_inserter(all),
                             [](const UiItem& item) { return item.kind == UiKind::Combo; });
        return all;
    }

    /// Opens a list.
    void openCombo_(std::size_t index)
    {
        const auto all = combos_();
        ASSERT_LT(index, all.size());
        driver_->click((all[index].min + all[index].max) / 2);
        driver_->settle();
    }

    void choose_(std::size_t combo, const char* row)
    {
        openCombo_(combo);
        ASSERT_TRUE(driver_->press(row));
        driver_->settle();
    }
};

constexpr std::size_t languageCombo = 0;
constexpr std::size_t themeCombo = 1;

TEST_F(QuickSetupWindowTest, opensInTheFirstRunAndStoresThatAtOnce)
{
    startFirst_();
    EXPECT_TRUE(shows_());
    EXPECT_TRUE(driver_->shows("Quick setup"));
    EXPECT_TRUE(driver_->shows("The settings can be changed at any time in the the Settings dialog"));
    EXPECT_EQ(quickSetupVersion_(), 2);
    EXPECT_TRUE(menu_->isStartupModalShown());
}

TEST_F(QuickSetupWindowTest, staysAwayWhereItWasShown)
{
    start_(roomy);
    haveSettings_();
    viewer_().settingsManager()->saveInt("QuickSetupVersion", 2);
    setDisclaimer_(0);
    askAtStart_();
    EXPECT_FALSE(shows_());
    EXPECT_FALSE(menu_->isStartupModalShown());
}

TEST_F(QuickSetupWindowTest, opensWhereAnEarlierOneWasShown)
{
    start_(roomy);
    haveSettings_();
    viewer_().settingsManager()->saveInt("QuickSetupVersion", 1);
    askAtStart_();
    EXPECT_TRUE(shows_());
}

TEST_F(QuickSetupWindowTest, staysAwayWhenTheViewerIsLaunchedAgain)
{
    start_(roomy);
    haveSettings_(2);
    setDisclaimer_(0);
    askAtStart_();
    EXPECT_FALSE(shows_());
    EXPECT_EQ(quickSetupVersion_(), 0);
}

TEST_F(QuickSetupWindowTest, staysAwayWithoutSettings)
{
    start_(roomy);
    setDisclaimer_(0);
    askAtStart_();
    EXPECT_FALSE(shows_());
}

TEST_F(QuickSetupWindowTest, staysAwayWhereAnotherLanguageWasChosenButCountsAsShown)
{
    start_(roomy);
    haveSettings_();
    setDisclaimer_(0);
    ASSERT_TRUE(Locale::set("de"));
    askAtStart_();
    Locale::set("en");
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_EQ(quickSetupVersion_(), 2);
}

TEST_F(QuickSetupWindowTest, isNotForAWindowThatNobodySees)
{
    menu_->asksAtStart = false;
    start_(roomy);
    haveSettings_();
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_EQ(quickSetupVersion_(), 0);
}

TEST_F(QuickSetupWindowTest, opensAlsoBeforeTheSignIn)
{
    startSignedOut_(roomy);
    haveSettings_();
    askAtStart_();
    EXPECT_TRUE(shows_());
    signIn_();
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(QuickSetupWindowTest, keepsTheWelcomeCardsAway)
{
    startFirst_();
    EXPECT_FALSE(showsCards_());
    driver_->key(GLFW_KEY_ESCAPE);
    redraw_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(QuickSetupWindowTest, closesWithItsCross)
{
    startFirst_();
    ASSERT_TRUE(driver_->press("Close"));
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_FALSE(menu_->isStartupModalShown());
}

TEST_F(QuickSetupWindowTest, closesWithEscape)
{
    startFirst_();
    driver_->key(GLFW_KEY_ESCAPE);
    redraw_();
    EXPECT_FALSE(shows_());
}

TEST_F(QuickSetupWindowTest, closesWithAClickBesideIt)
{
    startFirst_();
    driver_->click({100, 700});
    redraw_();
    EXPECT_FALSE(shows_());
}

TEST_F(QuickSetupWindowTest, closesWithAnyButtonBesideIt)
{
    startFirst_();
    constexpr int right = 1;
    driver_->click({100, 700}, right);
    redraw_();
    EXPECT_FALSE(shows_());
}

TEST_F(QuickSetupWindowTest, staysOpenForAClickIntoIt)
{
    startFirst_();
    ASSERT_TRUE(driver_->press("Quick setup"));
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(QuickSetupWindowTest, staysOpenWhenEscapeClosesAList)
{
    startFirst_();
    openCombo_(themeCombo);
    ASSERT_TRUE(driver_->shows("Light"));
    driver_->key(GLFW_KEY_ESCAPE);
    redraw_();
    EXPECT_FALSE(driver_->shows("Light"));
    EXPECT_TRUE(shows_());
}

TEST_F(QuickSetupWindowTest, closesWithItsListWhenTheClickIsBesideBoth)
{
    startFirst_();
    openCombo_(themeCombo);
    driver_->click({100, 700});
    redraw_();
    EXPECT_FALSE(driver_->shows("Light"));
    EXPECT_FALSE(shows_());
}

TEST_F(QuickSetupWindowTest, setsTheLanguage)
{
    startFirst_();
    EXPECT_EQ(combos_().at(languageCombo).value, "English");
    choose_(languageCombo, "Deutsch");
    EXPECT_EQ(Locale::getName(), "de");
    EXPECT_EQ(combos_().at(languageCombo).value, "Deutsch");
    EXPECT_TRUE(menu_->isStartupModalShown());
}

TEST_F(QuickSetupWindowTest, setsAPreset)
{
    startFirst_();
    EXPECT_EQ(combos_().at(themeCombo).value, "Dark");
    choose_(themeCombo, "Light");
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
    choose_(themeCombo, "Dark");
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Dark);
}

TEST_F(QuickSetupWindowTest, setsAThemeOfTheUser)
{
    start_(roomy);
    haveSettings_();
    const auto folder = getUserConfigDir() / "themes";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Sunset.json") << R"({"colors": {}})";
    askAtStart_();
    choose_(themeCombo, "Sunset");
    EXPECT_EQ(ColorTheme::getUserThemeName(), "Sunset");
    EXPECT_EQ(combos_().at(themeCombo).value, "Sunset");
}

TEST_F(QuickSetupWindowTest, saysThatAThemeOfTheUserCannotBeUsedAndComesBackThen)
{
    start_(roomy);
    haveSettings_();
    const auto folder = getUserConfigDir() / "themes";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Broken.json") << "{";
    askAtStart_();
    choose_(themeCombo, "Broken");
    EXPECT_TRUE(driver_->shows("Error"));
    driver_->key(GLFW_KEY_ENTER);
    redraw_();
    EXPECT_FALSE(driver_->shows("Error"));
    EXPECT_TRUE(shows_());
}

TEST_F(QuickSetupWindowTest, namesAThemeThatIsGoneNotSelected)
{
    start_(roomy);
    haveSettings_();
    const auto folder = getUserConfigDir() / "themes";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Sunset.json") << R"({"colors": {}})";
    ColorTheme::updateUserThemesList();
    ASSERT_TRUE(ColorTheme::setupUserTheme("Sunset"));
    std::filesystem::remove(folder / "Sunset.json");
    askAtStart_();
    EXPECT_EQ(combos_().at(themeCombo).value, "Not selected");
}

TEST_F(QuickSetupWindowTest, isFiveHundredWideInTheMiddle)
{
    startFirst_();
    expectModal_("##quickSetupWindow", {640, 400}, 500);
    const auto languages = combos_().at(languageCombo);
    const float widestLabel = std::max(ImGui::CalcTextSize("Language").x, ImGui::CalcTextSize("Color Theme").x);
    EXPECT_NEAR(languages.min.x(), 640 - 250 + 28 + widestLabel + 16, 1);
    EXPECT_NEAR(languages.max.x(), 640 + 250 - 28, 1);
}

TEST_F(QuickSetupWindowTest, growsWithTheScale)
{
    start_({2560, 1600}, 2);
    haveSettings_();
    setDisclaimer_(0);
    askAtStart_();
    expectModal_("##quickSetupWindow", {1280, 800}, 1000);
    const auto title = driver_->find(quickSetupTitle);
    const auto close = driver_->find("Close");
    ASSERT_TRUE(title && close);
    EXPECT_NEAR(title->min.y(), 800 - 320 + 80, 1);
    EXPECT_NEAR(close->min.x(), 1280 - 500 + 910, 1);
    EXPECT_NEAR(combos_().at(languageCombo).max.x(), 1280 + 500 - 56, 1);
}

TEST_F(QuickSetupWindowTest, standsInTheMiddleInItsSize)
{
    startFirst_();
    const auto title = driver_->find(quickSetupTitle);
    const auto second = driver_->find("Quick setup");
    ASSERT_TRUE(title && second);
    EXPECT_NEAR((title->min.x() + title->max.x()) / 2, 640, 1);
    EXPECT_NEAR((second->min.x() + second->max.x()) / 2, 640, 1);
    // 320 high, the titles 40 and 95 below its top.
    EXPECT_NEAR(title->min.y(), 400 - 160 + 40, 1);
    EXPECT_NEAR(second->min.y(), 400 - 160 + 95, 1);
    const auto close = driver_->find("Close");
    ASSERT_TRUE(close);
    EXPECT_NEAR(close->min.x(), 640 - 250 + 455, 1);
    const auto footer = driver_->find("The settings can be changed at any time in the the Settings dialog");
    ASSERT_TRUE(footer);
    EXPECT_NEAR(footer->max.y(), 400 + 160 - 20, 1);
    EXPECT_TRUE((footer->visibleMax - footer->max).isZero());
}

} // namespace

} // namespace VX
