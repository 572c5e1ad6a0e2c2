// Boost.Beast takes long to compile: this file is the only one that includes it.
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>

#include <net/HttpBodyCollector.h>
#include <net/HttpRequestReader.h>
#include <net/HttpTarget.h>

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

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
/// Bytes moved at once from the socket to a body.
constexpr std::size_t pieceSize = 256U << 10U;

bool isMalformed(error_code error)
{
    return error.category() == make_error_code(http::error::bad_method).category();
}

/// The status that refuses a head as such.
int checkHead(const Parser& parser)
{
    const auto& message = parser.get();
    const auto hosts = message.count(http::field::host);
    if (message.version() > 11 || message.version() < 10)
        return 505;
    if (hosts > 1 || (hosts == 0 && message.version() == 11))
        return 400;
    if (message.count(http::field::transfer_encoding) > 0 && (!parser.chunked() || message.version() == 10))
        return parser.chunked() ? 400 : 501;
    return HttpRequestReader::goOn;
}

} // namespace

struct HttpRequestReader::State
{
    State(tcp::socket& clientSocket, SocketDeadline& socketDeadline, const HttpServer::Settings& serverSettings)
        : socket(clientSocket)
        , deadline(socketDeadline)
        , settings(serverSettings)
        , buffer(serverSettings.headLimit + 2 * pieceSize)
    {
    }

    [[nodiscard]] int headFailure(error_code error) const
    {
        if (deadline.isOver())
            return parser->got_some() ? 408 : hangUp;
        if (error == http::error::header_limit || error == http::error::buffer_overflow)
            return 431;
        if (error == http::error::bad_version)
            return 505;
        if (error == http::error::bad_alloc)
            return 503;
        return isMalformed(error) && error != http::error::end_of_stream ? 400 : hangUp;
    }

    [[nodiscard]] int bodyFailure(error_code error) const
    {
        if (deadline.isOver())
            return 408;
        return isMalformed(error) && error != http::error::partial_message ? 400 : hangUp;
    }

    int takeHead(HttpRequest& request)
    {
        const auto& message = parser->get();
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
        const auto peer = socket.remote_endpoint(error);
        if (error)
            return hangUp;
        request.peerAddress = peer.address().to_string();
        request.peerPort = peer.port();
        return goOn;
    }

    /// Past the parser, straight from the socket: it would copy the body once more.
    asio::awaitable<int> readPlain(std::uint64_t length, HttpBodyCollector& body)
    {
        std::uint64_t left = length;
        const auto buffered = static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer.size()));
        int status = body.append({static_cast<const char*>(buffer.cdata().data()), buffered});
        buffer.consume(buffered);
        left -= buffered;

        if (piece.size() < pieceSize)
            piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)));
        while (left > 0 && status == goOn)
        {
            deadline.expectWithin(settings.idleTimeout);
            const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()));
            const auto [error, size] = co_await socket.async_read_some(asio::buffer(piece.data(), wanted), asTuple);
            if (error)
                co_return bodyFailure(error);
            status = body.append({piece.data(), size});
            left -= size;
        }
        co_return status;
    }

    asio::awaitable<int> readChunks(HttpBodyCollector& body)
    {
        buffer.reserve(pieceSize); // otherwise the parser asks the socket for 512 bytes at a time
        piece.resize(pieceSize);
        while (!parser->is_done())
        {
            auto& window = parser->get().body();
            window.data = piece.data();
            window.size = piece.size();
            deadline.expectWithin(settings.idleTimeout);
            const auto [error, size] = co_await http::async_read_some(socket, buffer, *parser, asTuple);
            if (const int status = body.append({piece.data(), piece.size() - window.size}); status != goOn)
                co_return status;
            if (error && error != http::error::need_buffer)
                co_return bodyFailure(error);
        }
        co_return goOn;
    }

    tcp::socket& socket;
    SocketDeadline& deadline;
    const HttpServer::Settings& settings;
    beast::flat_buffer buffer;
    std::vector<char> piece;
    std::optional<Parser> parser; ///< of the request that is being read
};

HttpRequestReader::HttpRequestReader(tcp::socket& socket, SocketDeadline& deadline,
                                     const HttpServer::Settings& settings)
    : state_(std::make_unique<State>(socket, deadline, settings))
{
}

HttpRequestReader::~HttpRequestReader() = default;

asio::awaitable<int> HttpRequestReader::readHead(HttpRequest& request)
{
    Parser& parser = state_->parser.emplace();
    parser.header_limit(state_->settings.headLimit);
    parser.body_limit(boost::none); // the sink decides
    state_->deadline.expectWithin(state_->settings.idleTimeout);
    const auto [error, size] = co_await http::async_read_header(state_->socket, state_->buffer, parser, asTuple);
    if (error)
        co_return state_->headFailure(error);
    const int status = checkHead(parser);
    co_return status == goOn ? state_->takeHead(request) : status;
}

bool HttpRequestReader::hasBody() const
{
    return state_->parser->chunked() || state_->parser->content_length().value_or(0) > 0;
}

HttpAnswer::Form HttpRequestReader::answerForm() const
{
    const Parser& parser = *state_->parser;
    return {.headOnly = parser.get().method() == http::verb::head,
            .keepAlive = parser.keep_alive(),
            .mayChunk = parser.get().version() == 11};
}

asio::awaitable<int> HttpRequestReader::readBody(const HttpBodySink& sink, HttpRequest& request)
{
    const Parser& parser = *state_->parser;
    const std::uint64_t length = parser.content_length().value_or(0);
    if (length > sink.limit)
        co_return 413;
    HttpBodyCollector body;
    if (const int status = body.begin(sink); status != goOn)
        co_return status;

    if (hasBody() && state_->buffer.size() == 0 && request.headers.contains("Expect"))
    {
        static constexpr std::string_view interim = "HTTP/1.1 100 Continue\r\n\r\n";
        state_->deadline.expectWithin(state_->settings.idleTimeout);
        const auto [error, size] = co_await asio::async_write(state_->socket, asio::buffer(interim), asTuple);
        if (error)
            co_return hangUp;
    }
    const int status = parser.chunked() ? co_await state_->readChunks(body) : co_await state_->readPlain(length, body);
    co_return status == goOn ? body.finish(request) : status;
}

} // namespace VX
