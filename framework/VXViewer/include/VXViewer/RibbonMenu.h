#pragma once

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/RibbonConfig.h>
#include <VXViewer/ShortcutManager.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

class RibbonFontManager;
class RibbonMenuItem;
class RibbonNotifier;
class Toolbar;
struct RibbonNotification;

/// The menu with a ribbon at the top: a header with quick access, tabs and command search, and below it the items of
/// the tab that is open.
/// @threads the UI thread
class VXVIEWER_API RibbonMenu : public ImGuiMenu
{
public:
    RibbonMenu();
    ~RibbonMenu() override;

    /// Registers the viewer's own items and reads the installed layout, unless there is a schema with tabs already.
    void init(Viewer* viewer) override;
    void shutdown() override;

    void draw() override;

    /// Draws, in this order: the list of what is active; the welcome window; the windows of the active items, the
    /// toolbar and the notifications; `draw_helpers`; while the ribbon is shown, the version window.
    void drawAdditionalWindows() override;

    void settingsLoaded() override;

    /// Besides the shortcuts: the keyboard control of the ribbon, and Escape, which ends the tool begun last.
    bool handleKey(const KeyEvent& event) override;

    /// A window that loses the keyboard ends the keyboard control of the ribbon.
    bool handleSceneInput(const InputEvent& event) override;

    [[nodiscard]] int coveredTop() const override;
    [[nodiscard]] float leftPanelWidth() const override;
    [[nodiscard]] float topPanelHeight() const override;

    /// Shows `notification` in a corner of the scene.
    virtual void pushNotification(const RibbonNotification& notification);

    [[nodiscard]] Toolbar& toolbar() const;
    [[nodiscard]] RibbonFontManager& fontManager() const;

    /// Null before `init` and after `shutdown`.
    [[nodiscard]] RibbonNotifier* notifier() const;

    /// Presses the item `name` as its button does. @return true when it accepted the press
    bool pressItem(const std::string& name);

    /// The item `name` is pressed with `key`; nothing happens while there is no such item.
    void setShortcut(ShortcutKey key, const std::string& itemName, ShortcutCategory category);

    /// Called when the field of the command search gets the keyboard.
    void setSearchFocusedCallback(std::function<void()> callback);

    /// Called when an item is started from the results of the search.
    void setSearchActivatedCallback(std::function<void()> callback);

    /// Called in the first frame of the context menu of the scene list.
    void setSceneContextCallback(std::function<void()> callback);

    /// Reshapes the ribbon, in addition to what was applied before.
    void applyConfig(const RibbonConfig& config);

    /// True for an item that a deployment hides from all that offers items.
    [[nodiscard]] bool isItemHidden(std::string_view name) const;

    /// The items that are tools and active, the one begun first in front.
    [[nodiscard]] std::vector<std::shared_ptr<RibbonMenuItem>> activeItems() const;

    /// Collapsed, the ribbon is its header alone, and a press on a tab opens the body over the scene.
    [[nodiscard]] bool isCollapsed() const;
    void setCollapsed(bool collapsed);

    /// Opens the tab `name` if it is shown at present.
    void openTab(std::string_view name);

    /// False for a frame without a ribbon, as when a deployment hides all of it.
    [[nodiscard]] bool isRibbonShown() const;

    /// The next frame is the first one after a sign-in.
    void raiseFirstSignInFrame();

    /// It is not, after all.
    void clearFirstSignInFrame();

protected:
    void setupShortcuts_() override;
    void drawTopPanel_() override;
    void sceneContextAppeared_() override;

    /// Every press ends here: of a button, a shortcut, a search result, the welcome window. With a reason, it tells
    /// the user and does nothing else. @return true when the item was pressed
    virtual bool itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason);

    /// Draws the items at the left of the header, from the cursor on, and leaves it behind them.
    virtual void drawHeaderQuickAccess_();

    /// What a program puts into the header right of the command search, asked in every frame: first what services have
    /// to say, then the account. The tabs get what is left. @return the width in pixels; 0: nothing is drawn
    [[nodiscard]] virtual float headerStatusWidth_();
    [[nodiscard]] virtual float headerAccountWidth_();

    /// Draw that with the upper left corner at the cursor, as wide as was said and 28 units high. The last item is the
    /// one that the keyboard presses.
    virtual void drawHeaderStatus_();
    virtual void drawHeaderAccount_();

    virtual void drawWelcomeWindow_();
    virtual void drawVersionWindow_();

    /// Called once in the first frame after `raiseFirstSignInFrame`.
    virtual void onFirstSignInFrame();

    // The steps of drawAdditionalWindows.
    void drawActiveItems_();
    void drawItemPanels_();
    void drawToolbar_();
    void drawNotifications_();
    void drawSearchAndOverlay_(); ///< what the header opened over everything: results, the body of a collapsed ribbon

private:
    struct RibbonState;

    void fillSchema_(Viewer& viewer);
    void refreshLayout_();
    void drawHeader_();
    void drawBody_();
    void drawOverlay_();
    void pressDrawn_();

    std::unique_ptr<RibbonState> ribbon_;
};

} // namespace VX
