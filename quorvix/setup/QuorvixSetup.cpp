#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXViewer/CommandLoop.h>
#include <VXViewer/Locale.h>
#include <VXViewer/Viewer.h>

#include <curl/curl.h>
#include <spdlog/spdlog.h>

#include <memory>

namespace VX
{

void QuorvixSetup::setupBasePlugins(Viewer* viewer) const
{
    viewer->setMenuPlugin(std::make_shared<QuorvixRibbonMenu>());
    const CURLsslset result = curl_global_sslset(CURLSSLBACKEND_OPENSSL, nullptr, nullptr);
    if (result != CURLSSLSET_OK)
        spdlog::warn("Failed to set SSL backend for cURL: error code {:#x}", static_cast<unsigned>(result));
    Locale::addDomain("Quorvix");
}

void QuorvixSetup::setupFrameStatistics(Viewer*) const {}

void QuorvixSetup::setupMouseControls(Viewer*) const {}

void QuorvixSetup::setupConfiguration(Viewer* viewer) const
{
    ViewerSetup::setupConfiguration(viewer);
    viewer->setWindowTitle(std::make_shared<QuorvixWindowTitle>());
    // Before there are actions to gather, and once the viewer has its command line.
    CommandLoop::appendCommand([] { SessionLogs::followSetting(); });
}

} // namespace VX
