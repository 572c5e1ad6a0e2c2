#pragma once

#include <VXMesh/Progress.h>
#include <VXViewer/Export.h>
#include <VXViewer/Window.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class CornerControllerObject;
class FileOpening;
class HistoryStore;
class ImGuiMenu;
class MainLoop;
class Object;
class RecentFiles;
class SceneView;
class UiSession;
class ViewerPlugin;
class ViewerSettingsManager;
class ViewerTitle;
struct LoadedObjects;
struct ViewerSignals;

/// The program's one viewer: holds the window, the scene and what works on them, each a class of its own. It exists
/// without a window too, as in tests and before the window is created.
/// @threads the UI thread, but for `postEmptyEvent`
class VXVIEWER_API Viewer
{
public:
    Viewer();
    ~Viewer();

    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Closes everything and starts again as a new viewer. Other parts' references into the old one end here.
    void reset();

    /// Null before `setWindow`.
    [[nodiscard]] Window* window() const;

    /// Takes over `window` with its current context; null closes the one there is.
    void setWindow(std::unique_ptr<Window> window);

    /// Null where the window is off-screen or there is none.
    [[nodiscard]] GLFWwindow* glfwWindow() const;

    /// The drawing area of the window; empty without one.
    [[nodiscard]] PixelSize framebufferSize() const;

    /// The root of the scene tree.
    [[nodiscard]] Object& scene() const;

    [[nodiscard]] const std::shared_ptr<Object>& sceneRoot() const;

    /// The picture of the scene and its camera.
    [[nodiscard]] SceneView& view() const;

    /// The view cube; null where the view has none.
    [[nodiscard]] CornerControllerObject* cornerController() const;

    [[nodiscard]] MainLoop& loop() const;

    [[nodiscard]] FileOpening& fileOpening() const;

    /// The steps done to the scene. Never null.
    [[nodiscard]] const std::shared_ptr<HistoryStore>& getGlobalHistoryStore() const;

    /// The interface; null while none is shown.
    [[nodiscard]] UiSession* ui() const;

    /// Starts the interface in the window and initialises the menu plug-in and the other plug-ins.
    void startUi();

    /// Shuts the plug-ins and the interface down, in reverse order.
    void stopUi();

    /// Makes `menu` the one that draws the interface, in place of the one before.
    void setMenuPlugin(std::shared_ptr<ImGuiMenu> menu);

    /// Null before `setMenuPlugin`.
    [[nodiscard]] const std::shared_ptr<ImGuiMenu>& getMenuPlugin() const;

    /// Adds a plug-in beside the menu: initialised with it, or now where the interface has started; drawn by it.
    void addPlugin(std::shared_ptr<ViewerPlugin> plugin);

    /// Takes it out again, shut down where the interface has started. @return false when it is not there
    bool removePlugin(const ViewerPlugin& plugin);

    [[nodiscard]] const std::vector<std::shared_ptr<ViewerPlugin>>& plugins() const;

    /// What other parts connect to (ViewerSignals.h).
    [[nodiscard]] ViewerSignals& signals() const;

    /// Never null.
    [[nodiscard]] const std::shared_ptr<ViewerTitle>& windowTitle() const;

    /// Replaces what composes the title, and composes it.
    void setWindowTitle(std::shared_ptr<ViewerTitle> title);

    /// Gives the window the title that the composer makes.
    void updateTitle();

    /// "Quorvix": the first word of the title; empty before the launch.
    [[nodiscard]] const std::string& applicationName() const;

    void setApplicationName(std::string name);

    /// What the title calls the scene; empty while there is none.
    [[nodiscard]] const std::string& sceneName() const;

    void setSceneName(std::string name);

    /// The file that the scene came from or was saved to last; empty where there is none.
    [[nodiscard]] const std::filesystem::path& sceneFile() const;

    void setSceneFile(std::filesystem::path path);

    /// The files that the user opened or saved lately.
    [[nodiscard]] RecentFiles& recentFiles() const;

    /// The arguments behind the program's name, whole, in UTF-8.
    [[nodiscard]] const std::vector<std::string>& commandLineArguments() const;

    void setCommandLineArguments(std::vector<std::string> arguments);

    /// Null before the set-up created it.
    [[nodiscard]] ViewerSettingsManager* settingsManager() const;

    void setSettingsManager(std::unique_ptr<ViewerSettingsManager> manager);

    /// How many times the viewer was launched in this process, this time included; 0 before the first launch.
    [[nodiscard]] int launchCount() const;

    void setLaunchCount(int count);

    /// The dialog, dropped files and the command line open files with this extension (lower case, with its dot)
    /// through `opener` instead of the reader of the library.
    using FileOpener =
        std::function<tl::expected<LoadedObjects, std::string>(const std::filesystem::path&, const ProgressCallback&)>;
    void setFileOpener(const std::string& extension, FileOpener opener);

    /// Opens `paths` in the background and adds what they hold to the scene.
    void openFiles(const std::vector<std::filesystem::path>& paths);

    /// Draws at least `count` more frames. @param showLastOnly  the window keeps its picture until the last of them
    void incrementForceRedrawFrames(int count = 1, bool showLastOnly = false);

    /// Wakes the loop, which then draws a frame.
    /// @threads any, also while there is no window
    void postEmptyEvent();

    /// True once after `postEmptyEvent`; the loop asks.
    /// @threads any
    bool takeWakeUp();

    /// Ends the loop, whatever is not saved: `ImGuiMenu::askToClose` asks the user first.
    void requestClose();

    /// True after `requestClose`.
    [[nodiscard]] bool isClosing() const;

    /// With what the program will end; the first code other than 0 stays.
    void setExitCode(int exitCode);

    [[nodiscard]] int exitCode() const;

private:
    struct State;
    class Waker;

    void closeWindow_();

    std::unique_ptr<Waker> waker_;
    std::unique_ptr<State> state_;
};

/// The viewer of this process, with or without a window.
/// @threads any
VXVIEWER_API Viewer& getViewerInstance();

} // namespace VX
