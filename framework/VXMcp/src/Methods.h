#pragma once

#include "ClientRequest.h"
#include "Shared.h"

#include <memory>

namespace VX::Mcp
{

/// Serves one request, now or later, by the exchange that it brings along.
/// @threads any
void serveRequest(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);

/// Takes note of a notification.
/// @threads any
void serveNotification(Shared& shared, const RpcMessage& message, const std::shared_ptr<Session>& session);

} // namespace VX::Mcp
