#pragma once

#include <quorvix/Export.h>
#include <quorvix/menu/QuorvixMenuUIConfig.h>
#include <quorvix/menu/WelcomeWindow.h>

#include <VXViewer/RibbonMenu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class AccountItem;
class AuthWindow;
class CheckForUpdatesSetting;
class MenuSessionLogs;
class QuickSetupWindow;
class TelemetryDisclaimer;
class VersionWindow;

/// The application's menu: the ribbon with the product's logo, the shortcuts that a deployment can switch, the renamed
/// items of saved toolbars, the sign-in that stands before all of it, the windows of the start, and reports to
/// `SessionLogs` of what the user does.
/// @threads the UI thread
class QUORVIX_API QuorvixRibbonMenu : public RibbonMenu
{
public:
    QuorvixRibbonMenu();
    ~QuorvixRibbonMenu() override;

    /// The viewer's menu; null where it is another one or there is none.
    [[nodiscard]] static std::shared_ptr<QuorvixRibbonMenu> instance();

    void init(Viewer* viewer) override;

    /// Reports the end of the program and sends what was gathered before anything goes.
    void shutdown() override;

    void draw() override;

    /// The framework's windows in their order, with the application's: the sign-in first, those of the start last.
    /// While the user has to sign in, what belongs to the scene is not drawn.
    void drawAdditionalWindows() override;

    /// While the user has to sign in.
    [[nodiscard]] bool isCovered() const override;

    /// While the sign-in is under way.
    [[nodiscard]] bool isStartingUp() const override { return isAuthInProcess(); }

    /// Reported as "Error Modal" or "Warning Modal" but for the text of a cancelled operation.
    void showModalMessage(const std::string& message, NotificationType type) override;

    /// An error is reported as "Error Notification".
    void pushNotification(const RibbonNotification& notification) override;

    /// Takes the switches over, and sets all shortcuts anew where there are any yet.
    void setQuorvixMenuConfig(const QuorvixMenuUIConfig& config);

    [[nodiscard]] const QuorvixMenuUIConfig& quorvixMenuConfig() const { return config_; }

    /// What adds to the facts of the selected objects; empty: nothing does.
    void
    setDrawCustomSelectionInformationFunc(std::function<void(const std::vector<std::shared_ptr<Object>>&)> function);

    /// The application knows accounts.
    [[nodiscard]] bool isAuthEnabled() const { return true; }

    /// A sign-in, or another request of the sign-in window, is under way; false after `shutdown`.
    [[nodiscard]] bool isAuthInProcess() const;

    /// Ends the sign-in; nothing happens after `shutdown`.
    void signOut();

    /// One of the modal windows of the start is open.
    [[nodiscard]] bool isStartupModalShown() const;

protected:
    void setupShortcuts_() override;

    /// A press that was accepted, of an item of the schema, is reported as "Tool Activated: NAME".
    bool itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason) override;

    void drawHeaderQuickAccess_() override;

    /// Who is signed in.
    [[nodiscard]] float headerAccountWidth_() override;
    void drawHeaderAccount_() override;

    void drawEmptySceneHint_() override;
    void drawWelcomeWindow_() override;
    void drawVersionWindow_() override;

    /// Tells who runs the program for another kind of processor.
    void onFirstSignInFrame() override;

    void drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected) override;

    /// Whether the modal windows of the start may open: there is a user to answer them. False in an off-screen window.
    [[nodiscard]] virtual bool mayAskAtStart_() const;

    /// Null after `shutdown`.
    [[nodiscard]] AuthWindow* authWindow_() const { return auth_.get(); }

private:
    /// Nobody has to sign in first.
    [[nodiscard]] bool isUserLetIn_() const;
    [[nodiscard]] bool mayShowWelcome_() const;
    void openStartupModals_();

    WelcomeWindow welcome_;
    QuorvixMenuUIConfig config_;
    std::unique_ptr<AuthWindow> auth_;     ///< from the constructor to `shutdown`
    std::unique_ptr<AccountItem> account_; ///< the same
    std::function<void(const std::vector<std::shared_ptr<Object>>&)> drawSelectionInformation_;
    std::unique_ptr<MenuSessionLogs> sessionLogs_; ///< from `init` to `shutdown`
    std::shared_ptr<CheckForUpdatesSetting> updatesSetting_;
    std::unique_ptr<VersionWindow> version_;
    std::unique_ptr<QuickSetupWindow> quickSetup_;
    std::unique_ptr<TelemetryDisclaimer> disclaimer_;
};

} // namespace VX
