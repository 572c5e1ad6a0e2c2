#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace VX
{

class HttpBodyStream;
class HttpClientWatch;

/// Orders header names without letter case, as RFC 9110 compares them.
struct HeaderNameLess
{
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

using HttpHeaders = std::map<std::string, std::string, HeaderNameLess>;

struct HttpRequest
{
    std::string method{};                       ///< as sent: "GET"
    std::string path{};                         ///< percent-decoded, begins with "/" ("*" of "OPTIONS *" apart)
    std::string rawQuery{};                     ///< as sent, without the "?"
    std::map<std::string, std::string> query{}; ///< percent-decoded; "+" stays a plus; of equal keys the last
    HttpHeaders headers{};                      ///< fields sent several times are joined with ", "
    std::string body{};                         ///< empty where the body went to a file
    std::filesystem::path bodyFile{};           ///< the complete body, where `HttpBodySink::file` asked for it
    std::string peerAddress{};                  ///< "127.0.0.1"
    std::uint16_t peerPort = 0;
    std::shared_ptr<HttpClientWatch> client{}; ///< never null in `HttpHandler::handle`
};

struct HttpResponse
{
    int status = 200; ///< 200 to 999; 0 closes the connection without an answer
    /// The server itself sets Content-Length, Date and Transfer-Encoding; "Connection: close" is honoured.
    HttpHeaders headers{};
    std::string body{};
    /// Streamed as the body in place of `body` where not empty; a file that cannot be opened gives status 500.
    std::filesystem::path file{};
    /// Sent as the body in place of the others where not null, chunked, until it ends or the client goes.
    std::shared_ptr<HttpBodyStream> stream{};
};

/// Where the body of a request goes.
struct HttpBodySink
{
    std::uint64_t limit = 1U << 20U; ///< bytes; a longer body is answered with status 413
    /// Empty: memory. Otherwise the body is written beside it, with mode 0600, and takes this name once it is complete;
    /// a body that is cut off leaves nothing. A full disk is answered with status 507, another failure with 500.
    std::filesystem::path file{};
};

/// Answers the requests of an `HttpServer`. Both operations are called on the server's threads, several at a time.
class HttpHandler
{
public:
    using Respond = std::function<void(HttpResponse)>;

    virtual ~HttpHandler() = default;

    /// Decides from the head alone where the body goes, or refuses the request before its body is read.
    /// Called once for each request, also for those without a body. The base keeps up to 1 MiB in memory.
    virtual tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head);

    /// Answers one request by calling `respond` exactly once, now or later, on any thread. It does nothing once the
    /// client has gone or the server has stopped. A `respond` that is dropped uncalled answers with status 500.
    virtual void handle(HttpRequest request, Respond respond) = 0;
};

/// A small HTTP/1.1 server for loopback: keep-alive, Content-Length and chunked bodies, "Expect: 100-continue", HEAD.
/// What it cannot read is answered with 400, 408, 413, 417, 431, 501 or 505, and the connection is closed.
class HttpServer
{
public:
    struct Settings
    {
        std::uint16_t port = 0; ///< on 127.0.0.1; 0: the system chooses
        int listenFd = -1;      ///< a socket bound to loopback, perhaps listening, to take over instead; -1: none
        unsigned threads = 2;
        std::uint32_t headLimit = 64U << 10U; ///< bytes of request line and headers
        unsigned maxConnections = 512;        ///< more are closed as they come
        /// A head must be complete within this time, and a body or an answer may pause for so long.
        std::chrono::milliseconds idleTimeout{75'000};
        bool sameUserOnly = false; ///< connections from programs of other users are closed as they come
    };

    /// Starts serving; `handler` lives at least as long as the server.
    /// @return the running server, or a sentence that says why the port cannot be used
    [[nodiscard]] static tl::expected<std::unique_ptr<HttpServer>, std::string> start(Settings settings,
                                                                                      HttpHandler& handler);

    /// Closes every connection and waits for the threads; a handler that is running is waited for.
    ~HttpServer();

    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Waits until the requests that the handler has are answered and the answers sent, but no longer than that.
    void finish(std::chrono::milliseconds limit);

    [[nodiscard]] std::uint16_t port() const;

    /// Connections that are open now.
    [[nodiscard]] unsigned connections() const;

private:
    class Impl;
    explicit HttpServer(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl_;
};

} // namespace VX
