#pragma once

#include "ClientRequest.h"
#include "Shared.h"

#include <memory>

namespace VX::Mcp
{

/// The methods by which clients use what is registered.
/// @threads any

void listTools(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void callTool(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void listResources(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void listResourceTemplates(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void readResource(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void subscribeResource(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void unsubscribeResource(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void listPrompts(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void getPrompt(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);
void completeArgument(const std::shared_ptr<Shared>& shared, const std::shared_ptr<const ClientRequest>& request);

} // namespace VX::Mcp
