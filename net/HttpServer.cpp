#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <net/CloseOnExec.h>
#include <net/HttpConnection.h>
#include <net/HttpServer.h>
#include <net/PeerUser.h>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
/// How long to wait for file descriptors when there are none left for another connection.
constexpr std::chrono::milliseconds acceptPause{50};

} // namespace

class HttpServer::Impl
{
public:
    Impl(Settings settings, HttpHandler& handler)
        : settings_(settings)
        , handler_(handler)
        , acceptor_(context_)
    {
    }

    ~Impl()
    {
        gate_->close();
        context_.stop();
        for (auto& thread : threads_)
            thread.join();
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    /// @return empty, or a sentence that says what failed
    [[nodiscard]] std::string listen();

    void run();

    void finish(std::chrono::milliseconds limit) { gate_->waitForExchanges(limit); }

    [[nodiscard]] std::uint16_t port() const { return port_; }

    [[nodiscard]] unsigned connections() const { return gate_->connections; }

private:
    asio::awaitable<void> accept_();
    asio::awaitable<void> acceptOne_();
    void work_();

    const Settings settings_;
    HttpHandler& handler_;
    std::shared_ptr<HttpReplyGate> gate_ = std::make_shared<HttpReplyGate>();
    std::uint16_t port_ = 0;
    asio::io_context context_;
    tcp::acceptor acceptor_;
    std::vector<std::thread> threads_;
};

std::string HttpServer::Impl::listen()
{
    const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), settings_.port);
    error_code error;
    if (settings_.listenFd >= 0)
    {
        acceptor_.assign(endpoint.protocol(), settings_.listenFd, error);
        if (!error && !acceptor_.local_endpoint(error).address().is_loopback())
            return "The listening socket is not bound to a loopback address";
    }
    else
    {
        acceptor_.open(endpoint.protocol(), error);
        if (!error)
            acceptor_.set_option(tcp::acceptor::reuse_address(true), error);
        if (!error)
            acceptor_.bind(endpoint, error);
    }
    if (!error)
    {
        setCloseOnExec(acceptor_.native_handle());
        acceptor_.listen(tcp::acceptor::max_listen_connections, error);
    }
    if (!error)
        port_ = acceptor_.local_endpoint(error).port();
    if (!error)
        return {};
    const std::string what =
        settings_.listenFd >= 0 ? "The listening socket" : "Port " + std::to_string(settings_.port) + " of 127.0.0.1";
    return what + " cannot be used: " + error.message();
}

void HttpServer::Impl::run()
{
    asio::co_spawn(context_, accept_(), [](const std::exception_ptr&) {});
    for (unsigned i = 0; i < std::max(settings_.threads, 1U); ++i)
        threads_.emplace_back([this] { work_(); });
}

void HttpServer::Impl::work_()
{
    while (!context_.stopped())
    {
        try
        {
            context_.run();
        }
        catch (const std::exception&)
        {
            continue; // out of memory within the library: its connection is lost, the others go on
        }
    }
}

asio::awaitable<void> HttpServer::Impl::accept_()
{
    for (;;)
    {
        try
        {
            co_await acceptOne_();
        }
        catch (const std::exception&)
        {
            continue; // out of memory: that connection is lost, the next one may fit
        }
    }
}

asio::awaitable<void> HttpServer::Impl::acceptOne_()
{
    auto [error, socket] = co_await acceptor_.async_accept(asio::make_strand(context_), asTuple);
    if (error)
    {
        // Out of file descriptors, as a rule: the connections in progress give some back.
        asio::steady_timer pause(context_, acceptPause);
        co_await pause.async_wait(asTuple);
        co_return;
    }
    if (gate_->connections >= settings_.maxConnections)
        co_return;
    if (settings_.sameUserOnly && !isPeerOfThisUser(socket.native_handle()))
        co_return;
    setCloseOnExec(socket.native_handle());
    socket.set_option(tcp::no_delay(true), error);
    const auto strand = socket.get_executor();
    asio::co_spawn(strand, serveHttpConnection(std::move(socket), settings_, handler_, gate_),
                   [](const std::exception_ptr&) {});
}

HttpServer::HttpServer(std::unique_ptr<Impl> impl)
    : impl_(std::move(impl))
{
}

HttpServer::~HttpServer() = default;

tl::expected<std::unique_ptr<HttpServer>, std::string> HttpServer::start(Settings settings, HttpHandler& handler)
{
    try
    {
        auto impl = std::make_unique<Impl>(settings, handler);
        if (auto failure = impl->listen(); !failure.empty())
            return tl::unexpected(std::move(failure));
        impl->run();
        return std::unique_ptr<HttpServer>(new HttpServer(std::move(impl)));
    }
    catch (const std::exception& exception)
    {
        return tl::unexpected(std::string("The HTTP server cannot be started: ") + exception.what());
    }
}

void HttpServer::finish(std::chrono::milliseconds limit)
{
    impl_->finish(limit);
}

std::uint16_t HttpServer::port() const
{
    return impl_->port();
}

unsigned HttpServer::connections() const
{
    return impl_->connections();
}

} // namespace VX
