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

#include <net/HttpBodyCollector.h>
#include <net/HttpConnection.h>
#include <net/HttpResponseHead.h>
#include <net/HttpTarget.h>

#include <algorithm>
#include <array>
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
using Clock = std::chrono::steady_clock;
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

private:
    asio::awaitable<bool> exchange_();
    asio::awaitable<int> readBody_(Parser& parser, const HttpBodySink& sink, HttpRequest& request);
    asio::awaitable<int> readPlain_(std::uint64_t length, HttpBodyCollector& body);
    asio::awaitable<int> readChunks_(Parser& parser, HttpBodyCollector& body);
    asio::awaitable<HttpResponse> ask_(HttpRequest request);
    asio::awaitable<bool> send_(HttpResponse response, bool headOnly, bool keepAlive);
    asio::awaitable<bool> refuse_(int status);
    asio::awaitable<void> hangUp_();

    [[nodiscard]] int headFailure_(error_code error, bool gotSome) const;
    [[nodiscard]] int bodyFailure_(error_code error) const;
    int readHead_(const Parser& parser, HttpRequest& request);
    tl::expected<HttpBodySink, HttpResponse> acceptBody_(const HttpRequest& request);

    void expectWithin_(std::chrono::milliseconds time);
    void watch_();
    void checkDeadline_();

    tcp::socket socket_;
    const HttpServer::Settings& settings_;
    HttpHandler& handler_;
    std::shared_ptr<HttpReplyGate> gate_;
    beast::flat_buffer buffer_;
    std::vector<char> piece_;
    std::optional<HttpResponse> answer_;
    asio::steady_timer answered_;
    asio::steady_timer deadline_;
    Clock::time_point due_;
    bool isWatched_ = false;
    bool isTimedOut_ = false;
};

Connection::Connection(tcp::socket socket, const HttpServer::Settings& settings, HttpHandler& handler,
                       std::shared_ptr<HttpReplyGate> gate)
    : socket_(std::move(socket))
    , settings_(settings)
    , handler_(handler)
    , gate_(std::move(gate))
    , buffer_(settings.headLimit + 2 * pieceSize)
    , answered_(socket_.get_executor())
    , deadline_(socket_.get_executor())
{
    ++gate_->connections;
}

Connection::~Connection()
{
    --gate_->connections;
}

asio::awaitable<void> Connection::serve(std::shared_ptr<Connection> self)
{
    try
    {
        while (co_await self->exchange_())
        {
        }
        co_await self->hangUp_();
    }
    catch (const std::exception&)
    {
        // Out of memory, or the handler failed beyond what it may: only this connection ends.
        error_code ignored;
        self->socket_.close(ignored);
    }
}

void Connection::takeReply(HttpResponse response)
{
    asio::post(socket_.get_executor(),
               [weak = weak_from_this(), response = std::move(response)]() mutable
               {
                   const auto self = weak.lock();
                   if (!self)
                       return;
                   self->answer_ = std::move(response);
                   self->answered_.cancel();
               });
}

asio::awaitable<bool> Connection::exchange_()
{
    Parser parser;
    parser.header_limit(settings_.headLimit);
    parser.body_limit(boost::none); // the sink decides
    expectWithin_(settings_.idleTimeout);
    const auto [error, size] = co_await http::async_read_header(socket_, buffer_, parser, asTuple);
    if (error)
        co_return co_await refuse_(headFailure_(error, parser.got_some()));

    HttpRequest request;
    if (const int status = readHead_(parser, request); status != goOn)
        co_return co_await refuse_(status);
    const bool headOnly = request.method == "HEAD";
    const bool keepAlive = parser.keep_alive();

    const auto sink = acceptBody_(request);
    if (!sink)
    {
        const bool hasBody = parser.chunked() || parser.content_length().value_or(0) > 0;
        co_return co_await send_(sink.error(), headOnly, keepAlive && !hasBody);
    }
    if (const int status = co_await readBody_(parser, *sink, request); status != goOn)
        co_return co_await refuse_(status);

    auto response = co_await ask_(std::move(request));
    co_return co_await send_(std::move(response), headOnly, keepAlive);
}

int Connection::headFailure_(error_code error, bool gotSome) const
{
    if (isTimedOut_)
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
        expectWithin_(settings_.idleTimeout);
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
        expectWithin_(settings_.idleTimeout);
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
        expectWithin_(settings_.idleTimeout);
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
    if (isTimedOut_)
        return 408;
    const bool isMalformed = error.category() == make_error_code(http::error::bad_method).category();
    return isMalformed && error != http::error::partial_message ? 400 : hangUp;
}

asio::awaitable<HttpResponse> Connection::ask_(HttpRequest request)
{
    answer_.reset();
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
        answered_.expires_at(Clock::time_point::max());
        co_await answered_.async_wait(asTuple);
    }
    co_return std::move(*answer_);
}

asio::awaitable<bool> Connection::send_(HttpResponse response, bool headOnly, bool keepAlive)
{
    if (response.status == 0)
        co_return co_await refuse_(hangUp);
    BodyFileReader file;
    bool isFile = !response.file.empty();
    if (response.status < 200 || response.status > 999 || (isFile && file.open(response.file)))
    {
        response = {.status = 500};
        isFile = false;
    }
    const std::uint64_t length = isFile ? file.size() : response.body.size();
    const auto connection = response.headers.find("Connection");
    keepAlive = keepAlive && (connection == response.headers.end() || !beast::iequals(connection->second, "close"));

    std::string head = httpResponseHead(response, length, keepAlive);
    std::uint64_t left = headOnly || !httpStatusHasBody(response.status) ? 0 : length;
    if (isFile && left > 0 && piece_.size() < pieceSize)
        piece_.resize(pieceSize);
    do
    {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize));
        const char* data = isFile ? piece_.data() : response.body.data() + (length - left);
        const std::size_t ready = isFile && wanted > 0 ? file.read({piece_.data(), wanted}) : wanted;
        if (wanted > 0 && ready == 0)
            co_return co_await refuse_(hangUp); // the file became shorter than announced

        const std::array<asio::const_buffer, 2> buffers{asio::buffer(head), asio::buffer(data, ready)};
        expectWithin_(settings_.idleTimeout);
        const auto [error, size] = co_await asio::async_write(socket_, buffers, asTuple);
        if (error)
            co_return co_await refuse_(hangUp);
        head.clear();
        left -= ready;
    } while (left > 0);
    co_return keepAlive;
}

asio::awaitable<bool> Connection::refuse_(int status)
{
    if (status != hangUp)
    {
        HttpResponse response{.status = status, .headers = {{"Content-Type", "text/plain"}}};
        response.body = httpReasonPhrase(status);
        co_return co_await send_(std::move(response), false, false);
    }
    error_code ignored;
    socket_.close(ignored);
    co_return false;
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
    expectWithin_(lingerTime);
    while (!error)
        std::tie(error, std::ignore) = co_await socket_.async_read_some(asio::buffer(piece_), asTuple);
    socket_.close(error);
}

void Connection::expectWithin_(std::chrono::milliseconds time)
{
    isTimedOut_ = false;
    due_ = Clock::now() + time;
    if (!isWatched_ || due_ < deadline_.expiry())
        watch_();
}

/// A single timer looks after all operations: it is set again only when it has run out, which is cheaper than starting
/// and cancelling one for each piece of a body.
void Connection::watch_()
{
    isWatched_ = true;
    deadline_.expires_at(due_);
    deadline_.async_wait(
        [weak = weak_from_this()](error_code error)
        {
            const auto self = weak.lock();
            if (!error && self)
                self->checkDeadline_();
        });
}

/// While the handler thinks, nothing is expected of the client: the time may run out then, but there is no operation
/// that it could end.
void Connection::checkDeadline_()
{
    isWatched_ = false;
    if (Clock::now() < due_)
    {
        watch_();
        return;
    }
    isTimedOut_ = true;
    error_code ignored;
    socket_.cancel(ignored);
}

} // namespace

asio::awaitable<void> serveHttpConnection(tcp::socket socket, const HttpServer::Settings& settings,
                                          HttpHandler& handler, std::shared_ptr<HttpReplyGate> gate)
{
    auto connection = std::make_shared<Connection>(std::move(socket), settings, handler, std::move(gate));
    return Connection::serve(std::move(connection));
}

} // namespace VX
