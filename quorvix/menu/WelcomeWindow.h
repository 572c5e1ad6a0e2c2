#pragma once

#include <quorvix/Export.h>

#include <imgui.h>

#include <functional>
#include <memory>
#include <string>

namespace VX
{

class QuorvixRibbonMenu;
class RibbonMenuItem;
class ShowWelcomeWindowSetting;
class ViewerSettingsPlugin;

/// The cards over an empty scene: how files are opened, a video, a first object. The user can switch them off below
/// them and in the settings; the configuration keeps that as "cShowWelcomeWindow".
/// @threads the UI thread
class QUORVIX_API WelcomeWindow
{
public:
    using ItemCallback = std::function<void(const std::shared_ptr<RibbonMenuItem>&, const std::string&)>;

    WelcomeWindow();
    ~WelcomeWindow();

    WelcomeWindow(const WelcomeWindow&) = delete;
    WelcomeWindow& operator=(const WelcomeWindow&) = delete;

    /// Takes what the configuration says, and adds the switch to the settings where the ribbon has them.
    /// @param menu      outlives this, or `shutdown` comes before its end
    /// @param callback  presses an item of the ribbon; it gets no reason against it
    void init(QuorvixRibbonMenu* menu, ItemCallback callback);

    /// Undoes `init`: nothing is drawn any more.
    void shutdown();

    /// Draws the cards where they are due and there is room for them. To be called within a frame.
    void draw();

    /// Whether `draw` would draw the cards.
    [[nodiscard]] bool isDue() const;

    /// @param applyNow  the window opens or closes at once, too
    void setShowOnStartup(bool show, bool applyNow);

    [[nodiscard]] bool isShowOnStartup() const { return showOnStartup; }

    /// Whether it is shown, or would be if there were room.
    [[nodiscard]] bool isOpen() const { return open; }

private:
    [[nodiscard]] bool isSceneTaken_() const;
    [[nodiscard]] bool hasRoom_() const;

    /// Begins the card `name`. @param position  of its upper left corner, from the middle of the free area, in units of
    /// the design, as is its size
    void beginCard_(const char* name, ImVec2 position, ImVec2 size);
    void drawDragDrop_();
    void drawQuickstart_();
    void drawCreateObject_();
    void drawCheckbox_();

    bool showOnStartup = false;
    bool open = false;
    QuorvixRibbonMenu* menu_ = nullptr;
    ItemCallback itemCallback;
    ImVec2 center_; ///< of the free area, in pixels
    std::shared_ptr<ViewerSettingsPlugin> settingsPlugin_;
    std::shared_ptr<ShowWelcomeWindowSetting> setting_;
};

} // namespace VX
