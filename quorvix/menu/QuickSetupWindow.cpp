#include <quorvix/menu/QuickSetupWindow.h>
#include <quorvix/setup/Translate.h>

#include <VXViewer/ColorTheme.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Locale.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <imgui_internal.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr const char* versionKey = "QuickSetupVersion";
constexpr int currentVersion = 2;

// Units of the design.
constexpr ImVec2 size{500, 320};
constexpr ImVec2 exitButton{455, 16};
constexpr float greetingTop = 40;
constexpr float titleTop = 95;
constexpr float listPadding = 8;
constexpr float comboGap = 16; ///< right of the labels
constexpr float leastCombo = 200;
constexpr float footerMargin = 56;
constexpr float footerFromBottom = 20;

constexpr const char* languageLabel = translatable("Language");
constexpr const char* themeLabel = translatable("Color Theme");
constexpr const char* labelWithoutRow = translatable("Rotate With");
constexpr std::array labels{languageLabel, themeLabel, labelWithoutRow};

constexpr std::array presets{ColorTheme::Preset::Dark, ColorTheme::Preset::Light};

/// Begins a row with its label; the combo box comes next. @return its left edge
float comboLeft()
{
    float widest = 0;
    for (const char* label : labels)
    {
        if (std::string_view(label) != labelWithoutRow)
            widest = std::max(widest, ImGui::CalcTextSize(Product::tr(label).c_str()).x);
    }
    return ImGui::GetStyle().WindowPadding.x + widest + UI::px(comboGap);
}

/// A row of a label and a list of choices. @return true when another one was chosen
bool choiceRow(const char* label, const char* name, int& current, const std::vector<std::string>& choices)
{
    const float left = comboLeft();
    ImGui::AlignTextToFramePadding();
    UI::text(Product::tr(label));
    ImGui::SameLine(left);
    ImGui::SetNextItemWidth(std::max(ImGui::GetContentRegionAvail().x, UI::px(leastCombo)));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(listPadding), UI::px(listPadding)));
    const bool changed = UI::combo(name, current, choices);
    ImGui::PopStyleVar();
    return changed;
}

} // namespace

void QuickSetupWindow::openIfDue(const Viewer& viewer)
{
    if (!std::exchange(pending_, false))
        return;
    const ViewerSettingsManager* settings = viewer.settingsManager();
    if (viewer.launchCount() > 1 || !settings || settings->loadInt(versionKey, 0) >= currentVersion)
        return;
    // At once, so that whatever ends the program does not bring the window back.
    settings->saveInt(versionKey, currentVersion);
    if (Locale::getName() != "en")
        return;
    ColorTheme::updateUserThemesList();
    modal_.open();
}

void QuickSetupWindow::draw()
{
    if (!modal_.begin(size, StartupModal::Width::Content))
        return;
    const bool exitPressed = drawExitButton_();
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        StartupModal::centeredText(Product::tr("Getting started with Quorvix"), greetingTop);
        StartupModal::centeredText(Product::tr("Quick setup"), titleTop);
    }
    drawLanguage_();
    drawTheme_();
    drawFooter_();
    if (isClosedByUser_() || exitPressed)
        modal_.close();
    StartupModal::end();
}

bool QuickSetupWindow::drawExitButton_()
{
    // It reaches into the padding of the window, which is not to grow for it.
    ImVec2& extent = ImGui::GetCurrentWindow()->DC.CursorMaxPos;
    const ImVec2 before = extent;
    ImGui::SetCursorPos({UI::px(exitButton.x), UI::px(exitButton.y)});
    const bool pressed = ImGui::ModalExitButton();
    extent = before;
    return pressed;
}

void QuickSetupWindow::drawLanguage_()
{
    const std::vector<std::string> languages = Locale::getAvailableLocales();
    std::vector<std::string> names;
    std::ranges::transform(languages, std::back_inserter(names), Locale::getDisplayName);
    auto current = static_cast<int>(std::ranges::find(languages, Locale::getName()) - languages.begin());
    if (choiceRow(languageLabel, "##Language", current, names))
        Locale::set(languages[static_cast<std::size_t>(current)]);
}

void QuickSetupWindow::drawTheme_()
{
    const std::vector<std::string>& userThemes = ColorTheme::foundUserThemes();
    std::vector<std::string> names;
    names.reserve(presets.size() + userThemes.size());
    for (const ColorTheme::Preset preset : presets)
        names.push_back(Locale::translate(ColorTheme::getPresetName(preset)));
    names.insert(names.end(), userThemes.begin(), userThemes.end());
    const auto found = std::ranges::find(userThemes, ColorTheme::getUserThemeName()) - userThemes.begin();
    int current = ColorTheme::getType() == ColorTheme::Type::User
                      ? static_cast<int>(presets.size()) + static_cast<int>(found)
                      : static_cast<int>(ColorTheme::getPreset());
    if (!choiceRow(themeLabel, "##ThemeName", current, names))
        return;
    if (current == static_cast<int>(ColorTheme::Preset::Dark))
    {
        ColorTheme::setupDefaultDark();
        return;
    }
    if (current == static_cast<int>(ColorTheme::Preset::Light))
    {
        ColorTheme::setupDefaultLight();
        return;
    }
    const auto taken = ColorTheme::setupUserTheme(names[static_cast<std::size_t>(current)]);
    if (const auto& menu = getViewerInstance().getMenuPlugin(); !taken && menu)
        menu->showModalMessage(taken.error(), NotificationType::Error);
}

void QuickSetupWindow::drawFooter_()
{
    const std::string text = Product::tr("The settings can be changed at any time in the the Settings dialog");
    const ImVec2 window = ImGui::GetWindowSize();
    const float width = window.x - UI::px(footerMargin);
    const ImVec2 textSize = ImGui::CalcTextSize(text.c_str(), nullptr, false, width);
    ImGui::SetCursorPos(
        {std::round((window.x - textSize.x) / 2), std::round(window.y - UI::px(footerFromBottom) - textSize.y)});
    ImGui::PushTextWrapPos(ImGui::GetCursorPosX() + width);
    UI::secondaryText(text);
    ImGui::PopTextWrapPos();
}

bool QuickSetupWindow::isClosedByUser_()
{
    const bool listWasOpen = std::exchange(listOpen_, ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId));
    if (ImGui::IsKeyPressed(ImGuiKey_Escape, false))
        return !listWasOpen;
    // An open list belongs to the window.
    return std::ranges::any_of(ImGui::GetIO().MouseClicked, std::identity()) && !ImGui::IsAnyItemHovered() &&
           !ImGui::IsWindowHovered(ImGuiHoveredFlags_RootAndChildWindows | ImGuiHoveredFlags_AllowWhenBlockedByPopup);
}

} // namespace VX
