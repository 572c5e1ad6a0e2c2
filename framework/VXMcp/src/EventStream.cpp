#include "EventStream.h"

#include "JsonText.h"

#include <chrono>
#include <utility>

namespace VX::Mcp
{

namespace
{

/// What gives up silent connections between programs of one machine waits for a minute at least.
constexpr std::chrono::seconds heartbeatPause{15};

} // namespace

std::shared_ptr<HttpBodyStream> makeEventStream()
{
    return std::make_shared<HttpBodyStream>(":\n\n", heartbeatPause);
}

HttpResponse makeEventResponse(std::shared_ptr<HttpBodyStream> stream)
{
    HttpResponse out;
    out.headers = {{"Content-Type", "text/event-stream"}, {"Cache-Control", "no-cache"}, {"X-Accel-Buffering", "no"}};
    out.stream = std::move(stream);
    return out;
}

std::string toEvent(const Json::Value& message)
{
    return "event: message\ndata: " + toJsonText(message) + "\n\n";
}

} // namespace VX::Mcp
