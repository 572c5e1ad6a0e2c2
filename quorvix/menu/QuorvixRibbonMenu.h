#pragma once

#include <quorvix/Export.h>
#include <quorvix/menu/QuorvixMenuUIConfig.h>

#include <VXViewer/RibbonMenu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class MenuSessionLogs;

/// The application's menu: the ribbon with the product's logo, the shortcuts that a deployment can switch, the renamed
/// items of saved toolbars, and reports to `SessionLogs` of what the user does.
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

    /// False: this menu has no sign-in window.
    [[nodiscard]] bool isAuthInProcess() const { return false; }

protected:
    void setupShortcuts_() override;

    /// A press that was accepted, of an item of the schema, is reported as "Tool Activated: NAME".
    bool itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason) override;

    void drawHeaderQuickAccess_() override;
    void drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected) override;

private:
    QuorvixMenuUIConfig config_;
    std::function<void(const std::vector<std::shared_ptr<Object>>&)> drawSelectionInformation_;
    std::unique_ptr<MenuSessionLogs> sessionLogs_; ///< from `init` to `shutdown`
};

} // namespace VX
