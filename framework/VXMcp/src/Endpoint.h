#pragma once

#include "RpcMessage.h"
#include "Shared.h"

#include <net/HttpServer.h>

#include <memory>
#include <string>

namespace VX::Mcp
{

struct ClientRequest;

/// The server's one path, "/mcp": takes the messages of clients of either era and hands them on.
/// @threads any
class Endpoint final : public HttpHandler
{
public:
    /// @param bearerToken  empty: none is needed
    Endpoint(std::shared_ptr<Shared> shared, std::string bearerToken);

    tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head) override;
    void handle(HttpRequest request, Respond respond) override;

private:
    void take_(const HttpRequest& request, RpcMessage message, const Respond& respond);
    void takeLegacy_(const HttpRequest& request, RpcMessage message, const Respond& respond);
    void serve_(const HttpRequest& request, ClientRequest known, const Respond& respond);
    void listen_(const HttpRequest& request, const Respond& respond);
    void leave_(const HttpRequest& request, const Respond& respond);

    const std::shared_ptr<Shared> shared_;
    const std::string bearerToken_;
};

} // namespace VX::Mcp
