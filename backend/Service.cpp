#include "Service.h"

#include "BlobStore.h"
#include "ConversionWorkers.h"
#include "ConverterApi.h"
#include "DataFolder.h"
#include "Housekeeping.h"
#include "JobQueue.h"
#include "JsonAnswer.h"
#include "PresignedUrl.h"
#include "Router.h"
#include "SigningSecret.h"
#include "StorageApi.h"
#include "accounts/AccountServices.h"
#include "telemetry/LogStore.h"
#include "telemetry/TelemetryApi.h"

#include <VXMesh/SystemPath.h>
#include <VXMesh/Version.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <utility>

namespace VX
{

namespace
{

ConverterApi::Settings converterSettings(const ServerConfig& config, const std::shared_future<std::string>& publicUrl,
                                         AccountServices& accounts)
{
    return {.mayConvert = [&accounts, requireToken = config.requireToken](const std::string& token)
            { return !requireToken || accounts.isSignedIn(token); },
            .uploadLimit = config.uploadLimit,
            .linkLifetime = config.linkLifetime,
            .statusHold = config.statusHold,
            .publicUrl = [publicUrl] { return publicUrl.get(); }};
}

ConversionSettings conversionSettings(const ServerConfig& config, const DataFolder& folder)
{
    return {.converter = config.converter, .workFolder = folder.work(), .limits = config.limits, .lease = config.lease};
}

void answerHealth(const HttpRequest&, const HttpHandler::Respond& respond)
{
    Json::Value document;
    document["status"] = "ok";
    respond(jsonAnswer(document));
}

/// The program is installed together with the application, so it knows the newest version of it. What a development
/// build puts in front is no part of the number.
void answerVersion(const HttpRequest&, const HttpHandler::Respond& respond)
{
    const std::string version = GetVXVersionString();
    HttpResponse response;
    response.headers["Content-Type"] = "text/plain";
    response.headers["Cache-Control"] = "no-store";
    response.body = version.substr(std::min(version.size(), version.find_first_of("0123456789")));
    respond(std::move(response));
}

/// Where the service keeps what outlives it.
struct Stores
{
    std::unique_ptr<JobQueue> queue;
    BlobStore blobs;
    std::unique_ptr<AccountServices> accounts;
    std::unique_ptr<LogStore> logs;
};

} // namespace

class Service::Impl
{
public:
    Impl(ServerConfig config, const DataFolder& folder, const SigningSecret& secret, Stores stores);

    [[nodiscard]] tl::expected<void, std::string> serve(const HttpServer::Settings& http);

    [[nodiscard]] std::uint16_t port() const { return server_->port(); }

private:
    void addRoutes_();
    void forgetExpired_();

    const ServerConfig config_;
    const DataFolder folder_;
    const std::unique_ptr<JobQueue> queue_;
    const BlobStore blobs_;
    const PresignedUrl links_;
    const std::unique_ptr<AccountServices> accounts_;
    const std::unique_ptr<LogStore> logs_;
    std::promise<std::string> publicUrl_; ///< known once the port is; a request that is faster waits for it
    ConverterApi converter_;
    StorageApi storage_;
    TelemetryApi telemetry_;
    Router router_;
    ConversionWorkers workers_;
    std::unique_ptr<Housekeeping> housekeeping_;
    std::unique_ptr<HttpServer> server_; ///< last, because its threads use the others
};

Service::Impl::Impl(ServerConfig config, const DataFolder& folder, const SigningSecret& secret, Stores stores)
    : config_(std::move(config))
    , folder_(folder)
    , queue_(std::move(stores.queue))
    , blobs_(std::move(stores.blobs))
    , links_(secret)
    , accounts_(std::move(stores.accounts))
    , logs_(std::move(stores.logs))
    , converter_(*queue_, blobs_, links_, converterSettings(config_, publicUrl_.get_future().share(), *accounts_))
    , storage_(blobs_, links_)
    , telemetry_(
          *logs_, [this](const std::string& token) { return accounts_->userOf(token); },
          [this] { return blobs_.incomingFile(); })
    , workers_(*queue_, blobs_, conversionSettings(config_, folder_))
{
    addRoutes_();
    queue_->setListener(
        [this]
        {
            workers_.wake();
            converter_.jobsChanged();
        });
}

void Service::Impl::addRoutes_()
{
    const auto download = [this](const auto& request, const auto& respond) { storage_.download(request, respond); };
    router_.add("POST", "/converter/v2/request",
                [this](const auto& request, const auto& respond) { converter_.request(request, respond); });
    router_.add("POST", "/converter/v2/convert",
                [this](const auto& request, const auto& respond) { converter_.convert(request, respond); });
    router_.add("GET", "/converter/v2/status",
                [this](const auto& request, const auto& respond) { converter_.status(request, respond); });
    router_.add(
        "PUT", "/storage/", [this](const auto& request, const auto& respond) { storage_.upload(request, respond); },
        [this](const auto& head) { return storage_.acceptUpload(head); });
    router_.add("GET", "/storage/", download);
    router_.add("HEAD", "/storage/", download);
    accounts_->addRoutes(router_);
    telemetry_.addRoutes(router_);
    router_.add("GET", "/version/latesttag", answerVersion);
    router_.add("GET", "/healthz", answerHealth);
}

void Service::Impl::forgetExpired_()
{
    accounts_->forgetExpired();
    if (const auto forgotten = logs_->forgetLinesOlderThan(std::chrono::system_clock::now() - config_.keepLogs);
        !forgotten)
        spdlog::warn("Old log lines cannot be removed: {}", forgotten.error());
}

tl::expected<void, std::string> Service::Impl::serve(const HttpServer::Settings& http)
{
    auto server = HttpServer::start(http, router_);
    if (!server)
        return tl::unexpected(std::move(server.error()));
    server_ = std::move(*server);
    publicUrl_.set_value(config_.publicUrl.empty() ? fmt::format("http://127.0.0.1:{}", port()) : config_.publicUrl);
    workers_.start(config_.workers);
    housekeeping_ = std::make_unique<Housekeeping>(*queue_, blobs_, folder_.work(), config_.keep, config_.lease,
                                                   [this] { forgetExpired_(); });
    return {};
}

tl::expected<std::unique_ptr<Service>, std::string>
Service::start(ServerConfig config, const std::filesystem::path& dataFolder, const HttpServer::Settings& http)
{
    if (config.converter.empty())
    {
        const auto program = SystemPath::getExecutablePath();
        if (!program)
            return tl::unexpected(program.error());
        config.converter = program->parent_path() / "quorvix-convert";
    }

    const auto folder = DataFolder::open(dataFolder);
    if (!folder)
        return tl::unexpected(folder.error());
    auto blobs = BlobStore::open(folder->blobs());
    if (!blobs)
        return tl::unexpected(std::move(blobs.error()));
    const auto secret = loadOrCreateSecret(folder->secret());
    if (!secret)
        return tl::unexpected(secret.error());
    auto queue = JobQueue::open(folder->database(), {.lease = config.lease});
    if (!queue)
        return tl::unexpected(std::move(queue.error()));

    auto accounts = AccountServices::open(config, *folder, *secret);
    if (!accounts)
        return tl::unexpected(std::move(accounts.error()));

    auto logs = LogStore::open(folder->telemetry());
    if (!logs)
        return tl::unexpected(std::move(logs.error()));

    Stores stores{std::move(*queue), std::move(*blobs), std::move(*accounts), std::move(*logs)};
    auto impl = std::make_unique<Impl>(std::move(config), *folder, *secret, std::move(stores));
    if (auto serving = impl->serve(http); !serving)
        return tl::unexpected(std::move(serving.error()));
    return std::unique_ptr<Service>(new Service(std::move(impl)));
}

Service::Service(std::unique_ptr<Impl> impl)
    : impl_(std::move(impl))
{
}

Service::~Service() = default;

std::uint16_t Service::port() const
{
    return impl_->port();
}

} // namespace VX
