#include "RibbonBody.h"
#include "RibbonHeader.h"
#include "RibbonState.h"
#include "agent/AgentChip.h"
#include "menu/Translate.h"
#include "settings/NotificationSettings.h"

#include <VXViewer/Locale.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerItems.h>
#include <VXViewer/ViewerSettingsManager.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* collapsedKey = "ribbonCollapsed";
constexpr float reasonLifeTime = 5;

struct ItemShortcut
{
    ShortcutKey key;
    const char* item;
    ShortcutCategory category;
};

constexpr int ctrlAlt = GLFW_MOD_CONTROL | GLFW_MOD_ALT;
constexpr int ctrlShift = GLFW_MOD_CONTROL | GLFW_MOD_SHIFT;

constexpr std::array itemShortcuts{
    ItemShortcut{{GLFW_KEY_O, GLFW_MOD_CONTROL}, "Open files", ShortcutCategory::Scene},
    ItemShortcut{{GLFW_KEY_S, GLFW_MOD_CONTROL}, "Save", ShortcutCategory::Scene},
    ItemShortcut{{GLFW_KEY_S, ctrlShift}, "Save Scene As", ShortcutCategory::Scene},
    ItemShortcut{{GLFW_KEY_DELETE, 0}, "Delete Selection", ShortcutCategory::Edit},
    ItemShortcut{{GLFW_KEY_D, GLFW_MOD_CONTROL}, "Duplicate", ShortcutCategory::Objects},
    ItemShortcut{{GLFW_KEY_G, GLFW_MOD_CONTROL}, "Group", ShortcutCategory::Objects},
    ItemShortcut{{GLFW_KEY_F2, 0}, "Rename", ShortcutCategory::Objects},
    ItemShortcut{{GLFW_KEY_H, 0}, "Hide", ShortcutCategory::Objects},
    ItemShortcut{{GLFW_KEY_A, GLFW_MOD_CONTROL}, "Select all", ShortcutCategory::Selection},
    ItemShortcut{{GLFW_KEY_I, GLFW_MOD_CONTROL}, "Invert Selection", ShortcutCategory::Selection},
    ItemShortcut{{GLFW_KEY_F, 0}, "Fit", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_F, GLFW_MOD_SHIFT}, "Fit Selected", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_1, GLFW_MOD_ALT}, "View Front", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_1, ctrlAlt}, "View Back", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_3, ctrlAlt}, "View Left", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_3, GLFW_MOD_ALT}, "View Right", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_7, GLFW_MOD_ALT}, "View Top", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_7, ctrlAlt}, "View Bottom", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_5, GLFW_MOD_ALT}, "Toggle Projection Mode", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_F11, 0}, "Full Screen", ShortcutCategory::View},
    ItemShortcut{{GLFW_KEY_COMMA, GLFW_MOD_CONTROL}, "Viewer settings", ShortcutCategory::Info},
};

/// Control stands for the modifier that shortcuts are made with.
ShortcutKey withPrimaryCtrl(ShortcutKey key)
{
    if ((key.mods & GLFW_MOD_CONTROL) != 0)
        key.mods = (key.mods & ~GLFW_MOD_CONTROL) | getGlfwModPrimaryCtrl();
    return key;
}

/// Tells the user why an item did not do what it is for. What it had begun with the scene was taken back (SceneEdit).
void showFailure(ImGuiMenu& menu, const std::string& itemName, const std::exception& exception)
{
    spdlog::error("The item \"{}\" failed.", itemName);
    spdlog::debug("Why the item failed: {}", exception.what());
    const auto button = makeRibbonButton(RibbonSchemaHolder::schema(), itemName);
    const std::string caption = button ? button->caption : itemName;
    menu.showModalMessage(dynamic_cast<const std::bad_alloc*>(&exception)
                              ? trf("There is not enough memory for \"{}\". The scene is as it was.", caption)
                              : trf("\"{}\" has failed: {}. The scene is as it was.", caption, exception.what()),
                          NotificationType::Error);
}

} // namespace

RibbonMenu::RibbonMenu()
    : ribbon_(std::make_unique<RibbonState>())
{
}

RibbonMenu::~RibbonMenu() = default;

void RibbonMenu::init(Viewer* viewer)
{
    ImGuiMenu::init(viewer);
    fillSchema_(*viewer);
    RibbonState::Session& session = ribbon_->session.emplace();
    session.notifier.emplace(*viewer);
    loadNotificationSettings(*viewer, *session.notifier);
    session.search.emplace([this] { return ribbonSearchCommands(ribbon_->session->layout, shortcutManager()); },
                           [this](const std::string& name) { pressItem(name); });
    session.search->setFocusedCallback(
        [this]
        {
            if (ribbon_->searchFocused)
                ribbon_->searchFocused();
        });
    session.search->setActivatedCallback(
        [this]
        {
            if (ribbon_->searchActivated)
                ribbon_->searchActivated();
        });
    ribbon_->layoutRevision = 0;
    settingsLoaded();
}

void RibbonMenu::settingsLoaded()
{
    ribbon_->toolbar.reload();
    const ViewerSettingsManager* settings = viewer_() ? viewer_()->settingsManager() : nullptr;
    if (settings)
        ribbon_->collapsed = settings->loadInt(collapsedKey, 0) != 0;
    if (viewer_())
        viewer_()->incrementForceRedrawFrames();
}

void RibbonMenu::fillSchema_(Viewer& viewer)
{
    if (!RibbonSchemaHolder::schema().tabs.empty())
        return;
    ribbon_->ownsSchema = true;
    registerViewerItems(viewer);
    const auto added = RibbonSchemaHolder::addInstalledFiles();
    if (!added)
        showModalMessage(added.error(), NotificationType::Error);
}

void RibbonMenu::shutdown()
{
    if (!ribbon_->session)
        return;
    // The last one first, as Escape would. A copy: ending one may end others.
    const std::vector tools(ribbon_->session->activeItems.items());
    std::for_each(tools.rbegin(), tools.rend(), [](const auto& item) { item->deactivate(); });
    ribbon_->session.reset();
    if (std::exchange(ribbon_->ownsSchema, false))
        RibbonSchemaHolder::reset();
    ImGuiMenu::shutdown();
}

void RibbonMenu::setupShortcuts_()
{
    ImGuiMenu::setupShortcuts_();
    for (const ItemShortcut& shortcut : itemShortcuts)
        setShortcut(withPrimaryCtrl(shortcut.key), shortcut.item, shortcut.category);
    shortcutManager()->set({{GLFW_KEY_ESCAPE, 0},
                            translatable("Select nothing"),
                            ShortcutCategory::Selection,
                            [this]
                            {
                                // There may be nothing to clear, which is no news to the user.
                                const RibbonItemInfo* info = RibbonSchemaHolder::find("Clear Selections");
                                if (info && info->item->unavailableReason().empty())
                                    pressItem(info->item->name());
                            }});
    shortcutManager()->set({withPrimaryCtrl({GLFW_KEY_P, ctrlShift}), translatable("Search for commands"),
                            ShortcutCategory::Info, [this]
                            {
                                if (ribbon_->session)
                                    ribbon_->session->search->focus();
                            }});
    shortcutManager()->set({{GLFW_KEY_F10, 0},
                            translatable("Use the ribbon with the keyboard"),
                            ShortcutCategory::Info,
                            [this]
                            {
                                if (ribbon_->session)
                                    ribbon_->session->buttons.focus().enter();
                            }});
}

void RibbonMenu::setShortcut(ShortcutKey key, const std::string& itemName, ShortcutCategory category)
{
    if (ShortcutManager* shortcuts = shortcutManager())
        shortcuts->set({key, itemName, category, [this, itemName] { pressItem(itemName); }});
}

bool RibbonMenu::handleKey(const KeyEvent& event)
{
    if (!ribbon_->session)
        return false;
    RibbonFocus& focus = ribbon_->session->buttons.focus();
    const bool isAlt = event.key == GLFW_KEY_LEFT_ALT || event.key == GLFW_KEY_RIGHT_ALT;
    if (event.action == KeyEvent::Action::Release)
    {
        if (isAlt && std::exchange(ribbon_->altAlone, false))
        {
            focus.isActive() ? focus.leave() : focus.enter();
            return true;
        }
        return false;
    }
    ribbon_->altAlone = isAlt && (event.action == KeyEvent::Action::Press || ribbon_->altAlone);
    if (isAlt)
        return false;
    if (focus.handleKey(event.key, event.mods))
        return true;
    if (event.key == GLFW_KEY_ESCAPE && event.action == KeyEvent::Action::Press)
    {
        if (std::exchange(ribbon_->overlay, false) || ribbon_->session->activeItems.endLast())
            return true;
    }
    return ImGuiMenu::handleKey(event);
}

bool RibbonMenu::handleSceneInput(const InputEvent& event)
{
    if (std::holds_alternative<FocusEvent>(event) && ribbon_->session)
    {
        // Alt is released then, though the user did not.
        ribbon_->altAlone = false;
        ribbon_->session->buttons.focus().leave();
    }
    return false;
}

bool RibbonMenu::itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason)
{
    if (!unavailableReason.empty())
    {
        RibbonNotification notification;
        notification.text = unavailableReason;
        notification.lifeTimeSec = reasonLifeTime;
        pushNotification(notification);
        return false;
    }
    try
    {
        item->press();
    }
    catch (const std::exception& exception)
    {
        showFailure(*this, item->name(), exception);
    }
    return true;
}

bool RibbonMenu::pressItem(const std::string& name)
{
    const RibbonItemInfo* info = RibbonSchemaHolder::find(name);
    if (!info)
        return false;
    // The item may change the schema.
    const std::shared_ptr<RibbonMenuItem> item = info->item;
    const bool accepted = itemPressed_(item, item->unavailableReason());
    if (Viewer* viewer = viewer_())
        viewer->incrementForceRedrawFrames(2);
    return accepted;
}

void RibbonMenu::pushNotification(const RibbonNotification& notification)
{
    if (ribbon_->session)
        ribbon_->session->notifier->push(notification);
}

Toolbar& RibbonMenu::toolbar() const
{
    return ribbon_->toolbar;
}

RibbonFontManager& RibbonMenu::fontManager() const
{
    return ribbon_->fonts;
}

RibbonNotifier* RibbonMenu::notifier() const
{
    return ribbon_->session ? &*ribbon_->session->notifier : nullptr;
}

void RibbonMenu::setSearchFocusedCallback(std::function<void()> callback)
{
    ribbon_->searchFocused = std::move(callback);
}

void RibbonMenu::setSearchActivatedCallback(std::function<void()> callback)
{
    ribbon_->searchActivated = std::move(callback);
}

void RibbonMenu::setSceneContextCallback(std::function<void()> callback)
{
    ribbon_->sceneContext = std::move(callback);
}

void RibbonMenu::sceneContextAppeared_()
{
    if (ribbon_->sceneContext)
        ribbon_->sceneContext();
}

void RibbonMenu::applyConfig(const RibbonConfig& config)
{
    mergeRibbonConfig(ribbon_->config, config);
    ribbon_->layoutRevision = 0;
    ribbon_->toolbar.reload();
    if (Viewer* viewer = viewer_())
        viewer->incrementForceRedrawFrames(2);
}

bool RibbonMenu::isItemHidden(std::string_view name) const
{
    return ribbon_->session && ribbon_->session->layout.isHidden(name);
}

std::vector<std::shared_ptr<RibbonMenuItem>> RibbonMenu::activeItems() const
{
    return ribbon_->session ? ribbon_->session->activeItems.items() : std::vector<std::shared_ptr<RibbonMenuItem>>();
}

bool RibbonMenu::isCollapsed() const
{
    return ribbon_->collapsed;
}

void RibbonMenu::setCollapsed(bool collapsed)
{
    ribbon_->collapsed = collapsed;
    ribbon_->overlay = false;
    Viewer* viewer = viewer_();
    if (!viewer)
        return;
    viewer->incrementForceRedrawFrames(2);
    if (const ViewerSettingsManager* settings = viewer->settingsManager())
        settings->saveInt(collapsedKey, collapsed ? 1 : 0);
}

void RibbonMenu::openTab(std::string_view name)
{
    if (!ribbon_->session)
        return;
    refreshLayout_();
    ribbon_->session->tabs.open(name);
}

void RibbonMenu::raiseFirstSignInFrame()
{
    ribbon_->firstSignInFrame = true;
}

void RibbonMenu::clearFirstSignInFrame()
{
    ribbon_->firstSignInFrame = false;
}

float RibbonMenu::headerStatusWidth_()
{
    return AgentChip::width();
}

float RibbonMenu::headerAccountWidth_()
{
    return 0;
}

void RibbonMenu::drawHeaderStatus_()
{
    AgentChip::draw();
}

void RibbonMenu::drawHeaderAccount_() {}

void RibbonMenu::onFirstSignInFrame() {}

void RibbonMenu::drawWelcomeWindow_() {}

void RibbonMenu::drawVersionWindow_() {}

} // namespace VX
