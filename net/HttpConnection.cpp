#include <boost/asio/as_tuple.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <net/HttpAnswer.h>
#include <net/HttpBodyStream.h>
#include <net/HttpClientWatch.h>
#include <net/HttpConnection.h>
#include <net/HttpRequestReader.h>
#include <net/HttpResponseHead.h>
#include <net/PeerEnd.h>

#include <optional>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using namespace std::chrono_literals;

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
/// Bytes thrown away at once.
constexpr std::size_t restSize = 16U << 10U;
/// How long a client may take to notice that its connection is being closed.
constexpr auto lingerTime = 2s;

/// One client: its requests, one after the other. All members are touched on the socket's strand only.
class Connection final : public HttpReplyTaker, public std::enable_shared_from_this<Connection>
{
public:
    Connection(tcp::socket socket, const HttpServer::Settings& settings, HttpHandler& handler,
               std::shared_ptr<HttpReplyGate> gate);
    ~Connection() override;

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    static asio::awaitable<void> serve(std::shared_ptr<Connection> self);

    void takeReply(HttpResponse response) override;
    void takeMore() override;
    void watchClient() override;

private:
    asio::awaitable<bool> exchange_();
    asio::awaitable<HttpResponse> ask_(HttpRequest request);
    asio::awaitable<bool> send_(HttpResponse response, HttpAnswer::Form form);
    asio::awaitable<bool> refuse_(int status);
    asio::awaitable<void> hangUp_();

    tl::expected<HttpBodySink, HttpResponse> acceptBody_(const HttpRequest& request);

    /// Runs `action` on the strand, unless this object has gone by then.
    template <typename Action>
    void post_(Action action);
    void lookForClient_();
    void reportGone_();
    void endExchange_();

    tcp::socket socket_;
    HttpHandler& handler_;
    std::shared_ptr<HttpReplyGate> gate_;
    std::optional<HttpResponse> answer_;
    asio::steady_timer woken_;
    SocketDeadline deadline_;
    HttpRequestReader reader_;
    HttpAnswer writer_;
    std::shared_ptr<HttpClientWatch> client_;
    std::shared_ptr<HttpBodyStream> stream_;
    bool isLooking_ = false;
};

Connection::Connection(tcp::socket socket, const HttpServer::Settings& settings, HttpHandler& handler,
                       std::shared_ptr<HttpReplyGate> gate)
    : socket_(std::move(socket))
    , handler_(handler)
    , gate_(std::move(gate))
    , woken_(socket_.get_executor())
    , deadline_(socket_)
    , reader_(socket_, deadline_, settings)
    , writer_(socket_, deadline_, woken_, settings.idleTimeout)
{
    ++gate_->connections;
}

Connection::~Connection()
{
    --gate_->connections;
}

asio::awaitable<void> Connection::serve(std::shared_ptr<Connection> self)
{
    self->deadline_.setSelf(std::shared_ptr<SocketDeadline>(self, &self->deadline_));
    try
    {
        while (co_await self->exchange_())
            self->endExchange_();
        self->endExchange_();
        co_await self->hangUp_();
    }
    catch (const std::exception&)
    {
        // Out of memory, or the handler failed beyond what it may: only this connection ends.
        error_code ignored;
        self->socket_.close(ignored);
    }
}

template <typename Action>
void Connection::post_(Action action)
{
    asio::post(socket_.get_executor(),
               [weak = weak_from_this(), action = std::move(action)]() mutable
               {
                   if (const auto self = weak.lock())
                       action(*self);
               });
}

void Connection::takeReply(HttpResponse response)
{
    post_(
        [response = std::move(response)](Connection& self) mutable
        {
            self.answer_ = std::move(response);
            self.woken_.cancel();
        });
}

void Connection::takeMore()
{
    post_([](Connection& self) { self.woken_.cancel(); });
}

void Connection::watchClient()
{
    post_([](Connection& self) { self.lookForClient_(); });
}

asio::awaitable<bool> Connection::exchange_()
{
    HttpRequest request;
    if (const int status = co_await reader_.readHead(request); status != HttpRequestReader::goOn)
        co_return co_await refuse_(status);
    HttpAnswer::Form form = reader_.answerForm();

    const auto sink = acceptBody_(request);
    if (!sink)
    {
        // What is not read would be taken for the next request.
        form.keepAlive = form.keepAlive && !reader_.hasBody();
        co_return co_await send_(sink.error(), form);
    }
    if (const int status = co_await reader_.readBody(*sink, request); status != HttpRequestReader::goOn)
        co_return co_await refuse_(status);

    const HttpReplyGate::Exchange onItsWay(gate_);
    auto response = co_await ask_(std::move(request));
    co_return co_await send_(std::move(response), form);
}

tl::expected<HttpBodySink, HttpResponse> Connection::acceptBody_(const HttpRequest& request)
{
    try
    {
        return handler_.acceptBody(request);
    }
    catch (const std::exception&)
    {
        return tl::unexpected(HttpResponse{.status = 500});
    }
}

asio::awaitable<HttpResponse> Connection::ask_(HttpRequest request)
{
    answer_.reset();
    client_ = std::make_shared<HttpClientWatch>([gate = gate_, weak = weak_from_this()]
                                                { gate->pass(weak, [](auto& taker) { taker.watchClient(); }); });
    request.client = client_;
    auto reply = std::make_shared<HttpReply>(gate_, weak_from_this());
    try
    {
        handler_.handle(std::move(request), [reply](HttpResponse response) { reply->give(std::move(response)); });
    }
    catch (const std::exception&)
    {
        reply->give({.status = 500});
    }
    reply.reset();
    while (!answer_)
    {
        woken_.expires_at(std::chrono::steady_clock::time_point::max());
        co_await woken_.async_wait(asTuple);
    }
    co_return std::move(*answer_);
}

asio::awaitable<bool> Connection::send_(HttpResponse response, HttpAnswer::Form form)
{
    if (response.status == 0)
        co_return writer_.hangUp();
    stream_ = response.stream;
    if (stream_)
    {
        stream_->attach([gate = gate_, weak = weak_from_this()]
                        { gate->pass(weak, [](auto& taker) { taker.takeMore(); }); });
        lookForClient_();
    }
    const bool goesOn = co_await writer_.send(std::move(response), form);
    if (stream_ && !socket_.is_open())
        reportGone_();
    co_return goesOn;
}

/// Waits, beside whatever else is done, until the socket has something to read: its end, or the next request already,
/// behind which the end cannot be seen.
void Connection::lookForClient_()
{
    if (isLooking_ || !client_ || !socket_.is_open())
        return;
    isLooking_ = true;
    socket_.async_wait(tcp::socket::wait_read,
                       [weak = weak_from_this(), client = client_](error_code error)
                       {
                           const auto self = weak.lock();
                           if (!self || self->client_ != client)
                               return;
                           self->isLooking_ = false;
                           if (!self->socket_.is_open())
                               return;
                           error_code ignored;
                           const bool isEnded = error && error != asio::error::operation_aborted;
                           if (isEnded || hasPeerEnded(self->socket_.native_handle()))
                               self->reportGone_();
                           // The deadline of another operation, or late news of bytes that another thread has read
                           // meanwhile.
                           else if (self->socket_.available(ignored) == 0)
                               self->lookForClient_();
                       });
}

void Connection::reportGone_()
{
    if (stream_)
        stream_->close();
    woken_.cancel();
    if (client_)
        client_->reportGone();
}

void Connection::endExchange_()
{
    client_.reset();
    stream_.reset();
    if (std::exchange(isLooking_, false))
    {
        error_code ignored;
        socket_.cancel(ignored);
    }
}

asio::awaitable<bool> Connection::refuse_(int status)
{
    if (status != HttpRequestReader::hangUp)
    {
        HttpResponse response{.status = status, .headers = {{"Content-Type", "text/plain"}}};
        response.body = httpReasonPhrase(status);
        co_return co_await send_(std::move(response), {});
    }
    co_return writer_.hangUp();
}

/// Reads on for a moment after the last answer: closing while bytes of the client are on their way would reset the
/// connection, and the client could lose the answer.
asio::awaitable<void> Connection::hangUp_()
{
    error_code error;
    socket_.shutdown(tcp::socket::shutdown_send, error);
    if (error)
        co_return;
    std::vector<char> rest(restSize);
    deadline_.expectWithin(lingerTime);
    while (!error)
        std::tie(error, std::ignore) = co_await socket_.async_read_some(asio::buffer(rest), asTuple);
    socket_.close(error);
}

} // namespace

asio::awaitable<void> serveHttpConnection(tcp::socket socket, const HttpServer::Settings& settings,
                                          HttpHandler& handler, std::shared_ptr<HttpReplyGate> gate)
{
    auto connection = std::make_shared<Connection>(std::move(socket), settings, handler, std::move(gate));
    return Connection::serve(std::move(connection));
}

} // namespace VX
