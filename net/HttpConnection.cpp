// Boost.Beast takes long to compile: this file is the only one that includes it.
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>

#include <net/HttpAnswer.h>
#include <net/HttpBodyCollector.h>
#include <net/HttpBodyStream.h>
#include <net/HttpClientWatch.h>
#include <net/HttpConnection.h>
#include <net/HttpResponseHead.h>
#include <net/HttpTarget.h>
#include <net/PeerEnd.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;
using Parser = http::request_parser<http::buffer_body>;
using namespace std::chrono_literals;

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
/// Bytes moved at once between a socket and a body.
constexpr std::size_t pieceSize = 256U << 10U;
/// How long a client may take to notice that its connection is being closed.
constexpr auto lingerTime = 2s;

/// What a step decides about its request: a status that refuses it, or one of these.
constexpr int goOn = 0;
constexpr int hangUp = -1;

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
    asio::awaitable<int> readBody_(Parser& parser, const HttpBodySink& sink, HttpRequest& request);
    asio::awaitable<int> readPlain_(std::uint64_t length, HttpBodyCollector& body);
    asio::awaitable<int> readChunks_(Parser& parser, HttpBodyCollector& body);
    asio::awaitable<HttpResponse> ask_(HttpRequest request);
    asio::awaitable<bool> send_(HttpResponse response, HttpAnswer::Form form);
    asio::awaitable<bool> refuse_(int status);
    asio::awaitable<void> hangUp_();

    [[nodiscard]] int headFailure_(error_code error, bool gotSome) const;
    [[nodiscard]] int bodyFailure_(error_code error) const;
    int readHead_(const Parser& parser, HttpRequest& request);
    tl::expected<HttpBodySink, HttpResponse> acceptBody_(const HttpRequest& request);

    /// Runs `action` on the strand, unless this object has gone by then.
    template <typename Action>
    void post_(Action action);
    void lookForClient_();
    void reportGone_();
    void endExchange_();

    tcp::socket socket_;
    const HttpServer::Settings& settings_;
    HttpHandler& handler_;
    std::shared_ptr<HttpReplyGate> gate_;
    beast::flat_buffer buffer_;
    std::vector<char> piece_;
    std::optional<HttpResponse> answer_;
    asio::steady_timer woken_;
    SocketDeadline deadline_;
    HttpAnswer writer_;
    std::shared_ptr<HttpClientWatch> client_;
    std::shared_ptr<HttpBodyStream> stream_;
    bool isLooking_ = false;
};

Connection::Connection(tcp::socket socket, const HttpServer::Settings& settings, HttpHandler& handler,
                       std::shared_ptr<HttpReplyGate> gate)
    : socket_(std::move(socket))
    , settings_(settings)
    , handler_(handler)
    , gate_(std::move(gate))
    , buffer_(settings.headLimit + 2 * pieceSize)
    , woken_(socket_.get_executor())
    , deadline_(socket_)
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
    Parser parser;
    parser.header_limit(settings_.headLimit);
    parser.body_limit(boost::none); // the sink decides
    deadline_.expectWithin(settings_.idleTimeout);
    const auto [error, size] = co_await http::async_read_header(socket_, buffer_, parser, asTuple);
    if (error)
        co_return co_await refuse_(headFailure_(error, parser.got_some()));

    HttpRequest request;
    if (const int status = readHead_(parser, request); status != goOn)
        co_return co_await refuse_(status);
    const HttpAnswer::Form form{.headOnly = request.method == "HEAD",
                                .keepAlive = parser.keep_alive(),
                                .mayChunk = parser.get().version() == 11};

    const auto sink = acceptBody_(request);
    if (!sink)
    {
        const bool hasBody = parser.chunked() || parser.content_length().value_or(0) > 0;
        co_return co_await send_(
            sink.error(),
            {.headOnly = form.headOnly, .keepAlive = form.keepAlive && !hasBody, .mayChunk = form.mayChunk});
    }
    if (const int status = co_await readBody_(parser, *sink, request); status != goOn)
        co_return co_await refuse_(status);

    const HttpReplyGate::Exchange onItsWay(gate_);
    auto response = co_await ask_(std::move(request));
    co_return co_await send_(std::move(response), form);
}

int Connection::headFailure_(error_code error, bool gotSome) const
{
    if (deadline_.isOver())
        return gotSome ? 408 : hangUp;
    if (error == http::error::header_limit || error == http::error::buffer_overflow)
        return 431;
    if (error == http::error::bad_version)
        return 505;
    if (error == http::error::bad_alloc)
        return 503;
    const bool isMalformed = error.category() == make_error_code(http::error::bad_method).category();
    return isMalformed && error != http::error::end_of_stream ? 400 : hangUp;
}

int Connection::readHead_(const Parser& parser, HttpRequest& request)
{
    const auto& message = parser.get();
    const auto hosts = message.count(http::field::host);
    if (message.version() > 11 || message.version() < 10)
        return 505;
    if (hosts > 1 || (hosts == 0 && message.version() == 11))
        return 400;
    if (message.count(http::field::transfer_encoding) > 0 && (!parser.chunked() || message.version() == 10))
        return parser.chunked() ? 400 : 501;

    auto target = parseHttpTarget(std::string_view(message.target().data(), message.target().size()));
    if (!target)
        return 400;
    request.path = std::move(target->path);
    request.rawQuery = std::move(target->rawQuery);
    request.query = std::move(target->query);
    request.method = message.method_string();
    for (const auto& field : message)
    {
        auto& value = request.headers[field.name_string()];
        if (!value.empty())
            value += ", ";
        value += field.value();
    }
    if (const auto expect = request.headers.find("Expect"); expect != request.headers.end())
        if (!beast::iequals(expect->second, "100-continue"))
            return 417;

    error_code error;
    const auto peer = socket_.remote_endpoint(error);
    if (error)
        return hangUp;
    request.peerAddress = peer.address().to_string();
    request.peerPort = peer.port();
    return goOn;
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

asio::awaitable<int> Connection::readBody_(Parser& parser, const HttpBodySink& sink, HttpRequest& request)
{
    const std::uint64_t length = parser.content_length().value_or(0);
    if (length > sink.limit)
        co_return 413;
    HttpBodyCollector body;
    if (const int status = body.begin(sink); status != goOn)
        co_return status;

    const bool hasBody = length > 0 || parser.chunked();
    if (hasBody && buffer_.size() == 0 && request.headers.contains("Expect"))
    {
        static constexpr std::string_view interim = "HTTP/1.1 100 Continue\r\n\r\n";
        deadline_.expectWithin(settings_.idleTimeout);
        const auto [error, size] = co_await asio::async_write(socket_, asio::buffer(interim), asTuple);
        if (error)
            co_return hangUp;
    }
    const int status = parser.chunked() ? co_await readChunks_(parser, body) : co_await readPlain_(length, body);
    co_return status == goOn ? body.finish(request) : status;
}

/// Past the parser, straight from the socket: it would copy the body once more.
asio::awaitable<int> Connection::readPlain_(std::uint64_t length, HttpBodyCollector& body)
{
    std::uint64_t left = length;
    const auto buffered = static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer_.size()));
    int status = body.append({static_cast<const char*>(buffer_.cdata().data()), buffered});
    buffer_.consume(buffered);
    left -= buffered;

    if (piece_.size() < pieceSize)
        piece_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)));
    while (left > 0 && status == goOn)
    {
        deadline_.expectWithin(settings_.idleTimeout);
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece_.size()));
        const auto [error, size] = co_await socket_.async_read_some(asio::buffer(piece_.data(), wanted), asTuple);
        if (error)
            co_return bodyFailure_(error);
        status = body.append({piece_.data(), size});
        left -= size;
    }
    co_return status;
}

asio::awaitable<int> Connection::readChunks_(Parser& parser, HttpBodyCollector& body)
{
    buffer_.reserve(pieceSize); // otherwise the parser asks the socket for 512 bytes at a time
    piece_.resize(pieceSize);
    while (!parser.is_done())
    {
        auto& window = parser.get().body();
        window.data = piece_.data();
        window.size = piece_.size();
        deadline_.expectWithin(settings_.idleTimeout);
        const auto [error, size] = co_await http::async_read_some(socket_, buffer_, parser, asTuple);
        if (const int status = body.append({piece_.data(), piece_.size() - window.size}); status != goOn)
            co_return status;
        if (error && error != http::error::need_buffer)
            co_return bodyFailure_(error);
    }
    co_return goOn;
}

int Connection::bodyFailure_(error_code error) const
{
    if (deadline_.isOver())
        return 408;
    const bool isMalformed = error.category() == make_error_code(http::error::bad_method).category();
    return isMalformed && error != http::error::partial_message ? 400 : hangUp;
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
    if (status != hangUp)
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
    if (piece_.empty())
        piece_.resize(pieceSize / 16);
    deadline_.expectWithin(lingerTime);
    while (!error)
        std::tie(error, std::ignore) = co_await socket_.async_read_some(asio::buffer(piece_), asTuple);
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
