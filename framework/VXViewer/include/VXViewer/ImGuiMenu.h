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
class SceneFiles;
class ShortcutManager;

/// What every menu of the viewer has: the scene tree and the facts of what is selected at the left, the status
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

    /// Takes over what the menu keeps in the settings, which were read anew. Nothing here.
    virtual void settingsLoaded();

    /// @return true when a shortcut took the key
    virtual bool handleKey(const KeyEvent& event);

    /// True while something stands before the whole interface, as a sign-in: no shortcut acts then, and files that are
    /// dropped stay closed. False here.
    [[nodiscard]] virtual bool isCovered() const;

    /// True while the menu waits for what decides how the window looks: nothing counts as loaded then. False here.
    [[nodiscard]] virtual bool isStartingUp() const;

    /// Null before `init`.
    [[nodiscard]] ShortcutManager* shortcutManager() const;

    [[nodiscard]] FileDialog& fileDialog() const;

    /// Lets the user choose files, which are opened then.
    void chooseFilesToOpen();

    /// Saves the scene and parts of it.
    [[nodiscard]] SceneFiles& sceneFiles() const;

    /// Closes the program as its window's button does: the user is asked about what is not saved.
    void askToClose();

    /// Whether the program may close at once; otherwise the user is asked, and it closes later or not at all.
    [[nodiscard]] virtual bool mayClose();

    /// Lets the user type a name for `object` in the scene list. @return false where the list is not shown
    bool renameInSceneList(const std::shared_ptr<Object>& object);

    /// How many pixels of the scene, from its upper edge, lie below what floats there.
    [[nodiscard]] virtual int coveredTop() const { return 0; }

    /// The width of the panel at the left in pixels; 0 in a window too small for it.
    [[nodiscard]] virtual float leftPanelWidth() const;

    /// The height of what `drawTopPanel_` draws in units of the design.
    [[nodiscard]] virtual float topPanelHeight() const;

protected:
    /// Creates the shortcut manager where there is none. Derived menus set their shortcuts.
    virtual void setupShortcuts_();

    /// Draws the bar at the top. Nothing here.
    virtual void drawTopPanel_();
    virtual void drawLeftPanel_();
    virtual void drawStatusLine_();

    /// Draws what an empty scene shows: how files are opened.
    virtual void drawEmptySceneHint_();

    /// Draws over the scene list. Nothing here.
    virtual void drawSceneListButtons_();

    /// Adds to the facts of what is selected.
    virtual void drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>& selected);

    /// Called in the first frame of the context menu of the scene list.
    virtual void sceneContextAppeared_();

    /// Null before `init` and after `shutdown`.
    [[nodiscard]] Viewer* viewer_() const;

    /// The pixels that the bars and panels leave to the scene, from the upper left corner of the window.
    [[nodiscard]] PixelRect sceneArea_() const;

private:
    struct State;

    std::unique_ptr<State> state_;
};

} // namespace VX
