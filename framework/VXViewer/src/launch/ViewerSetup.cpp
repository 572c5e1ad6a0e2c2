#include "../menu/Overlays.h"
#include "ExtendedLibraries.h"

#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSetup.h>

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
    return false;
}

bool ViewerSetup::shutdownMcp() const
{
    return true;
}

} // namespace VX
