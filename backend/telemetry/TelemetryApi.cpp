#include "TelemetryApi.h"

#include "LogItemsReader.h"
#include "LogStore.h"
#include "TelemetryRequests.h"
#include "backend/AnnouncedLength.h"
#include "backend/JsonAnswer.h"
#include "backend/Router.h"

#include <VXMesh/MappedFile.h>

#include <json/value.h>
#include <spdlog/spdlog.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr std::uint64_t statsLimit = 1U << 20U;

/// Some hours of a program that writes a thousand lines a second.
constexpr std::uint64_t logsLimit = std::uint64_t{4} << 30U;

constexpr std::uint64_t memoryLimit = 1U << 20U; ///< longer batches of log lines go to a file
constexpr std::size_t linesInASlice = 1000;
constexpr std::size_t mostLargeBatches = 8; ///< that may wait

class FileToRemove
{
public:
    explicit FileToRemove(std::filesystem::path path)
        : path_(std::move(path))
    {
    }

    ~FileToRemove()
    {
        std::error_code ignored; // housekeeping removes what stays behind
        std::filesystem::remove(path_, ignored);
    }

    FileToRemove(const FileToRemove&) = delete;
    FileToRemove& operator=(const FileToRemove&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    const std::filesystem::path path_;
};

/// Of the header "Authorization: Bearer TOKEN"; empty where there is none.
std::string bearerToken(const HttpRequest& request)
{
    constexpr std::string_view scheme = "Bearer ";
    const auto header = request.headers.find("Authorization");
    if (header == request.headers.end() || !header->second.starts_with(scheme))
        return {};
    return header->second.substr(scheme.size());
}

HttpResponse signInAnswer()
{
    return errorAnswer(401, "Sign in to send log lines.");
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

TelemetryApi::TelemetryApi(LogStore& store, UserOf userOf, NewFile newFile)
    : logStore_(store)
    , userOf_(std::move(userOf))
    , newFile_(std::move(newFile))
    , largeBatches_(1, mostLargeBatches)
{
}

TelemetryApi::~TelemetryApi()
{
    stopping_ = true;
}

void TelemetryApi::addRoutes(Router& router)
{
    router.add(
        "POST", "/stats/log", [this](const auto& request, const auto& respond) { respond(stats_(request)); },
        [](const HttpRequest&) { return HttpBodySink{.limit = statsLimit}; });
    router.add(
        "POST", "/v1/logs", [this](const auto& request, const auto& respond) { logs_(request, respond); },
        [this](const HttpRequest& head) { return acceptLogs_(head); });
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
        return sessionAnswer(logStore_.addActions(stats->session, stats->actions));
    case StatsRequest::Type::SetPlatform:
        return sessionAnswer(logStore_.setPlatform(stats->session, stats->platform, stats->version));
    }
    const auto session = logStore_.addSession(stats->email);
    if (!session)
        return failureAnswer(session.error());
    Json::Value document;
    document["sessionId"] = Json::Int64{*session};
    return jsonAnswer(document);
}

tl::expected<HttpBodySink, HttpResponse> TelemetryApi::acceptLogs_(const HttpRequest& head) const
{
    if (const auto length = announcedLength(head); length && *length <= memoryLimit)
        return HttpBodySink{.limit = memoryLimit};
    // A stranger must not fill the disk.
    if (!userOf_(bearerToken(head)))
        return tl::unexpected(signInAnswer());
    return HttpBodySink{.limit = logsLimit, .file = newFile_()};
}

void TelemetryApi::logs_(const HttpRequest& request, const HttpHandler::Respond& respond)
{
    const auto user = userOf_(bearerToken(request));
    if (request.bodyFile.empty())
        return respond(user ? store_(request.body, *user, [](std::size_t) {}) : signInAnswer());
    auto file = std::make_shared<const FileToRemove>(request.bodyFile);
    if (!user)
    {
        file.reset();
        return respond(signInAnswer());
    }
    const bool isTaken = largeBatches_.run(
        [this, file = std::move(file), user = *user, respond]() mutable
        {
            HttpResponse answer = storeFile_(file->path(), user);
            file.reset(); // before the client knows
            respond(std::move(answer));
        });
    if (!isTaken)
        respond(errorAnswer(503, "The service is busy: try again."));
}

HttpResponse TelemetryApi::storeFile_(const std::filesystem::path& file, const std::string& user) const
try
{
    const auto mapped = MappedFile::open(file);
    if (!mapped)
        return failureAnswer(mapped.error());
    return store_(mapped->text(), user, [&mapped](std::size_t position) { mapped->release(0, position); });
}
catch (const std::exception& error)
{
    spdlog::error("Log lines cannot be stored: {}", error.what());
    return errorAnswer(500, "The service failed: try again.");
}

/// Reads all of the body before it stores any of it, in slices, between which others may write. What a failure leaves
/// stored is known when the batch is sent again.
/// @param passed  told how much of the body is read, again from the start the second time
HttpResponse TelemetryApi::store_(std::string_view body, const std::string& user,
                                  const std::function<void(std::size_t)>& passed) const
{
    for (const bool isStoring : {false, true})
    {
        LogItemsReader items(body);
        for (;;)
        {
            auto lines = readLogLines(items, linesInASlice);
            if (!lines)
                return errorAnswer(400, lines.error());
            if (lines->empty())
                break;
            passed(items.position());
            if (stopping_)
                return errorAnswer(503, "The service is being stopped: try again.");
            if (!isStoring)
                continue;
            for (LoggedLine& line : *lines)
                line.account = user;
            if (const auto stored = logStore_.addLines(*lines); !stored)
                return failureAnswer(stored.error());
        }
    }
    return doneAnswer(201);
}

} // namespace VX
