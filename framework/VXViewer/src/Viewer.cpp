#include "WindowFacts.h"

#include <VXMesh/Object.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSignals.h>
#include <VXViewer/ViewerTitle.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace VX
{

/// Reaches the loop from any thread, whether there is a window at the moment or
/// not.
class Viewer::Waker
{
public:
    void setWindow(Window* window)
    {
        const MutexLock lock(mutex_);
        window_ = window;
    }

    void wake()
    {
        woken_ = true;
        const MutexLock lock(mutex_);
        if (window_)
            window_->wake();
    }

    bool takeWakeUp() { return woken_.exchange(false); }

private:
    Mutex mutex_;
    Window* window_ VX_GUARDED_BY(mutex_) = nullptr;
    std::atomic<bool> woken_ = false;
};

struct Viewer::State
{
    explicit State(Viewer& viewer)
        : scene(std::make_shared<Object>())
        , view(scene)
        , files(viewer)
        , loop(viewer)
    {
    }

    ViewerSignals signals;
    std::unique_ptr<Window> window;
    std::shared_ptr<Object> scene;
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
    std::vector<std::string> arguments;
    int launchCount = 0;
    int exitCode = 0;
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
    closeWindow_();
    if (!window)
        return;
    state_->window = std::move(window);
    waker_->setWindow(state_->window.get());
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

UiSession* Viewer::ui() const
{
    return state_->ui.get();
}

void Viewer::startUi()
{
    state_->ui = std::make_unique<UiSession>(*state_->window);
    if (state_->menu)
        state_->menu->init(this);
    for (const std::shared_ptr<ViewerPlugin>& plugin : state_->plugins)
        plugin->init(this);
}

void Viewer::stopUi()
{
    if (!state_->ui)
        return;
    std::for_each(state_->plugins.rbegin(), state_->plugins.rend(), [](const auto& plugin) { plugin->shutdown(); });
    if (state_->menu)
        state_->menu->shutdown();
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
    state_->plugins.push_back(std::move(plugin));
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
    if (state_->window)
        state_->window->requestClose();
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
