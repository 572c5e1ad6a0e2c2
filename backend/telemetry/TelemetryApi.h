#pragma once

#include <net/HttpServer.h>

#include <functional>
#include <optional>
#include <string>

namespace VX
{

class LogStore;
class Router;

/// POST /stats/log and POST /v1/logs: what applications report about their use, and their log lines. Errors are
/// answered as everywhere in the service, with status 400 for a wrong request, 401 for log lines
/// without a good access token and 404 for an unknown session.
/// @threads any
class TelemetryApi
{
public:
    /// The address of the user whom an access token belongs to, which may be unknown and so empty; nothing where the
    /// token is good for nothing.
    using UserOf = std::function<std::optional<std::string>(const std::string& accessToken)>;

    /// @param store  must outlive it
    TelemetryApi(LogStore& store, UserOf userOf);

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse stats_(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse logs_(const HttpRequest& request) const;

    LogStore& store_;
    const UserOf userOf_;
};

} // namespace VX
