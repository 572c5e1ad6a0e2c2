#include "../GlfwWindow.h"

#include <VXMesh/Config.h>
#include <VXMesh/Logger.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerLaunch.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSetup.h>
#include <VXViewer/ViewerSignals.h>
#include <VXViewer/WebRequests.h>

#include <spdlog/spdlog.h>

#include <utility>

namespace VX
{

namespace
{

tl::expected<std::unique_ptr<Window>, std::string> createWindow(const LaunchParams& params)
{
    if (!params.hidden)
    {
        auto window = GlfwWindow::create(params.size, params.applicationName);
        if (window)
            return std::unique_ptr<Window>(std::move(*window));
        if (params.noDisplay)
            params.noDisplay(window.error());
        else
            spdlog::warn("{} The viewer runs without a window.", window.error());
    }
    auto window = OffscreenWindow::create(params.size, params.offscreenScale);
    if (!window)
        return tl::make_unexpected(window.error());
    return std::unique_ptr<Window>(std::move(*window));
}

void runSteps(Viewer& viewer, const LaunchParams& params, const ViewerSetup& setup)
{
    setup.setupBasePlugins(&viewer);
    setup.setupFrameStatistics(&viewer);
    setup.setupMouseControls(&viewer);
    setup.setupSettingsManager(&viewer, params.applicationName, params.resetSettings);
    setup.setupConfiguration(&viewer);
    setup.setupExtendedLibraries();
    if (params.serveAgents)
        static_cast<void>(setup.setupMcp());
    if (setup.startCallback)
        setup.startCallback();
}

/// A run without a window on the screen leaves no trace in the user's settings.
bool keepsSettings(const Viewer& viewer, const LaunchParams& params)
{
    return params.showInterface && viewer.glfwWindow() && viewer.settingsManager();
}

/// The viewer itself starts anew with every launch.
int nextLaunch()
{
    static int launches = 0;
    return ++launches;
}

void shutDown(Viewer& viewer, const LaunchParams& params, const ViewerSetup& setup)
{
    WebRequests::beginShutdown();
    viewer.signals().shutdown();
    if (keepsSettings(viewer, params))
        viewer.settingsManager()->saveSettings(viewer);
    ProgressBar::shutdown();
    viewer.stopUi();
    static_cast<void>(setup.shutdownMcp());
    // Before the libraries whose code the plug-ins may be.
    viewer.reset();
    setup.unloadExtendedLibraries();
    if (setup.shutdownCallback)
        setup.shutdownCallback();
    WebRequests::finish();
}

void runLoop(Viewer& viewer, const LaunchParams& params)
{
    viewer.recentFiles().setRecording(keepsSettings(viewer, params));
    if (keepsSettings(viewer, params))
        viewer.settingsManager()->loadSettings(viewer);
    if (params.showInterface)
        viewer.startUi();
    viewer.loop().layOut();
    if (params.whenLoaded)
        viewer.loop().whenLoaded([&] { params.whenLoaded(viewer); });
    viewer.loop().run();
}

void runWindow(Viewer& viewer, const LaunchParams& params)
{
    viewer.openFiles(params.files);
    auto window = createWindow(params);
    if (window)
    {
        viewer.setWindow(std::move(*window));
        runLoop(viewer, params);
    }
    else
    {
        spdlog::critical("{}", window.error());
        viewer.setExitCode(1);
    }
}

} // namespace

int launchViewer(std::vector<std::string> arguments, const LaunchParams& params, const ViewerSetup& setup)
{
    Logger::instance();
    Viewer& viewer = getViewerInstance();
    viewer.setLaunchCount(nextLaunch());
    viewer.setCommandLineArguments(std::move(arguments));
    if (params.fileMessage)
        viewer.fileOpening().setMessageHandler(params.fileMessage);
    runSteps(viewer, params, setup);
    // Unless a step found that the program cannot run.
    if (!viewer.isClosing())
        runWindow(viewer, params);
    const int exitCode = viewer.exitCode();
    shutDown(viewer, params, setup);
    return exitCode;
}

} // namespace VX
