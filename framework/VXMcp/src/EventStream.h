#pragma once

#include <json/value.h>

#include <net/HttpBodyStream.h>
#include <net/HttpServer.h>

#include <memory>
#include <string>

namespace VX::Mcp
{

/// Bytes that may wait for a slow client before it misses what can be missed: progress, log messages, changes.
constexpr std::size_t streamBacklog = 256U << 10U;

/// A body of server-sent events that keeps its connection alive with comments.
[[nodiscard]] std::shared_ptr<HttpBodyStream> makeEventStream();

/// The answer that has `stream` as its body.
[[nodiscard]] HttpResponse makeEventResponse(std::shared_ptr<HttpBodyStream> stream);

/// One event that carries `message`.
[[nodiscard]] std::string toEvent(const Json::Value& message);

} // namespace VX::Mcp
