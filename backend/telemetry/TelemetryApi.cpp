#include "TelemetryApi.h"

#include "LogStore.h"
#include "TelemetryRequests.h"
#include "backend/JsonAnswer.h"
#include "backend/Router.h"

#include <json/value.h>

#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr std::uint64_t statsLimit = 1U << 20U;
constexpr std::uint64_t logsLimit = 8U << 20U;

Router::Accept limited(std::uint64_t limit)
{
    return [limit](const HttpRequest&) { return HttpBodySink{.limit = limit}; };
}

/// Of the header "Authorization: Bearer TOKEN"; empty where there is none.
std::string bearerToken(const HttpRequest& request)
{
    constexpr std::string_view scheme = "Bearer ";
    const auto header = request.headers.find("Authorization");
    if (header == request.headers.end() || !header->second.starts_with(scheme))
        return {};
    return header->second.substr(scheme.size());
}

HttpResponse doneAnswer(int status = 200)
{
    return jsonAnswer(Json::Value(Json::objectValue), status);
}

HttpResponse sessionAnswer(const tl::expected<bool, std::string>& stored)
{
    if (!stored)
        return failureAnswer(stored.error());
    return *stored ? doneAnswer() : errorAnswer(404, "There is no such session.");
}

} // namespace

TelemetryApi::TelemetryApi(LogStore& store, UserOf userOf)
    : store_(store)
    , userOf_(std::move(userOf))
{
}

void TelemetryApi::addRoutes(Router& router)
{
    router.add(
        "POST", "/stats/log", [this](const auto& request, const auto& respond) { respond(stats_(request)); },
        limited(statsLimit));
    router.add(
        "POST", "/v1/logs", [this](const auto& request, const auto& respond) { respond(logs_(request)); },
        limited(logsLimit));
}

HttpResponse TelemetryApi::stats_(const HttpRequest& request) const
{
    const auto stats = StatsRequest::parse(request.body);
    if (!stats)
        return errorAnswer(400, stats.error());
    switch (stats->type)
    {
    case StatsRequest::Type::CreateSession:
        break;
    case StatsRequest::Type::LogAction:
        return sessionAnswer(store_.addActions(stats->session, stats->actions));
    case StatsRequest::Type::SetPlatform:
        return sessionAnswer(store_.setPlatform(stats->session, stats->platform, stats->version));
    }
    const auto session = store_.addSession(stats->email);
    if (!session)
        return failureAnswer(session.error());
    Json::Value document;
    document["sessionId"] = Json::Int64{*session};
    return jsonAnswer(document);
}

HttpResponse TelemetryApi::logs_(const HttpRequest& request) const
{
    const auto user = userOf_(bearerToken(request));
    if (!user)
        return errorAnswer(401, "Sign in to send log lines.");
    auto lines = parseLogLines(request.body);
    if (!lines)
        return errorAnswer(400, lines.error());
    for (LoggedLine& line : *lines)
        line.account = *user;
    if (const auto stored = store_.addLines(*lines); !stored)
        return failureAnswer(stored.error());
    return doneAnswer(201);
}

} // namespace VX
