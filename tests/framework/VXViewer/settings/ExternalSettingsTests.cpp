#include "SettingsFixture.h"

namespace VX
{

using TabType = ViewerSettingsPlugin::TabType;

namespace
{

class SwitchSetting : public ViewerSettingsPlugin::ExternalSettings
{
public:
    SwitchSetting(const char* section, std::string label)
        : section_(section)
        , label_(std::move(label))
    {
    }

    const char* getName() override { return section_; }

    void draw(float scale) override
    {
        drawnScale = scale;
        UI::checkbox(label_, value);
    }

    void reset() override { value = true; }

    bool value = true;
    float drawnScale = 0;

private:
    const char* section_;
    std::string label_;
};

} // namespace

class ExternalSettingsTests : public VX::Test::SettingsFixture
{
protected:
    std::shared_ptr<SwitchSetting> add_(const char* section, const std::string& label,
                                        TabType tab = TabType::Application)
    {
        auto setting = std::make_shared<SwitchSetting>(section, label);
        settings_.addComboSettings(tab, setting);
        return setting;
    }
};

TEST_F(ExternalSettingsTests, StandUnderTheNameOfTheirSection)
{
    const auto setting = add_("Behavior", "Collect Usage Statistics");
    add_("Behavior", "Another");
    open_();
    EXPECT_EQ(UiTree::instance().find("Behavior", "Settings").size(), 1U);
    EXPECT_TRUE(driver_.shows("Another", "Settings"));
    EXPECT_EQ(setting->drawnScale, UI::scale());
    driver_.press("Collect Usage Statistics", "Settings");
    EXPECT_FALSE(setting->value);
}

TEST_F(ExternalSettingsTests, NeedNoHeadlineThatTheirFirstWidgetRepeats)
{
    add_("Show Welcome Window", "Show Welcome Window");
    open_();
    EXPECT_EQ(UiTree::instance().find("Show Welcome Window", "Settings").size(), 1U);
}

TEST_F(ExternalSettingsTests, AreResetWithTheirTab)
{
    const auto here = add_("Behavior", "Here");
    const auto elsewhere = add_("Behavior", "Elsewhere", TabType::View);
    here->value = elsewhere->value = false;
    open_();
    driver_.press("Reset This Tab", "Settings");
    EXPECT_TRUE(here->value);
    EXPECT_FALSE(elsewhere->value);
    driver_.press("Reset All", "Settings");
    EXPECT_TRUE(elsewhere->value);
}

TEST_F(ExternalSettingsTests, MakeATabAppear)
{
    add_("Behavior", "Something", TabType::Quick);
    open_(TabType::Quick);
    EXPECT_EQ(settings_.activeTab(), TabType::Quick);
    EXPECT_TRUE(driver_.shows("Something", "Settings"));
}

TEST_F(ExternalSettingsTests, AreAddedOnceAndCanBeTakenAway)
{
    const auto setting = add_("Behavior", "Once");
    settings_.addComboSettings(TabType::Application, setting);
    open_();
    EXPECT_EQ(UiTree::instance().find("Once", "Settings").size(), 1U);
    settings_.removeSettings(setting);
    viewer_.incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_FALSE(driver_.shows("Once", "Settings"));
}

TEST_F(ExternalSettingsTests, GoWithTheInterface)
{
    const auto setting = add_("Behavior", "Once");
    viewer_.stopUi();
    EXPECT_EQ(setting.use_count(), 1);
}

} // namespace VX
