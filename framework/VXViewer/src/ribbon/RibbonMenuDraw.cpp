#include "RibbonBody.h"
#include "RibbonHeader.h"
#include "RibbonState.h"
#include "menu/PanelWindow.h"
#include "menu/Translate.h"

#include <VXMesh/Config.h>
#include <VXViewer/Locale.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr float quickAccessButton = 28;
constexpr float edge = 8;
constexpr float settingsLifeTime = 15;

constexpr ImGuiWindowFlags ribbonFlags = panelFlags | ImGuiWindowFlags_NoScrollWithMouse;

/// Lies over the scene, in front of its panels.
constexpr ImGuiWindowFlags overlayFlags =
    (ribbonFlags & ~ImGuiWindowFlags_NoBringToFrontOnFocus) | ImGuiWindowFlags_NoFocusOnAppearing;

/// Tells the user where the settings are not kept.
void tellOfSettings(RibbonMenu& menu)
{
    RibbonNotification notification;
    switch (Config::instance().takeProblem())
    {
    case Config::Problem::None:
        return;
    case Config::Problem::Damaged:
        notification.text = tr("The settings file was damaged. The program begins with new settings.");
        break;
    case Config::Problem::Unreadable:
        notification.text = tr("The settings file cannot be read. Changed settings last until the program ends.");
        break;
    case Config::Problem::Unwritable:
        notification.text = tr("The settings cannot be saved. They last until the program ends.");
        break;
    }
    notification.type = NotificationType::Warning;
    notification.lifeTimeSec = settingsLifeTime;
    menu.pushNotification(notification);
}

} // namespace

float RibbonMenu::leftPanelWidth() const
{
    return ribbon_->config.drawSceneList.value_or(true) ? ImGuiMenu::leftPanelWidth() : 0;
}

float RibbonMenu::topPanelHeight() const
{
    const bool header = ribbon_->config.drawHeader.value_or(true);
    // Without a header nothing would open the body again.
    const bool body = ribbon_->session && ribbon_->session->tabs.open() && !(ribbon_->collapsed && header);
    return (header ? RibbonHeader::height : 0) + (body ? RibbonBody::height : 0);
}

bool RibbonMenu::isRibbonShown() const
{
    return topPanelHeight() > 0;
}

void RibbonMenu::refreshLayout_()
{
    RibbonState::Session& session = *ribbon_->session;
    const std::string language = Locale::getName();
    if (ribbon_->layoutRevision != RibbonSchemaHolder::revision() || ribbon_->layoutLanguage != language)
    {
        const RibbonSchema& schema = RibbonSchemaHolder::schema();
        ribbon_->layoutRevision = RibbonSchemaHolder::revision();
        ribbon_->layoutLanguage = language;
        session.layout = RibbonLayout(schema, ribbon_->config);
        ribbon_->toolbar.setDefaults(session.layout.toolbar, schema.toolbarVersion);
    }
    session.tabs.update(session.layout, viewer_()->scene());
    session.activeItems.update(RibbonSchemaHolder::schema());
    session.buttons.setShortcuts(shortcutManager());
}

void RibbonMenu::draw()
{
    if (!ribbon_->session)
        return;
    refreshLayout_();
    if (ImGui::IsMouseClicked(ImGuiMouseButton_Left) || ImGui::IsMouseClicked(ImGuiMouseButton_Right) ||
        ImGui::IsMouseClicked(ImGuiMouseButton_Middle))
    {
        ribbon_->altAlone = false;
        ribbon_->session->buttons.focus().leave();
    }
    ribbon_->session->buttons.focus().beginFrame();
    if (std::exchange(ribbon_->firstSignInFrame, false))
        onFirstSignInFrame();
    ImGuiMenu::draw();
    ribbon_->session->buttons.focus().endFrame();
    pressDrawn_();
}

void RibbonMenu::drawTopPanel_()
{
    if (ribbon_->config.drawHeader.value_or(true))
        drawHeader_();
    const RibbonLayoutTab* tab = ribbon_->session->tabs.open();
    const float header = ribbon_->config.drawHeader.value_or(true) ? RibbonHeader::height : 0;
    if (tab && topPanelHeight() > header)
        drawBody_();
}

void RibbonMenu::drawHeader_()
{
    RibbonState::Session& session = *ribbon_->session;
    const float width = static_cast<float>(viewer_()->framebufferSize().width);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    ImGui::PushStyleColor(ImGuiCol_WindowBg, UI::color(UI::Color::Window));
    beginPanel("Ribbon Header", {0, 0, static_cast<int>(width), static_cast<int>(UI::px(RibbonHeader::height))},
               ribbonFlags);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar(2);
    const RibbonHeader::Parts parts{session.buttons,
                                    *session.search,
                                    *session.notifier,
                                    [this] { drawHeaderQuickAccess_(); },
                                    {headerStatusWidth_(), [this] { drawHeaderStatus_(); }},
                                    {headerAccountWidth_(), [this] { drawHeaderAccount_(); }}};
    const bool isBodyShown = !ribbon_->collapsed || ribbon_->overlay;
    const RibbonHeader::Result result = RibbonHeader::draw(session.tabs, parts, ribbon_->collapsed, isBodyShown);
    UI::endWindow();

    if (result.toggleCollapsed || result.doubleClicked)
    {
        if (result.pressed)
            session.tabs.open(result.pressed->name);
        setCollapsed(!ribbon_->collapsed);
    }
    else if (result.pressed)
    {
        const bool same = session.tabs.open() == result.pressed;
        session.tabs.open(result.pressed->name);
        ribbon_->overlay = ribbon_->collapsed && !(same && ribbon_->overlay);
        ribbon_->overlayAppearing = ribbon_->overlay;
    }
}

void RibbonMenu::drawHeaderQuickAccess_()
{
    if (!ribbon_->config.drawQuickAccess.value_or(true))
        return;
    float x = std::max(ImGui::GetCursorPosX(), UI::px(edge));
    for (const RibbonButton& button : ribbon_->session->layout.quickAccess)
    {
        ImGui::SetCursorPos({x, UI::px(2)});
        ribbon_->session->buttons.draw(button, RibbonButtonForm::Icon, UI::px(quickAccessButton));
        x += UI::px(quickAccessButton);
    }
    ImGui::SetCursorPos({x, 0});
}

void RibbonMenu::drawBody_()
{
    const PixelSize size = viewer_()->framebufferSize();
    const float bottom = UI::px(topPanelHeight());
    const float height = UI::px(RibbonBody::height);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    beginPanel("Ribbon", {0, static_cast<int>(bottom - height), size.width, static_cast<int>(height)}, ribbonFlags);
    ImGui::PopStyleVar();
    RibbonBody(ribbon_->session->buttons).draw(*ribbon_->session->tabs.open());
    drawPanelEdge({0, bottom - UI::px(1)}, {static_cast<float>(size.width), bottom});
    UI::endWindow();
}

void RibbonMenu::drawOverlay_()
{
    const RibbonLayoutTab* tab = ribbon_->session->tabs.open();
    if (!ribbon_->overlay || !tab)
        return;
    const PixelSize size = viewer_()->framebufferSize();
    const float top = UI::px(RibbonHeader::height);
    const float bottom = top + UI::px(RibbonBody::height);
    if (std::exchange(ribbon_->overlayAppearing, false))
        ImGui::SetNextWindowFocus();
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    beginPanel("Ribbon", {0, static_cast<int>(top), size.width, static_cast<int>(bottom - top)}, overlayFlags);
    ImGui::PopStyleVar();
    RibbonBody(ribbon_->session->buttons).draw(*tab);
    drawPanelEdge({0, bottom - UI::px(1)}, {static_cast<float>(size.width), bottom});
    const bool hovered = ImGui::IsWindowHovered(ImGuiHoveredFlags_AllowWhenBlockedByActiveItem);
    UI::endWindow();
    const bool inHeader = ImGui::GetIO().MousePos.y < top;
    const bool popup = ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
    const bool clicked = ImGui::IsMouseClicked(ImGuiMouseButton_Left) || ImGui::IsMouseClicked(ImGuiMouseButton_Right);
    if (ribbon_->session->buttons.hasPressed() || (clicked && !hovered && !inHeader && !popup))
        ribbon_->overlay = false;
}

void RibbonMenu::drawActiveItems_()
{
    ribbon_->session->activeItems.draw(sceneArea_(), RibbonSchemaHolder::schema(), ribbon_->session->buttons);
}

void RibbonMenu::drawItemPanels_()
{
    std::vector<std::shared_ptr<RibbonMenuItem>> active;
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
    {
        if (info.item && info.item->isActive())
            active.push_back(info.item);
    }
    for (const std::shared_ptr<RibbonMenuItem>& item : active)
    {
        // The panel of another one may have ended it.
        if (item->isActive())
            item->drawPanel();
    }
}

void RibbonMenu::drawToolbar_()
{
    if (ribbon_->config.drawToolbar.value_or(true))
        ribbon_->toolbar.draw(sceneArea_(), ribbon_->session->layout, ribbon_->session->buttons);
}

int RibbonMenu::coveredTop() const
{
    return ribbon_->config.drawToolbar.value_or(true) ? Toolbar::depth() : 0;
}

void RibbonMenu::drawNotifications_()
{
    tellOfSettings(*this);
    ribbon_->session->notifier->draw(sceneArea_());
}

void RibbonMenu::drawAdditionalWindows()
{
    drawActiveItems_();
    drawWelcomeWindow_();
    drawItemPanels_();
    drawToolbar_();
    drawNotifications_();
    drawSearchAndOverlay_();
    draw_helpers();
    if (isRibbonShown())
        drawVersionWindow_();
}

void RibbonMenu::drawSearchAndOverlay_()
{
    drawOverlay_();
    const PixelSize size = viewer_()->framebufferSize();
    ribbon_->session->search->drawResults({0, 0, size.width, size.height});
}

void RibbonMenu::pressDrawn_()
{
    if (const std::shared_ptr<RibbonMenuItem> item = ribbon_->session->buttons.takePressed())
        pressItem(item->name());
}

} // namespace VX
