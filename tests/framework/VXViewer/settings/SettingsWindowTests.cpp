#include "SettingsFixture.h"

#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ShortcutManager.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

namespace VX
{

using TabType = ViewerSettingsPlugin::TabType;

class SettingsWindowTests : public VX::Test::SettingsFixture
{
protected:
    void choose_(const std::string& setting, const std::string& choice)
    {
        ASSERT_TRUE(driver_.press(setting, "Settings"));
        ASSERT_TRUE(driver_.press(choice));
        driver_.settle();
    }

    static bool isWholeSideways_(const UiItem& item)
    {
        return item.visibleMin.x() <= item.min.x() && item.visibleMax.x() >= item.max.x();
    }
};

TEST_F(SettingsWindowTests, OpensAndClosesWithItsItem)
{
    EXPECT_EQ(settings_.name(), "Viewer settings");
    settings_.press();
    driver_.settle();
    EXPECT_TRUE(settings_.isActive());
    EXPECT_TRUE(UiTree::instance().hasWindow("Settings"));
    settings_.press();
    driver_.settle();
    EXPECT_FALSE(UiTree::instance().hasWindow("Settings"));
}

TEST_F(SettingsWindowTests, ClosesWithItsButtonAndWithEscape)
{
    open_();
    driver_.press("Close", "Settings");
    EXPECT_FALSE(settings_.isEnabled());
    open_();
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(settings_.isEnabled());
}

TEST_F(SettingsWindowTests, TakesEscapeFromTheShortcuts)
{
    bool fired = false;
    menu_->shortcutManager()->set({{GLFW_KEY_ESCAPE, 0}, "Test", ShortcutCategory::Info, [&] { fired = true; }});
    open_();
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(fired);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_TRUE(fired);
}

TEST_F(SettingsWindowTests, FitsIntoASmallWindowAtTwiceTheSize)
{
    session_.window().setFramebufferSize({800, 600});
    session_.window().setContentScale(2);
    open_();
    const UiItem window = UiTree::instance().find("Settings").front();
    EXPECT_GE(window.min.minCoeff(), 0);
    EXPECT_LE(window.max.x(), 800);
    EXPECT_LE(window.max.y(), 600);
    EXPECT_EQ(driver_.obstacle("Reset All", "Settings"), "");
    driver_.press("View", "Settings");
    driver_.scroll({400, 350}, -20);
    driver_.settle();
    EXPECT_EQ(driver_.obstacle("Smoothing", "Settings"), "");
}

TEST_F(SettingsWindowTests, FitsIntoASmallWindowInEveryLanguage)
{
    session_.window().setFramebufferSize({800, 600});
    session_.window().setContentScale(2);
    for (const std::string& language : Locale::getAvailableLocales())
    {
        Locale::set(language);
        for (const TabType tab : {TabType::Application, TabType::View})
        {
            open_(tab);
            for (const UiItem& item : UiTree::instance().items())
                EXPECT_TRUE(!item.isVisible() || isWholeSideways_(item)) << language << ": " << item.label;
        }
    }
}

TEST_F(SettingsWindowTests, EverySettingIsReachedWithTheKeyboard)
{
    const auto pressAfterTabs = [&](int tabs)
    {
        settings_.setEnabled(false);
        driver_.settle();
        open_(TabType::View);
        for (int i = 0; i < tabs; ++i)
            driver_.key(GLFW_KEY_TAB);
        driver_.key(GLFW_KEY_SPACE);
        driver_.key(GLFW_KEY_ESCAPE);
    };
    for (int tabs = 1; tabs < 12 && viewer_.view().options().featureEdges; ++tabs)
        pressAfterTabs(tabs);
    EXPECT_FALSE(viewer_.view().options().featureEdges);
}

TEST_F(SettingsWindowTests, ShowsTheTabThatIsAskedFor)
{
    EXPECT_EQ(static_cast<int>(TabType::Application), 1);
    open_(TabType::View);
    EXPECT_TRUE(driver_.shows("Edges", "Settings"));
    EXPECT_FALSE(driver_.shows("Language", "Settings"));
    settings_.setActiveTab(TabType::Application);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Language", "Settings"));
}

TEST_F(SettingsWindowTests, ShowsATabOnlyWithSomethingOnIt)
{
    open_(TabType::Quick);
    EXPECT_FALSE(driver_.shows("Quick", "Settings"));
    EXPECT_EQ(settings_.activeTab(), TabType::Application);
}

TEST_F(SettingsWindowTests, KeepsTheTabThatIsPressed)
{
    open_();
    driver_.press("View", "Settings");
    EXPECT_EQ(settings_.activeTab(), TabType::View);
    EXPECT_TRUE(driver_.shows("Edges", "Settings"));
}

TEST_F(SettingsWindowTests, ChangesTheLanguageAtOnceAndKeepsIt)
{
    open_();
    choose_("Language", "Deutsch");
    EXPECT_EQ(Locale::getName(), "de");
    EXPECT_TRUE(driver_.shows("Sprache", "Einstellungen"));
    EXPECT_EQ(viewer_.settingsManager()->loadString("language", ""), "de");
}

TEST_F(SettingsWindowTests, ChangesTheLanguageBackAndForth)
{
    open_();
    std::string window = "Settings";
    std::string setting = "Language";
    for (const auto& [language, nextWindow, nextSetting] :
         {std::tuple("简体中文", "设置", "语言"), std::tuple("Français", "Paramètres", "Langue"),
          std::tuple("日本語", "設定", "言語"), std::tuple("English", "Settings", "Language"),
          std::tuple("日本語", "設定", "言語")})
    {
        ASSERT_TRUE(driver_.press(setting, window));
        ASSERT_TRUE(driver_.press(language));
        driver_.settle();
        window = nextWindow;
        setting = nextSetting;
        EXPECT_TRUE(driver_.shows(setting, window)) << language;
    }
}

TEST_F(SettingsWindowTests, ChangesTheThemeAtOnce)
{
    open_();
    choose_("Color Theme", "Light");
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
}

TEST_F(SettingsWindowTests, ChangesTheSizeOfTheInterfaceAndKeepsIt)
{
    open_();
    const float before = UI::scale();
    choose_("Interface Scale", "150 %");
    EXPECT_FLOAT_EQ(UI::scale(), before * 1.5F);
    EXPECT_EQ(viewer_.settingsManager()->loadInt("UIScalePercent", 0), 150);
}

TEST_F(SettingsWindowTests, OffersTheButtonOfASettingOnlyWhereItIsNotTheDefault)
{
    open_();
    EXPECT_FALSE(driver_.shows("Reset \"Color Theme\""));
    choose_("Color Theme", "Light");
    ASSERT_TRUE(driver_.press("Reset \"Color Theme\""));
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Dark);
    EXPECT_FALSE(driver_.shows("Reset \"Color Theme\""));
}

TEST_F(SettingsWindowTests, ChangesHowTheSceneIsDrawn)
{
    open_(TabType::View);
    driver_.press("Edges", "Settings");
    EXPECT_FALSE(viewer_.view().options().featureEdges);
    driver_.press("View Cube", "Settings");
    EXPECT_TRUE(viewer_.cornerController()->enabledIn().isEmpty());
    choose_("Smoothing", "4x");
    EXPECT_EQ(viewer_.view().options().samples, 4);
    choose_("Projection", "Orthographic");
    EXPECT_EQ(viewer_.view().camera().projection(), Projection::Orthographic);
}

TEST_F(SettingsWindowTests, ResetsTheTabThatIsShownAndNoOther)
{
    ColorTheme::setupDefaultLight();
    viewer_.view().options().featureEdges = false;
    open_(TabType::View);
    driver_.press("Reset This Tab", "Settings");
    EXPECT_TRUE(viewer_.view().options().featureEdges);
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
}

TEST_F(SettingsWindowTests, ResetsEverything)
{
    ColorTheme::setupDefaultLight();
    viewer_.view().options().featureEdges = false;
    open_();
    choose_("Language", "Deutsch");
    driver_.press("Alles zurücksetzen", "Einstellungen");
    EXPECT_EQ(Locale::getName(), "en");
    EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Dark);
    EXPECT_TRUE(viewer_.view().options().featureEdges);
}

TEST_F(SettingsWindowTests, BringsStoredSettingsBackAtTheNextStart)
{
    open_(TabType::View);
    driver_.press("Edges", "Settings");
    open_();
    choose_("Interface Scale", "125 %");
    choose_("Language", "Deutsch");
    viewer_.settingsManager()->saveString("language", "de");
    viewer_.setSettingsManager(nullptr);
    Locale::set("en");
    UI::setUserScale(1);
    viewer_.view().options().featureEdges = true;

    ViewerSettingsManager().loadSettings(viewer_);
    EXPECT_EQ(Locale::getName(), "de");
    EXPECT_FLOAT_EQ(UI::userScale(), 1.25F);
    EXPECT_FALSE(viewer_.view().options().featureEdges);
}

} // namespace VX
