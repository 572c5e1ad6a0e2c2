#include "NotificationSettings.h"
#include "SettingRow.h"
#include "SettingsKeys.h"
#include "SettingsPage.h"
#include "menu/Translate.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Locale.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace VX
{

namespace
{

constexpr int usualPercent = 100;
constexpr std::array scales{75, 90, 100, 110, 125, 150, 175, 200, 250, 300};

std::string percentText(int percent)
{
    return fmt::format("{} %", percent);
}

class ApplicationSettings final : public SettingsPage
{
public:
    void draw(Viewer& viewer) override
    {
        settingSection(tr("Appearance"));
        drawLanguage_();
        drawTheme_(viewer);
        drawScale_(viewer);
        drawNotificationSettings(viewer);
    }

    void reset(Viewer& viewer) override
    {
        Locale::set("en");
        ColorTheme::setupDefaultDark();
        setScale_(viewer, usualPercent);
        resetNotificationSettings(viewer);
    }

private:
    static void drawLanguage_()
    {
        const std::vector<std::string> languages = Locale::getAvailableLocales();
        std::vector<std::string> names;
        std::transform(languages.begin(), languages.end(), std::back_inserter(names), Locale::getDisplayName);
        const auto used = std::find(languages.begin(), languages.end(), Locale::getName());
        auto current = static_cast<int>(used - languages.begin());
        const bool isDefault = current == 0;
        std::string chosen;
        const bool reset = settingRow(tr("Language"), {}, isDefault,
                                      [&]
                                      {
                                          if (UI::combo("##value", current, names))
                                              chosen = languages[static_cast<std::size_t>(current)];
                                      });
        // Last: the row has to end with the text it began with.
        if (reset || !chosen.empty())
            Locale::set(reset ? languages.front() : chosen);
    }

    void drawTheme_(Viewer& viewer)
    {
        const std::vector<std::string>& userThemes = ColorTheme::foundUserThemes();
        std::vector<std::string> names{tr("Dark"), tr("Light")};
        const auto presetCount = static_cast<int>(names.size());
        names.insert(names.end(), userThemes.begin(), userThemes.end());
        const bool isUser = ColorTheme::getType() == ColorTheme::Type::User;
        const auto found = std::find(userThemes.begin(), userThemes.end(), ColorTheme::getUserThemeName());
        int current = isUser ? presetCount + static_cast<int>(found - userThemes.begin())
                             : static_cast<int>(ColorTheme::getPreset());
        int chosen = -1;
        const bool reset = settingRow(tr("Color Theme"), {}, current == 0,
                                      [&]
                                      {
                                          if (UI::combo("##value", current, names))
                                              chosen = current;
                                      });
        if (reset || chosen == 0)
            ColorTheme::setupDefaultDark();
        else if (chosen == 1)
            ColorTheme::setupDefaultLight();
        else if (chosen > 1)
            takeUserTheme_(viewer, userThemes[static_cast<std::size_t>(chosen - presetCount)]);
    }

    static void takeUserTheme_(const Viewer& viewer, const std::string& name)
    {
        const auto taken = ColorTheme::setupUserTheme(name);
        if (!taken && viewer.getMenuPlugin())
            viewer.getMenuPlugin()->showModalMessage(taken.error(), NotificationType::Error);
    }

    static void drawScale_(Viewer& viewer)
    {
        const auto percent = static_cast<int>(std::lround(UI::userScale() * 100));
        std::vector<int> choices(scales.begin(), scales.end());
        const auto place = std::lower_bound(choices.begin(), choices.end(), percent);
        auto current = static_cast<int>(place - choices.begin());
        if (place == choices.end() || *place != percent)
            choices.insert(place, percent);
        std::vector<std::string> names;
        std::transform(choices.begin(), choices.end(), std::back_inserter(names), percentText);
        int chosen = percent;
        const bool reset =
            settingRow(tr("Interface Scale"), tr("On top of the scale of the screen"), percent == usualPercent,
                       [&]
                       {
                           if (UI::combo("##value", current, names))
                               chosen = choices[static_cast<std::size_t>(current)];
                       });
        if (reset || chosen != percent)
            setScale_(viewer, reset ? usualPercent : chosen);
    }

    static void setScale_(const Viewer& viewer, int percent)
    {
        UI::setUserScale(static_cast<float>(percent) / 100);
        if (viewer.settingsManager())
            viewer.settingsManager()->saveInt(SettingsKey::uiScalePercent, percent);
    }
};

} // namespace

std::unique_ptr<SettingsPage> makeApplicationSettings()
{
    return std::make_unique<ApplicationSettings>();
}

} // namespace VX
