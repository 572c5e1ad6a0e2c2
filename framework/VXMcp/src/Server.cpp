#include "Endpoint.h"
#include "Shared.h"

#include <VXMcp/Mcp.h>

#include <net/HttpServer.h>

#include <utility>

namespace VX::Mcp
{

namespace
{

/// How many ports behind the wanted one are tried.
constexpr unsigned portsTried = 64;
/// More than one, so that a tool which thinks for a moment holds up nobody.
constexpr unsigned serverThreads = 4;
/// For how long cancelled calls may still answer when the server stops.
constexpr std::chrono::milliseconds lastAnswers{500};

} // namespace

class Server::Impl
{
public:
    std::shared_ptr<Shared> shared = std::make_shared<Shared>();
    std::unique_ptr<Endpoint> endpoint;
    mutable Mutex mutex;
    std::unique_ptr<HttpServer> http VX_GUARDED_BY(mutex); ///< ends before the endpoint does
};

Server::Server()
    : impl_(std::make_unique<Impl>())
{
}

Server::~Server()
{
    stop();
}

void Server::addTool(Tool tool)
{
    impl_->shared->registry.addTool(std::move(tool));
    impl_->shared->listeners.publish({.kind = Change::Kind::ToolList});
}

void Server::removeTool(const std::string& name)
{
    impl_->shared->registry.removeTool(name);
    impl_->shared->listeners.publish({.kind = Change::Kind::ToolList});
}

void Server::addResource(Resource resource)
{
    impl_->shared->registry.addResource(std::move(resource));
    impl_->shared->listeners.publish({.kind = Change::Kind::ResourceList});
}

void Server::clear()
{
    impl_->shared->registry.clear();
    for (const auto kind : {Change::Kind::ToolList, Change::Kind::ResourceList, Change::Kind::PromptList})
        impl_->shared->listeners.publish({.kind = kind});
}

void Server::addResourceTemplate(ResourceTemplate resourceTemplate)
{
    impl_->shared->registry.addResourceTemplate(std::move(resourceTemplate));
    impl_->shared->listeners.publish({.kind = Change::Kind::ResourceList});
}

void Server::resourceChanged(const std::string& uri)
{
    impl_->shared->listeners.publish({.kind = Change::Kind::Resource, .uri = uri});
}

void Server::addPrompt(Prompt prompt)
{
    impl_->shared->registry.addPrompt(std::move(prompt));
    impl_->shared->listeners.publish({.kind = Change::Kind::PromptList});
}

void Server::addAlias(std::string alias, std::string toolName)
{
    impl_->shared->registry.addAlias(std::move(alias), std::move(toolName));
}

void Server::setToolValidator(ToolValidator validator)
{
    impl_->shared->registry.setToolValidator(std::move(validator));
}

void Server::setInfo(std::string name, std::string version, std::string instructions)
{
    impl_->shared->registry.setInfo(
        {.name = std::move(name), .version = std::move(version), .instructions = std::move(instructions)});
}

tl::expected<void, std::string> Server::start(const Settings& settings)
{
    stop();
    impl_->endpoint = std::make_unique<Endpoint>(impl_->shared, settings.bearerToken);
    const unsigned tries = settings.portFixed || settings.port == 0 ? 1 : portsTried;
    std::string failure;
    for (unsigned i = 0; i < tries && settings.port + i <= 0xFFFF; ++i)
    {
        HttpServer::Settings http{.port = static_cast<std::uint16_t>(settings.port + i), .threads = serverThreads};
        http.sameUserOnly = true;
        auto started = HttpServer::start(http, *impl_->endpoint);
        if (started)
        {
            const auto port = (*started)->port();
            {
                const MutexLock lock(impl_->mutex);
                impl_->http = std::move(*started);
            }
            impl_->shared->activity.setAddress("http://127.0.0.1:" + std::to_string(port) + "/mcp");
            return {};
        }
        if (failure.empty())
            failure = std::move(started).error();
    }
    return tl::unexpected(std::move(failure));
}

void Server::stop()
{
    std::unique_ptr<HttpServer> http;
    {
        const MutexLock lock(impl_->mutex);
        http = std::move(impl_->http);
    }
    if (!http)
        return;
    impl_->shared->calls.cancelAll();
    impl_->shared->listeners.endAll();
    http->finish(lastAnswers);
    http.reset();
    // What a request that was just being served has left behind.
    impl_->shared->calls.cancelAll();
    impl_->shared->questions.removeAll();
    impl_->shared->listeners.endAll();
    impl_->shared->sessions.closeAll();
    impl_->shared->activity.setAddress({});
}

bool Server::isRunning() const
{
    return port() != 0;
}

std::uint16_t Server::port() const
{
    const MutexLock lock(impl_->mutex);
    return impl_->http ? impl_->http->port() : std::uint16_t{0};
}

Server::Status Server::status() const
{
    Status out = impl_->shared->activity.status();
    const MutexLock lock(impl_->mutex);
    out.clients = impl_->http ? impl_->http->connections() : 0;
    return out;
}

boost::signals2::connection Server::onStatusChanged(const std::function<void()>& callback)
{
    return impl_->shared->activity.changed.connect(callback);
}

Server& getDefaultServer()
{
    static Server server;
    return server;
}

} // namespace VX::Mcp
