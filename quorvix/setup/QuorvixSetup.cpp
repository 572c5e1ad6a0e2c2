#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/setup/McpToolGate.h>
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/ServerSendSink.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMcp/Mcp.h>
#include <VXMesh/SystemInfo.h>
#include <VXMesh/Version.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Locale.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSignals.h>

#include <curl/curl.h>
#include <spdlog/spdlog.h>

#include <memory>

namespace VX
{

namespace
{

void startLogShipping()
{
    ServerSendSink::Params params;
    params.url = deployment().logs + "/v1/logs";
    params.serviceName = "Quorvix";
    params.serviceVersion = GetVXVersionString();
    params.platform = getOSNoSpaces();
    params.environment = "production";
    params.batchSize = 200;
    params.sendIntervalSec = 60;
    addServerSendSink(params);
}

void endLogShipping()
{
    if (const auto sink = getServerSendSink())
        sink->shutdown();
}

} // namespace

QuorvixSetup::QuorvixSetup()
{
    startCallback = startLogShipping;
    shutdownCallback = endLogShipping;
}

void QuorvixSetup::setupBasePlugins(Viewer* viewer) const
{
    viewer->setMenuPlugin(std::make_shared<QuorvixRibbonMenu>());
    const CURLsslset result = curl_global_sslset(CURLSSLBACKEND_OPENSSL, nullptr, nullptr);
    if (result != CURLSSLSET_OK)
        spdlog::warn("Failed to set SSL backend for cURL: error code {:#x}", static_cast<unsigned>(result));
    viewer->signals().shutdown.connect(
        []
        {
            if (const auto sink = getServerSendSink())
                sink->preShutdown();
        });
    Locale::addDomain("Quorvix");
}

void QuorvixSetup::setupFrameStatistics(Viewer*) const {}

void QuorvixSetup::setupMouseControls(Viewer*) const {}

void QuorvixSetup::setupConfiguration(Viewer* viewer) const
{
    ViewerSetup::setupConfiguration(viewer);
    viewer->setWindowTitle(std::make_shared<QuorvixWindowTitle>());
    Mcp::getDefaultServer().setToolValidator(checkMcpTool);
    // Before there are actions to gather, and once the viewer has its command line.
    CommandLoop::appendCommand([] { SessionLogs::followSetting(); });
}

} // namespace VX
