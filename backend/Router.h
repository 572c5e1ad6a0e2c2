#pragma once

#include <net/HttpServer.h>

#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// Hands each request to what was registered for its method and path. Other paths are answered with status 404, other
/// methods with 405.
class Router final : public HttpHandler
{
public:
    using Accept = std::function<tl::expected<HttpBodySink, HttpResponse>(const HttpRequest& head)>;
    using Handle = std::function<void(const HttpRequest& request, const Respond& respond)>;

    /// Registers an operation, before the server is started.
    /// @param path    of the operation; one that ends with "/" stands for everything below it
    /// @param accept  decides where the body goes; where empty, small bodies are kept in memory
    void add(std::string method, std::string path, Handle handle, Accept accept = {});

    [[nodiscard]] tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head) override;
    void handle(HttpRequest request, Respond respond) override;

private:
    struct Route
    {
        std::string method;
        std::string path;
        Handle handle;
        Accept accept;
    };

    [[nodiscard]] tl::expected<const Route*, HttpResponse> find_(const HttpRequest& request) const;

    std::vector<Route> routes_;
};

} // namespace VX
