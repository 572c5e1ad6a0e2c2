#include "../agent/AgentServer.h"
#include "../menu/Overlays.h"
#include "ExtendedLibraries.h"

#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSetup.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <memory>
#include <utility>

namespace VX
{

ViewerSetup::~ViewerSetup() = default;

void ViewerSetup::setupBasePlugins(Viewer* viewer) const
{
    viewer->setMenuPlugin(std::make_shared<RibbonMenu>());
}

void ViewerSetup::setupFrameStatistics(Viewer* viewer) const
{
    viewer->addPlugin(std::make_shared<FrameStatisticsOverlay>());
}

void ViewerSetup::setupMouseControls(Viewer* viewer) const
{
    viewer->addPlugin(std::make_shared<MouseControlsOverlay>());
}

void ViewerSetup::setupSettingsManager(Viewer* viewer, const std::string& applicationName, bool reset) const
{
    viewer->setApplicationName(applicationName);
    auto manager = std::make_unique<ViewerSettingsManager>();
    if (reset)
        manager->reset();
    manager->loadSettings(*viewer);
    viewer->setSettingsManager(std::move(manager));
}

void ViewerSetup::setupConfiguration(Viewer*) const {}

void ViewerSetup::setupExtendedLibraries() const
{
    ExtendedLibraries::instance().load();
}

void ViewerSetup::unloadExtendedLibraries() const
{
    ExtendedLibraries::instance().unload();
}

bool ViewerSetup::setupMcp() const
{
    Viewer& viewer = getViewerInstance();
    const auto begun = AgentServer::instance().begin(viewer);
    if (begun)
        return true;
    if (!AgentServer::isPortNamed(viewer))
    {
        spdlog::warn("Agents cannot use the viewer: {}", begun.error());
        return false;
    }
    // Who names a port has clients that know no other.
    fmt::print(stderr, "{}\n", begun.error());
    viewer.setExitCode(2);
    viewer.requestClose();
    return false;
}

bool ViewerSetup::shutdownMcp() const
{
    return AgentServer::instance().end();
}

} // namespace VX
