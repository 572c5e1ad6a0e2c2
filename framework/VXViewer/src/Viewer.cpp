#include "LoopWaker.h"
#include "WindowFacts.h"

#include <VXMesh/Object.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Locale.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSettingsPlugin.h>
#include <VXViewer/ViewerSignals.h>
#include <VXViewer/ViewerTitle.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace VX
{

/// Wakes the loop and remembers that a frame is wanted.
class Viewer::Waker
{
public:
    // It is used up to the end of this.
    Waker() { LoopWaker::instance(); }

    void setWindow(Window* window) { LoopWaker::instance().setWindow(window); }

    void wake()
    {
        woken_ = true;
        LoopWaker::instance().wake();
    }

    bool takeWakeUp() { return woken_.exchange(false); }

private:
    std::atomic<bool> woken_ = false;
};

struct Viewer::State
{
    explicit State(Viewer& viewer)
        : scene(std::make_shared<Object>())
        , view(scene)
        , files(viewer)
        , loop(viewer)
        , languageConnection(Locale::onChanged(
              [&viewer]
              {
                  viewer.cornerController()->translateLabels();
                  viewer.incrementForceRedrawFrames(3);
              }))
    {
    }

    ViewerSignals signals;
    std::unique_ptr<Window> window;
    std::shared_ptr<Object> scene;
    std::shared_ptr<HistoryStore> history = std::make_shared<HistoryStore>();
    SceneView view;
    FileOpening files;
    MainLoop loop;
    std::unique_ptr<UiSession> ui;
    std::shared_ptr<ImGuiMenu> menu;
    std::vector<std::shared_ptr<ViewerPlugin>> plugins;
    std::shared_ptr<ViewerTitle> title = std::make_shared<ViewerTitle>();
    std::unique_ptr<ViewerSettingsManager> settings;
    std::string applicationName;
    std::string sceneName;
    std::filesystem::path sceneFile;
    RecentFiles recentFiles;
    std::vector<std::string> arguments;
    int launchCount = 0;
    int exitCode = 0;
    bool closing = false;
    boost::signals2::scoped_connection languageConnection;
};

Viewer::Viewer()
    : waker_(std::make_unique<Waker>())
    , state_(std::make_unique<State>(*this))
{
}

Viewer::~Viewer()
{
    closeWindow_();
}

void Viewer::reset()
{
    ProgressBar::shutdown();
    CommandLoop::clear();
    closeWindow_();
    state_ = std::make_unique<State>(*this);
}

Window* Viewer::window() const
{
    return state_->window.get();
}

void Viewer::setWindow(std::unique_ptr<Window> window)
{
    if (state_->window)
    {
        // What runs may come back to windows of the interface.
        for (const ProgressInfo& task : ProgressBar::tasks())
            ProgressBar::cancel(task.id);
        ProgressBar::shutdown();
    }
    closeWindow_();
    if (!window)
        return;
    state_->window = std::move(window);
    waker_->setWindow(state_->window.get());
    // The end of another one took the graphics of the thread along.
    state_->window->makeCurrent();
    state_->view.startGraphics();
    contributeWindowFacts(*state_->window);
    updateTitle();
}

void Viewer::closeWindow_()
{
    if (!state_->window)
        return;
    stopUi();
    state_->window->makeCurrent();
    state_->view.stopGraphics();
    withdrawWindowFacts();
    waker_->setWindow(nullptr);
    state_->window.reset();
}

GLFWwindow* Viewer::glfwWindow() const
{
    return state_->window ? state_->window->glfwWindow() : nullptr;
}

PixelSize Viewer::framebufferSize() const
{
    return state_->window ? state_->window->framebufferSize() : PixelSize{};
}

Object& Viewer::scene() const
{
    return *state_->scene;
}

const std::shared_ptr<Object>& Viewer::sceneRoot() const
{
    return state_->scene;
}

SceneView& Viewer::view() const
{
    return state_->view;
}

CornerControllerObject* Viewer::cornerController() const
{
    return &state_->view.cornerController();
}

MainLoop& Viewer::loop() const
{
    return state_->loop;
}

FileOpening& Viewer::fileOpening() const
{
    return state_->files;
}

const std::shared_ptr<HistoryStore>& Viewer::getGlobalHistoryStore() const
{
    return state_->history;
}

UiSession* Viewer::ui() const
{
    return state_->ui.get();
}

void Viewer::startUi()
{
    state_->ui = std::make_unique<UiSession>(*state_->window);
    // Those that the menu or a plug-in adds meanwhile are initialised as they come.
    const std::vector plugins(state_->plugins);
    if (state_->menu)
        state_->menu->init(this);
    for (const std::shared_ptr<ViewerPlugin>& plugin : plugins)
        plugin->init(this);
}

void Viewer::stopUi()
{
    if (!state_->ui)
        return;
    const std::vector plugins(state_->plugins);
    std::for_each(plugins.rbegin(), plugins.rend(), [](const auto& plugin) { plugin->shutdown(); });
    if (state_->menu)
        state_->menu->shutdown();
    ViewerSettingsPlugin::instance()->reset();
    state_->ui.reset();
}

void Viewer::setMenuPlugin(std::shared_ptr<ImGuiMenu> menu)
{
    state_->menu = std::move(menu);
}

const std::shared_ptr<ImGuiMenu>& Viewer::getMenuPlugin() const
{
    return state_->menu;
}

void Viewer::addPlugin(std::shared_ptr<ViewerPlugin> plugin)
{
    ViewerPlugin& added = *plugin;
    state_->plugins.push_back(std::move(plugin));
    if (state_->ui)
        added.init(this);
}

bool Viewer::removePlugin(const ViewerPlugin& plugin)
{
    const auto found = std::find_if(state_->plugins.begin(), state_->plugins.end(),
                                    [&](const auto& each) { return each.get() == &plugin; });
    if (found == state_->plugins.end())
        return false;
    const std::shared_ptr<ViewerPlugin> removed = std::move(*found);
    state_->plugins.erase(found);
    if (state_->ui)
        removed->shutdown();
    return true;
}

const std::vector<std::shared_ptr<ViewerPlugin>>& Viewer::plugins() const
{
    return state_->plugins;
}

ViewerSignals& Viewer::signals() const
{
    return state_->signals;
}

const std::shared_ptr<ViewerTitle>& Viewer::windowTitle() const
{
    return state_->title;
}

void Viewer::setWindowTitle(std::shared_ptr<ViewerTitle> title)
{
    state_->title = std::move(title);
    updateTitle();
}

void Viewer::updateTitle()
{
    if (state_->window)
        state_->window->setTitle(state_->title->compose());
}

const std::string& Viewer::applicationName() const
{
    return state_->applicationName;
}

void Viewer::setApplicationName(std::string name)
{
    state_->applicationName = std::move(name);
    updateTitle();
}

const std::string& Viewer::sceneName() const
{
    return state_->sceneName;
}

void Viewer::setSceneName(std::string name)
{
    state_->sceneName = std::move(name);
    updateTitle();
}

const std::filesystem::path& Viewer::sceneFile() const
{
    return state_->sceneFile;
}

void Viewer::setSceneFile(std::filesystem::path path)
{
    state_->sceneFile = std::move(path);
}

RecentFiles& Viewer::recentFiles() const
{
    return state_->recentFiles;
}

const std::vector<std::string>& Viewer::commandLineArguments() const
{
    return state_->arguments;
}

void Viewer::setCommandLineArguments(std::vector<std::string> arguments)
{
    state_->arguments = std::move(arguments);
}

ViewerSettingsManager* Viewer::settingsManager() const
{
    return state_->settings.get();
}

void Viewer::setSettingsManager(std::unique_ptr<ViewerSettingsManager> manager)
{
    state_->settings = std::move(manager);
}

int Viewer::launchCount() const
{
    return state_->launchCount;
}

void Viewer::setLaunchCount(int count)
{
    state_->launchCount = count;
}

void Viewer::setFileOpener(const std::string& extension, FileOpener opener)
{
    state_->files.setOpener(extension, std::move(opener));
}

void Viewer::openFiles(const std::vector<std::filesystem::path>& paths)
{
    state_->files.open(paths);
}

void Viewer::incrementForceRedrawFrames(int count, bool showLastOnly)
{
    state_->loop.requestFrames(count, showLastOnly);
}

void Viewer::postEmptyEvent()
{
    waker_->wake();
}

bool Viewer::takeWakeUp()
{
    return waker_->takeWakeUp();
}

void Viewer::requestClose()
{
    state_->closing = true;
    if (state_->window)
        state_->window->requestClose();
}

bool Viewer::isClosing() const
{
    return state_->closing;
}

void Viewer::setExitCode(int exitCode)
{
    if (state_->exitCode == 0)
        state_->exitCode = exitCode;
}

int Viewer::exitCode() const
{
    return state_->exitCode;
}

Viewer& getViewerInstance()
{
    static Viewer viewer;
    return viewer;
}

} // namespace VX
