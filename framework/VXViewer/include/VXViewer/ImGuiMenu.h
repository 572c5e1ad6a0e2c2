#pragma once

#include <VXViewer/InputEvent.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/ViewerPlugin.h>
#include <VXViewer/Window.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class FileDialog;
class Object;
class ShortcutManager;

/// The menu of the viewer: the bar at the top, the scene tree and the facts of what is selected at the left, the status
/// line, dialogs and messages. Derived menus replace parts of it.
/// @threads the UI thread
class VXVIEWER_API ImGuiMenu : public ViewerPlugin
{
public:
    ImGuiMenu();
    ~ImGuiMenu() override;

    void init(Viewer* viewer) override;
    void shutdown() override;

    /// Draws the whole interface of this frame.
    void draw() override;

    /// Draws the interface with the viewer's other plug-ins.
    /// @return the pixels that are left to the scene, from the upper left corner of the window
    [[nodiscard]] PixelRect drawFrame();

    /// Draws the windows around the bars and panels; here, `draw_helpers`.
    virtual void drawAdditionalWindows();

    /// Draws what stands over everything: dialogs, progress, messages. One of them is open at a time, messages first.
    virtual void draw_helpers();

    /// Shows `message` in a modal window until the user confirms it. Messages that come meanwhile join it.
    virtual void showModalMessage(const std::string& message, NotificationType type);

    /// @return true when a shortcut took the key
    bool handleKey(const KeyEvent& event);

    /// Null before `init`.
    [[nodiscard]] ShortcutManager* shortcutManager() const;

    [[nodiscard]] FileDialog& fileDialog() const;

    /// Lets the user choose files, which are opened then.
    void chooseFilesToOpen();

    /// Lets the user choose a file, into which the scene is saved then.
    void chooseFileToSave();

    /// The width of the panel at the left in pixels; 0 in a window too small for it.
    [[nodiscard]] float leftPanelWidth() const;

    /// The height of the bar at the top in units of the design.
    [[nodiscard]] float topPanelHeight() const;

protected:
    /// Creates the shortcut manager where there is none and sets the menu's shortcuts.
    virtual void setupShortcuts_();

    virtual void drawTopPanel_();
    virtual void drawLeftPanel_();
    virtual void drawStatusLine_();

    /// Adds to the facts of what is selected.
    virtual void drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected);

    /// Null before `init` and after `shutdown`.
    [[nodiscard]] Viewer* viewer_() const;

private:
    struct State;

    void drawEmptySceneHint_();
    void saveTo_(const std::filesystem::path& path);

    std::unique_ptr<State> state_;
};

} // namespace VX
