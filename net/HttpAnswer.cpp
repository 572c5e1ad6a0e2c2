#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>

#include <net/BodyFile.h>
#include <net/HttpAnswer.h>
#include <net/HttpBodyStream.h>
#include <net/HttpResponseHead.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace VX
{

namespace
{

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
/// Bytes moved at once between a file and a socket.
constexpr std::size_t pieceSize = 256U << 10U;
constexpr std::string_view lastChunk = "0\r\n\r\n";

bool asksToClose(const HttpResponse& response)
{
    const auto found = response.headers.find("Connection");
    const HeaderNameLess less;
    return found != response.headers.end() && !less(found->second, "close") && !less("close", found->second);
}

/// The size line of a chunk.
std::string chunkHead(std::size_t size)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%zx\r\n", size);
    return text.data();
}

/// Tells the writer of a stream that nobody reads it any more, however the reading ends.
class StreamCloser
{
public:
    explicit StreamCloser(HttpBodyStream& stream)
        : stream_(stream)
    {
    }

    ~StreamCloser() { stream_.close(); }

    StreamCloser(const StreamCloser&) = delete;
    StreamCloser& operator=(const StreamCloser&) = delete;

private:
    HttpBodyStream& stream_;
};

} // namespace

HttpAnswer::HttpAnswer(tcp::socket& socket, SocketDeadline& deadline, asio::steady_timer& woken,
                       std::chrono::milliseconds timeout)
    : socket_(socket)
    , deadline_(deadline)
    , woken_(woken)
    , timeout_(timeout)
{
}

asio::awaitable<bool> HttpAnswer::send(HttpResponse response, Form form)
{
    form.keepAlive = form.keepAlive && !asksToClose(response);
    if (response.status < 200 || response.status > 999)
        response = {.status = 500};
    if (response.stream)
        co_return co_await sendStream_(response, form);
    co_return co_await sendBody_(response, form);
}

asio::awaitable<bool> HttpAnswer::sendBody_(const HttpResponse& wanted, Form form)
{
    BodyFileReader file;
    const bool isFile = !wanted.file.empty();
    const bool isBroken = isFile && file.open(wanted.file);
    const HttpResponse failure{.status = 500};
    const HttpResponse& response = isBroken ? failure : wanted;
    const std::uint64_t length = isFile && !isBroken ? file.size() : response.body.size();

    std::string head = httpResponseHead(response, "Content-Length: " + std::to_string(length), form.keepAlive);
    std::uint64_t left = form.headOnly || !httpStatusHasBody(response.status) ? 0 : length;
    if (isFile && left > 0 && piece_.empty())
        piece_.resize(pieceSize);
    do
    {
        const auto wantedSize = static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize));
        const char* data = isFile ? piece_.data() : response.body.data() + (length - left);
        const std::size_t ready = isFile && wantedSize > 0 ? file.read({piece_.data(), wantedSize}) : wantedSize;
        if (wantedSize > 0 && ready == 0)
            co_return hangUp(); // the file became shorter than announced
        if (!co_await write_(head, {data, ready}))
            co_return hangUp();
        head.clear();
        left -= ready;
    } while (left > 0);
    co_return form.keepAlive;
}

asio::awaitable<bool> HttpAnswer::sendStream_(const HttpResponse& response, Form form)
{
    HttpBodyStream& stream = *response.stream;
    const StreamCloser closer(stream);
    const bool hasBody = !form.headOnly && httpStatusHasBody(response.status);
    form.keepAlive = form.keepAlive && (form.mayChunk || !hasBody);
    std::string head = httpResponseHead(response, form.mayChunk ? "Transfer-Encoding: chunked" : "", form.keepAlive);
    HttpBodyStream::Piece piece;
    do
    {
        piece = hasBody ? stream.take() : HttpBodyStream::Piece{.bytes = {}, .isLast = true};
        if (piece.isClosed)
            co_return hangUp();
        std::string& body = piece.bytes;
        if (body.empty() && !piece.isLast && head.empty())
        {
            if (!co_await isPauseOver_(stream.pause()))
                continue;
            body = stream.heartbeat();
        }
        if (!body.empty() && form.mayChunk)
        {
            head += chunkHead(body.size());
            body += "\r\n";
        }
        if (piece.isLast && hasBody && form.mayChunk)
            body += lastChunk;
        if (!co_await write_(head, body))
            co_return hangUp();
        head.clear();
    } while (!piece.isLast);
    co_return form.keepAlive;
}

asio::awaitable<bool> HttpAnswer::write_(std::string_view first, std::string_view second)
{
    const std::array<asio::const_buffer, 2> buffers{asio::buffer(first), asio::buffer(second)};
    deadline_.expectWithin(timeout_);
    const auto [error, size] = co_await asio::async_write(socket_, buffers, asTuple);
    co_return !error;
}

/// Waits until the stream has something; true where nothing came for so long.
asio::awaitable<bool> HttpAnswer::isPauseOver_(std::chrono::milliseconds pause)
{
    if (pause.count() > 0)
        woken_.expires_after(pause);
    else
        woken_.expires_at(std::chrono::steady_clock::time_point::max());
    const auto [error] = co_await woken_.async_wait(asTuple);
    co_return !error;
}

bool HttpAnswer::hangUp()
{
    error_code ignored;
    socket_.close(ignored);
    return false;
}

} // namespace VX
