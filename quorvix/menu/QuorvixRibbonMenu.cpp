#include <quorvix/menu/MenuSessionLogs.h>
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Progress.h>
#include <VXMesh/Timer.h>
#include <VXViewer/RibbonIcons.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Toolbar.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <fmt/format.h>
#include <imgui.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

// Units of the design.
constexpr float logoSize = 28;
constexpr ImVec2 logoPosition{12, 2};
constexpr float quickAccessWithLogo = 40;
constexpr float smallestWidthWithLogo = 600;

/// The items of saved toolbars that have other names now, or are gone, by the version of the list that has that.
Toolbar::Migrations toolbarMigrations()
{
    using Names = std::vector<std::string>;
    const auto toSelectPrimitives = [](Names& names)
    {
        std::ranges::replace(names, "Face Selector", std::string("Select Primitives"));
        std::erase(names, "Camera");
    };
    const auto toMeshHealer = [](Names& names)
    { std::ranges::replace(names, "Apply Transform", std::string("Mesh Healer")); };
    return {{2, toSelectPrimitives}, {3, toMeshHealer}};
}

} // namespace

QuorvixRibbonMenu::QuorvixRibbonMenu()
{
    toolbar().setItemsListMigrations(toolbarMigrations());
}

QuorvixRibbonMenu::~QuorvixRibbonMenu() = default;

std::shared_ptr<QuorvixRibbonMenu> QuorvixRibbonMenu::instance()
{
    return std::dynamic_pointer_cast<QuorvixRibbonMenu>(getViewerInstance().getMenuPlugin());
}

void QuorvixRibbonMenu::init(Viewer* viewer)
{
    const Timer timer("VX::QuorvixRibbonMenu::init");
    RibbonMenu::init(viewer);
    sessionLogs_ = std::make_unique<MenuSessionLogs>(*this, *viewer);
}

void QuorvixRibbonMenu::shutdown()
{
    SessionLogs::logAction("Close Application", true);
    SessionLogs::flushIfNeeded(true);
    RibbonMenu::shutdown();
    sessionLogs_.reset();
}

void QuorvixRibbonMenu::draw()
{
    RibbonMenu::draw();
    SessionLogs::flushIfNeeded(false);
}

void QuorvixRibbonMenu::showModalMessage(const std::string& message, NotificationType type)
{
    if (message != operationCanceledText())
    {
        if (type == NotificationType::Error)
            SessionLogs::logAction("Error Modal", false);
        else if (type == NotificationType::Warning)
            SessionLogs::logAction("Warning Modal", false);
    }
    RibbonMenu::showModalMessage(message, type);
}

void QuorvixRibbonMenu::pushNotification(const RibbonNotification& notification)
{
    if (notification.type == NotificationType::Error)
        SessionLogs::logAction("Error Notification", false);
    RibbonMenu::pushNotification(notification);
}

void QuorvixRibbonMenu::setQuorvixMenuConfig(const QuorvixMenuUIConfig& config)
{
    config_ = config;
    if (!shortcutManager())
        return;
    shortcutManager()->clear();
    setupShortcuts_();
}

void QuorvixRibbonMenu::setDrawCustomSelectionInformationFunc(
    std::function<void(const std::vector<std::shared_ptr<Object>>&)> function)
{
    drawSelectionInformation_ = std::move(function);
}

void QuorvixRibbonMenu::setupShortcuts_()
{
    if (config_.allowBaseShortcuts)
        RibbonMenu::setupShortcuts_();
    // The manager alone, without the ribbon's shortcuts.
    if (!shortcutManager())
        ImGuiMenu::setupShortcuts_(); // NOLINT(bugprone-parent-virtual-call)
    const int ctrl = getGlfwModPrimaryCtrl();
    if (config_.allowHistoryShortcuts)
    {
        setShortcut({GLFW_KEY_Z, ctrl}, "Undo", ShortcutCategory::Edit);
        setShortcut({GLFW_KEY_Z, ctrl | GLFW_MOD_SHIFT}, "Redo", ShortcutCategory::Edit);
    }
    if (config_.allowBaseShortcuts)
    {
        setShortcut({GLFW_KEY_EQUAL, ctrl}, "Expand Selected Faces", ShortcutCategory::Selection);
        setShortcut({GLFW_KEY_MINUS, ctrl}, "Shrink selection", ShortcutCategory::Selection);
        setShortcut({GLFW_KEY_W, ctrl}, "Select Primitives", ShortcutCategory::Selection);
        setShortcut({GLFW_KEY_X, ctrl}, "Clear Selections", ShortcutCategory::Selection);
        setShortcut({GLFW_KEY_DELETE, 0}, "Delete Selection", ShortcutCategory::Edit);
    }
}

bool QuorvixRibbonMenu::itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason)
{
    // What is pressed may take the item out of the schema, from where the reference may come.
    const std::string name = item->name();
    const bool accepted = RibbonMenu::itemPressed_(item, unavailableReason);
    if (accepted && RibbonSchemaHolder::find(name))
        SessionLogs::logAction(fmt::format("Tool Activated: {}", name), false);
    return accepted;
}

void QuorvixRibbonMenu::drawHeaderQuickAccess_()
{
    const auto width = static_cast<float>(getViewerInstance().framebufferSize().width);
    const RibbonIcons::Icon* const logo =
        RibbonIcons::find("MainLogo", UI::px(logoSize), RibbonIcons::ColorType::Colored, RibbonIcons::IconType::Logo);
    if (logo && config_.drawLogo && width >= UI::px(smallestWidthWithLogo))
    {
        ImGui::SetCursorPos({UI::px(logoPosition.x), UI::px(logoPosition.y)});
        ImGui::Image(logo->texture, {UI::px(logoSize), UI::px(logoSize)});
        UI::record(UiKind::Icon, {}, "MainLogo");
        ImGui::SetCursorPos({UI::px(quickAccessWithLogo), 0});
    }
    RibbonMenu::drawHeaderQuickAccess_();
}

void QuorvixRibbonMenu::drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected)
{
    if (drawSelectionInformation_)
        drawSelectionInformation_(selected);
}

} // namespace VX
