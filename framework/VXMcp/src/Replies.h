#pragma once

#include "ClientRequest.h"
#include "Registry.h"

#include <VXMcp/Tool.h>

#include <json/value.h>

#include <string>

namespace VX::Mcp
{

/// How the results of both eras are finished.
/// @threads any

/// Answers with a result; the newest revision also hears that it is complete, and from whom it is.
void reply(const ClientRequest& request, const Registry::Info& server, Json::Value result);

/// The same for a result that the client may keep.
struct Caching
{
    int ttlMs = 0;
    bool isPublic = false; ///< the same for whoever asks
};

void replyCacheable(const ClientRequest& request, const Registry::Info& server, Json::Value result, Caching caching);

/// Answers with an error. In the newest revision an unknown method and a request that cannot be served have a status of
/// HTTP of their own.
void replyError(const ClientRequest& request, const RpcError& error);
void replyInvalidParams(const ClientRequest& request, std::string message);

/// Asks the client of a request of the newest revision for what `inquiry` wants, or tells it which capability it lacks
/// for that.
/// @param sealedState  empty: none
void replyInputRequired(const ClientRequest& request, const Registry::Info& server, const Inquiry& inquiry,
                        const std::string& sealedState);

/// The capabilities that a client needs for the requests of an inquiry and has not declared; an object, empty where
/// nothing is missing.
[[nodiscard]] Json::Value missingCapabilities(const Inquiry& inquiry, const Json::Value& declared);

[[nodiscard]] Json::Value toWire(const Registry::Info& server);

} // namespace VX::Mcp
