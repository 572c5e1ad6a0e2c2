#include <quorvix/auth/AccountItem.h>
#include <quorvix/auth/AuthWindow.h>
#include <quorvix/menu/CheckForUpdatesSetting.h>
#include <quorvix/menu/MenuSessionLogs.h>
#include <quorvix/menu/PlatformNotice.h>
#include <quorvix/menu/QuickSetupWindow.h>
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/menu/TelemetryDisclaimer.h>
#include <quorvix/menu/VersionWindow.h>
#include <quorvix/setup/Deployment.h>
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
#include <VXViewer/ViewerSettingsPlugin.h>

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
    : auth_(std::make_unique<AuthWindow>(deployment().signIn == Deployment::SignIn::Browser))
    , account_(std::make_unique<AccountItem>(*auth_))
    , updatesSetting_(std::make_shared<CheckForUpdatesSetting>())
    , version_(std::make_unique<VersionWindow>())
    , quickSetup_(std::make_unique<QuickSetupWindow>())
    , disclaimer_(std::make_unique<TelemetryDisclaimer>())
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
    welcome_.init(this, [this](const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason)
                  { itemPressed_(item, unavailableReason); });
    sessionLogs_ = std::make_unique<MenuSessionLogs>(*this, *viewer);
    ViewerSettingsPlugin::instance()->addComboSettings(ViewerSettingsPlugin::TabType::Application, updatesSetting_);
}

void QuorvixRibbonMenu::shutdown()
{
    SessionLogs::logAction("Close Application", true);
    SessionLogs::flushIfNeeded(true);
    // The end of the program was the last that is reported: what tools report as they are ended is dropped.
    RibbonMenu::shutdown();
    account_.reset();
    auth_.reset();
    welcome_.shutdown();
    ViewerSettingsPlugin::instance()->removeSettings(updatesSetting_);
    sessionLogs_.reset();
}

void QuorvixRibbonMenu::draw()
{
    RibbonMenu::draw();
    SessionLogs::flushIfNeeded(false);
}

void QuorvixRibbonMenu::drawAdditionalWindows()
{
    openStartupModals_();
    if (auth_)
        auth_->drawIfNeeded();
    if (!isCovered())
    {
        drawActiveItems_();
        if (config_.drawWelcomeWindow)
            drawWelcomeWindow_();
        drawItemPanels_();
        drawToolbar_();
        drawNotifications_();
        drawSearchAndOverlay_();
    }
    draw_helpers();
    if (isRibbonShown())
        drawVersionWindow_();
    quickSetup_->draw();
    disclaimer_->draw();
}

bool QuorvixRibbonMenu::isCovered() const
{
    return auth_ && auth_->isCovering();
}

bool QuorvixRibbonMenu::isUserLetIn_() const
{
    return !auth_ || auth_->isAuthed();
}

bool QuorvixRibbonMenu::isAuthInProcess() const
{
    return auth_ && auth_->isInProcess();
}

void QuorvixRibbonMenu::signOut()
{
    if (auth_)
        auth_->signOut();
}

bool QuorvixRibbonMenu::isStartupModalShown() const
{
    return quickSetup_->isShown() || disclaimer_->isShown();
}

bool QuorvixRibbonMenu::mayAskAtStart_() const
{
    return viewer_() && viewer_()->glfwWindow();
}

void QuorvixRibbonMenu::openStartupModals_()
{
    // Before the quick setup counts as shown: a run that nobody sees leaves no trace in the settings, which are stored
    // at once, and does not keep the window from the user.
    if (!mayAskAtStart_())
        return;
    quickSetup_->openIfDue(*viewer_());
    // Its way to the settings leads behind the sign-in, and nothing is reported before that.
    if (!quickSetup_->isShown() && isUserLetIn_())
        disclaimer_->openIfDue();
}

bool QuorvixRibbonMenu::mayShowWelcome_() const
{
    return isUserLetIn_() && !isStartupModalShown();
}

void QuorvixRibbonMenu::drawWelcomeWindow_()
{
    if (mayShowWelcome_())
        welcome_.draw();
}

void QuorvixRibbonMenu::drawEmptySceneHint_()
{
    const bool hasCards = config_.drawWelcomeWindow && mayShowWelcome_() && welcome_.isDue();
    if (!hasCards && !isStartupModalShown())
        RibbonMenu::drawEmptySceneHint_();
}

void QuorvixRibbonMenu::drawVersionWindow_()
{
    version_->draw(isUserLetIn_());
}

void QuorvixRibbonMenu::onFirstSignInFrame()
{
    showPlatformNotice(*this);
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

float QuorvixRibbonMenu::headerAccountWidth_()
{
    return account_ ? account_->width() : 0;
}

void QuorvixRibbonMenu::drawHeaderAccount_()
{
    account_->draw();
}

void QuorvixRibbonMenu::drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected)
{
    if (drawSelectionInformation_)
        drawSelectionInformation_(selected);
}

} // namespace VX
