#include "launcher/Launcher.h"

#include "launcher/BatchOutput.h"
#include "launcher/LocalAccount.h"
#include "launcher/LocalServices.h"
#include "launcher/ParentWatch.h"
#include "launcher/StepOpener.h"
#include "launcher/TerminationSignals.h"
#include "launcher/UiDocument.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/setup/QuorvixSetup.h>

#include <VXMesh/StringConvert.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerLaunch.h>
#include <VXViewer/ViewerSetup.h>
#include <VXViewer/WebRequests.h>

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

/// The services to run: null where the deployment names others.
using Services = std::unique_ptr<LocalServices>;

/// Reads the deployment record, binds the port of the embedded services and fixes the record.
tl::expected<Services, std::string> chooseServices(const CommandLine& line)
{
    auto record = loadDeployment(deploymentSources(line.deployment));
    if (!record)
        return tl::unexpected(record.error());
    Services services;
    if (record->services == Deployment::Services::Embedded)
    {
        auto bound = LocalServices::bind();
        if (!bound)
            return tl::unexpected(bound.error());
        services = std::move(*bound);
        *record = withEmbeddedServices(std::move(*record), services->port());
    }
    if (!record->caFile.empty())
        WebRequests::setCaFile(record->caFile);
    static_cast<void>(setDeployment(std::move(*record)));
    return services;
}

void reportOnStandardError(NotificationType type, const std::string& text)
{
    fmt::print(stderr, "{}\n", text);
    if (type == NotificationType::Error)
        noteFailure(getViewerInstance());
}

/// A run that was to write something and did not has failed.
void endOnRequest(bool batch)
{
    Viewer& viewer = getViewerInstance();
    if (batch)
    {
        fmt::print(stderr, "Quorvix was asked to end before it was done: nothing was written.\n");
        noteFailure(viewer);
    }
    viewer.requestClose();
}

/// The viewer as `line` asks for it, but for what it is to do with the files.
LaunchParams launchParams(const CommandLine& line)
{
    LaunchParams params;
    params.hidden = line.hidden || line.isBatch();
    params.showInterface = !line.screenshot && !line.sceneInfo;
    if (line.size)
        params.size = {line.size->width, line.size->height};
    params.files = line.files;
    params.serveAgents = !line.isBatch();
    params.noDisplay = [](const std::string& reason)
    {
        fmt::print(stderr, "{} Quorvix runs without a window; Ctrl+C ends it.\n", reason);
        // Nobody can read a modal message.
        getViewerInstance().fileOpening().setMessageHandler(reportOnStandardError);
    };
    if (params.hidden)
        params.fileMessage = reportOnStandardError;
    if (line.isBatch())
        params.whenLoaded = [line](Viewer& viewer) { writeBatchOutput(viewer, line); };
    return params;
}

/// Whether the user has asked all programs not to report what is done with them (consoledonottrack.com).
bool isTrackingForbidden()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment
    const char* value = std::getenv("DO_NOT_TRACK");
    return value != nullptr && *value != '\0' && std::string_view(value) != "0";
}

/// Whether the local account is to be signed in: nobody else wants to be, nor was when the program ran last.
bool wantsLocalAccount(const CommandLine& line, DeepLink link)
{
    if (line.credentials || link != DeepLink::None)
        return false;
    const std::string login = loadAuthToken().login;
    return login.empty() || login == LocalAccount::address;
}

/// Adds what the product reads from the command line.
void addProductArguments(std::vector<std::string>& arguments, const CommandLine& line, DeepLink link,
                         bool hasLocalServices)
{
    if (isTrackingForbidden())
        arguments.emplace_back("-noTelemetry");
    if (!hasLocalServices || !wantsLocalAccount(line, link))
        return;
    const auto credentials = LocalAccount::provide(LocalServices::program(), LocalServices::dataFolder());
    if (credentials)
        arguments.insert(arguments.end(), {"-creds", utf8string(*credentials)});
}

} // namespace

int runLauncher(const CommandLine& line, std::vector<std::string> arguments, DeepLink link)
{
    auto services = chooseServices(line);
    if (!services)
    {
        fmt::print(stderr, "{}\n", services.error());
        return 2;
    }
    if (!line.isPlain())
        addProductArguments(arguments, line, link, *services != nullptr);
    if (*services && !line.isPlain())
        (*services)->start();
    installStepOpener(getViewerInstance(), services->get());

    const TerminationSignals signals([batch = line.isBatch()]
                                     { CommandLoop::appendCommand([batch] { endOnRequest(batch); }); });
    std::optional<ParentWatch> parent;
    if (line.parent)
        parent.emplace(*line.parent, [] { CommandLoop::appendCommand([] { getViewerInstance().requestClose(); }); });
    if (line.isPlain())
        return launchViewer(std::move(arguments), launchParams(line), ViewerSetup());
    applyUiDocumentWhenReady(uiDocumentSources(line.uiDocument));
    return launchViewer(std::move(arguments), launchParams(line), QuorvixSetup());
}

} // namespace VX
