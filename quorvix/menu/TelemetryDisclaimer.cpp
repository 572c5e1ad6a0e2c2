#include <quorvix/menu/TelemetryDisclaimer.h>
#include <quorvix/setup/Translate.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXViewer/UI.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <json/value.h>

#include <algorithm>
#include <string>

namespace VX
{

namespace
{

constexpr const char* dueKey = "telemetryDisclaimerModalShowed";

// Units of the design.
constexpr ImVec2 size{800, 190};
constexpr float titleTop = 20;
constexpr float buttonsWidth = 500; ///< of both and the space between them
constexpr float buttonPadding = 8;

/// 0 alone says that it is done.
bool isDue(const Json::Value& stored)
{
    if (stored.isBool())
        return stored.asBool();
    return !stored.isNumeric() || stored.asDouble() != 0;
}

} // namespace

void TelemetryDisclaimer::openIfDue()
{
    if (!pending_ || !SessionLogs::isEnabled() ||
        ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel))
        return;
    pending_ = false;
    if (isDue(Config::instance().getJson(dueKey, 1)))
        modal_.open();
}

void TelemetryDisclaimer::draw()
{
    if (!modal_.begin(size, StartupModal::Width::Fixed))
        return;
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        StartupModal::centeredText(Product::tr("We'd Like to Improve Your Experience"), titleTop);
    }
    UI::wrappedText(Product::tr("To help us understand how you use Quorvix and make it better, we'll collect data on "
                                "the tools you click on. This will give us insights to improve functionality and "
                                "usability.\n\nNo personal info or file data is collected, and you can opt out anytime "
                                "in the settings."));
    drawButtons_();
    StartupModal::end();
}

void TelemetryDisclaimer::drawButtons_()
{
    const float space = ImGui::GetStyle().ItemSpacing.x;
    const float together = std::min(UI::px(buttonsWidth), ImGui::GetContentRegionAvail().x);
    ImGui::SetCursorPosX((ImGui::GetWindowWidth() - together) / 2);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(ImGui::GetStyle().FramePadding.x, UI::px(buttonPadding)));
    const ImVec2 buttonSize((together - space) / 2, ImGui::GetFrameHeight());
    const bool accepted = UI::primaryButton(Product::tr("Ok"), buttonSize);
    ImGui::SameLine();
    const bool managed = UI::button(Product::tr("Manage Settings"), buttonSize);
    const bool enterManages = ImGui::GetIO().NavVisible && ImGui::IsItemFocused();
    ImGui::PopStyleVar();
    const bool entered = ImGui::IsKeyPressed(ImGuiKey_Enter, false) || ImGui::IsKeyPressed(ImGuiKey_KeypadEnter, false);
    if (managed)
        manageSettings_();
    else if (accepted || (entered && !enterManages))
        accept_();
}

void TelemetryDisclaimer::accept_()
{
    SessionLogs::allow(true);
    Config::instance().setBool("allowSimpleTelemetry", true);
    Config::instance().setJson(dueKey, 0);
    modal_.close();
}

void TelemetryDisclaimer::manageSettings_()
{
    const auto& settings = ViewerSettingsPlugin::instance();
    if (!settings->isEnabled())
        settings->setEnabled(true);
    settings->setActiveTab(ViewerSettingsPlugin::TabType::Application);
    Config::instance().setJson(dueKey, 0);
    modal_.close();
}

} // namespace VX
