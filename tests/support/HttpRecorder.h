#pragma once

#include <net/HttpServer.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// A real HTTP server on loopback that records each request and answers what the test tells it to: from the queue while
/// it holds answers, otherwise from the function of the path, otherwise status 200 without a body.
/// @threads any
class HttpRecorder final : HttpHandler
{
public:
    struct Answer
    {
        int status = 200; ///< 0 closes the connection without an answer
        std::string body{};
        HttpHeaders headers{};
        std::chrono::milliseconds delay{0}; ///< counts from the end of the request; `stop` ends it
        std::filesystem::path file{};       ///< streamed in place of `body`
    };

    using AnswerFunction = std::function<Answer(const HttpRequest&)>;

    /// Starts serving; aborts the test program where no port can be had.
    HttpRecorder();
    ~HttpRecorder() override;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// "http://127.0.0.1:PORT" and `path`, which begins with "/".
    [[nodiscard]] std::string url(std::string_view path = "/") const;

    /// Answers the next request that no earlier queued answer takes, whatever its path.
    void enqueue(Answer answer);

    /// Answers every request for `path`; a new answer replaces the one before.
    void answer(std::string path, Answer answer);

    /// Calls `answer` for every request for `path`, on a server thread, several at a time.
    void answer(std::string path, AnswerFunction answer);

    /// The requests so far, in the order in which their bodies were complete.
    [[nodiscard]] std::vector<HttpRequest> requests() const;

    /// Waits until at least `count` requests have been recorded.
    /// @return false where that takes longer than `deadline`
    [[nodiscard]] bool waitForRequests(std::size_t count,
                                       std::chrono::milliseconds deadline = std::chrono::seconds(10)) const;

    /// Closes every connection and the port, as when the server is killed. What was recorded stays.
    void stop();

private:
    tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head) override;
    void handle(HttpRequest request, Respond respond) override;
    Answer answerTo_(const HttpRequest& request);

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<HttpRequest> requests_;
    std::deque<Answer> queue_;
    std::map<std::string, AnswerFunction> byPath_;
    bool isStopping_ = false;
    std::uint16_t port_ = 0;
    std::unique_ptr<HttpServer> server_;
};

} // namespace VX::Test
