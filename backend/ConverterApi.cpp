#include "ConverterApi.h"

#include "BlobStore.h"
#include "ConversionRun.h"
#include "ConverterRequests.h"
#include "JobQueue.h"
#include "JsonAnswer.h"
#include "RandomUuid.h"

#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* signInText = "Sign in to convert files.";

HttpResponse unknownJobAnswer()
{
    return errorAnswer(404, "The conversion service does not know this request any more: open the file again.");
}

} // namespace

ConverterApi::ConverterApi(JobQueue& queue, const BlobStore& blobs, const PresignedUrl& links, Settings settings)
    : queue_(queue)
    , blobs_(blobs)
    , links_(links)
    , settings_(std::move(settings))
    , waiters_(queue, settings_.statusHold)
{
}

std::string ConverterApi::link_(const std::string& method, const std::string& key, std::uint64_t limit) const
{
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    return settings_.publicUrl() +
           links_.sign({.method = method, .key = key, .expiry = now + settings_.linkLifetime, .limit = limit});
}

void ConverterApi::request(const HttpRequest& request, const HttpHandler::Respond& respond)
{
    const auto context = ConverterContextRequest::parse(request.body);
    if (!context)
        return respond(errorAnswer(400, context.error()));
    if (!settings_.mayConvert(context->accessToken))
        return respond(errorAnswer(401, signInText));

    const std::string id = randomUuid();
    if (auto added = queue_.add(id); !added)
        return respond(failureAnswer(added.error()));
    Json::Value result;
    result["request_id"] = id;
    result["url"] = link_("PUT", ConversionRun::uploadKey(id), settings_.uploadLimit);
    respond(resultAnswer(result));
}

void ConverterApi::convert(const HttpRequest& request, const HttpHandler::Respond& respond)
{
    const auto start = ConverterStartRequest::parse(request.body);
    if (!start)
        return respond(errorAnswer(400, start.error()));
    if (!settings_.mayConvert(start->accessToken))
        return respond(errorAnswer(401, signInText));

    const auto found = queue_.status(start->requestId);
    if (!found)
        return respond(failureAnswer(found.error()));
    const std::optional<JobStatus>& status = *found;
    if (!status)
        return respond(unknownJobAnswer());
    if (status->state == JobState::Requested)
    {
        if (!blobs_.size(ConversionRun::uploadKey(start->requestId)))
            return respond(errorAnswer(409, "The file has not been uploaded yet: open the file again."));
        if (auto queued = queue_.enqueue(start->requestId); !queued)
            return respond(failureAnswer(queued.error()));
    }
    respond(resultAnswer(Json::Value(Json::objectValue)));
}

HttpResponse ConverterApi::statusAnswer_(const JobStatus& status) const
{
    Json::Value result;
    switch (jobPhase(status.state))
    {
    case JobPhase::NotStarted:
        result["state"] = "not_started";
        break;
    case JobPhase::InProgress:
        result["state"] = "in_progress";
        break;
    case JobPhase::Finished:
        result["state"] = "finished";
        result["url"] = link_("GET", status.resultKey, 0);
        break;
    case JobPhase::Failed:
        return errorAnswer(200, status.message);
    }
    return resultAnswer(result);
}

void ConverterApi::status(const HttpRequest& request, const HttpHandler::Respond& respond)
{
    const auto id = request.query.find("request_id");
    if (id == request.query.end())
        return respond(errorAnswer(400, "\"request_id\" is missing in the request."));
    waiters_.wait(id->second,
                  [this, respond](const StatusWaiters::Status& found)
                  {
                      if (!found)
                          return respond(failureAnswer(found.error()));
                      const std::optional<JobStatus>& status = *found;
                      respond(status ? statusAnswer_(*status) : unknownJobAnswer());
                  });
}

void ConverterApi::jobsChanged()
{
    waiters_.wake();
}

} // namespace VX
