#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/RibbonMenuItem.h>

#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// The window of the settings, the ribbon item "Viewer settings": tabs of what the user can choose. Each choice holds
/// and is stored at once, and goes back to its default alone or together with its tab. Other parts add settings of
/// their own.
/// @threads the UI thread
class VXVIEWER_API ViewerSettingsPlugin : public RibbonMenuItem
{
public:
    /// The tabs from left to right; one that nothing was added to is not shown. The numbers are fixed.
    enum class TabType
    {
        Quick = 0,       ///< only what other parts add
        Application = 1, ///< language, colours, size of the interface
        Control = 2,     ///< what the mouse does
        View = 3         ///< how the scene is drawn
    };

    /// A setting of another part, drawn in a tab below the tab's own.
    class VXVIEWER_API ExternalSettings
    {
    public:
        ExternalSettings() = default;
        virtual ~ExternalSettings();

        ExternalSettings(const ExternalSettings&) = delete;
        ExternalSettings& operator=(const ExternalSettings&) = delete;

        /// The section under which it stands, in English; settings of the same section stand together. There is no
        /// headline where the name is empty or the first widget has the same text.
        virtual const char* getName() = 0;

        /// Draws its widgets. @param scale  pixels in a unit of the design
        virtual void draw(float scale) = 0;

        /// Goes back to the default.
        virtual void reset();
    };

    /// The one of this process; never null.
    static const std::shared_ptr<ViewerSettingsPlugin>& instance();

    ~ViewerSettingsPlugin() override;

    /// Opens or closes the window.
    void press() override;
    [[nodiscard]] bool isActive() const override;
    void deactivate() override;

    [[nodiscard]] bool isEnabled() const { return enabled_; }

    void setEnabled(bool enabled);

    [[nodiscard]] TabType activeTab() const { return activeTab_; }

    /// Shows this tab now, or when the window opens next.
    void setActiveTab(TabType tab);

    /// Adds `settings` to the end of a tab; a second time changes nothing.
    void addComboSettings(TabType tab, std::shared_ptr<ExternalSettings> settings);

    /// Takes them away again.
    void removeSettings(const std::shared_ptr<ExternalSettings>& settings);

    /// Draws the window while it is open.
    void drawPanel() override;

    /// Closes the window and forgets what other parts added, as when the viewer ends.
    void reset();

private:
    struct Tab;

    ViewerSettingsPlugin();

    [[nodiscard]] Tab& tab_(TabType type) const;
    /// @param spaceBelow  what stays free below the tab, in pixels
    void drawTabs_(float spaceBelow);
    void drawButtons_();
    static void drawExternal_(Tab& tab);
    static void drawOne_(Tab& tab, ExternalSettings& settings);
    static void resetTab_(const Tab& tab);

    std::vector<std::unique_ptr<Tab>> tabs_;
    TabType activeTab_ = TabType::Application;
    bool enabled_ = false;
    /// The tab to show was not chosen with the mouse.
    bool selectTab_ = true;
    bool appearing_ = false;
};

} // namespace VX
