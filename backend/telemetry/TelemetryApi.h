#pragma once

#include "backend/accounts/WorkerPool.h"

#include <net/HttpServer.h>

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

class LogStore;
class Router;

/// POST /stats/log and POST /v1/logs: what applications report about their use, and their log lines. Errors are
/// answered as everywhere in the service, with status 400 for a wrong request, 401 for log lines
/// without a good access token, 404 for an unknown session and 503 where too many large batches wait.
/// The lines that a client gathered while it could not reach the service come in one batch: above 1 MiB it goes to a
/// file, and is stored on a thread of its own, a few lines at a time.
/// @threads any
class TelemetryApi
{
public:
    /// The address of the user whom an access token belongs to, which may be unknown and so empty; nothing where the
    /// token is good for nothing.
    using UserOf = std::function<std::optional<std::string>(const std::string& accessToken)>;

    /// A path for a file of its own, which the service removes.
    using NewFile = std::function<std::filesystem::path()>;

    /// @param store  must outlive it
    TelemetryApi(LogStore& store, UserOf userOf, NewFile newFile);
    ~TelemetryApi();

    TelemetryApi(const TelemetryApi&) = delete;
    TelemetryApi& operator=(const TelemetryApi&) = delete;

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse stats_(const HttpRequest& request) const;
    [[nodiscard]] tl::expected<HttpBodySink, HttpResponse> acceptLogs_(const HttpRequest& head) const;
    void logs_(const HttpRequest& request, const HttpHandler::Respond& respond);
    [[nodiscard]] HttpResponse storeFile_(const std::filesystem::path& file, const std::string& user) const;
    [[nodiscard]] HttpResponse store_(std::string_view body, const std::string& user,
                                      const std::function<void(std::size_t)>& passed) const;

    LogStore& logStore_;
    const UserOf userOf_;
    const NewFile newFile_;
    std::atomic<bool> stopping_ = false;
    WorkerPool largeBatches_;
};

} // namespace VX
