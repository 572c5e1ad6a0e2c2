#pragma once

#include <net/HttpServer.h>

#include <functional>
#include <string>

namespace VX
{

class LogStore;
class Router;

/// POST /stats/log and POST /v1/logs: what applications report about their use, and their log lines. Errors are
/// answered as everywhere in the service, with status 400 for a wrong request and 404 for an unknown session.
/// @threads any
class TelemetryApi
{
public:
    /// @param store       must outlive it
    /// @param isSignedIn  tells whether an access token is good for sending log lines
    TelemetryApi(LogStore& store, std::function<bool(const std::string& accessToken)> isSignedIn);

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse stats_(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse logs_(const HttpRequest& request) const;

    LogStore& store_;
    const std::function<bool(const std::string&)> isSignedIn_;
};

} // namespace VX
