#include "ServerFixture.h"

#include <condition_variable>
#include <fstream>
#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace VX::Test
{

namespace
{

using HttpServerTests = ServerFixture;

bool endsWith(const std::string& text, std::string_view end)
{
    return std::string_view(text).ends_with(end);
}

} // namespace

TEST_F(HttpServerTests, HandsTheRequestToItsHandler)
{
    HttpRequest seen;
    answer = [&](HttpRequest request, const Respond& respond)
    {
        seen = std::move(request);
        respond({});
    };
    serve();
    const auto text =
        answerTo("POST /a%20b?k=v%2B1 HTTP/1.1\r\nHost: x\r\nX-One: 1\r\nx-one: 2\r\nContent-Length: 4\r\n\r\n"
                 "body");
    EXPECT_TRUE(text.starts_with("HTTP/1.1 200 OK\r\n")) << text;
    EXPECT_EQ(seen.method, "POST");
    EXPECT_EQ(seen.path, "/a b");
    EXPECT_EQ(seen.rawQuery, "k=v%2B1");
    EXPECT_EQ(seen.query.at("k"), "v+1");
    EXPECT_EQ(seen.headers.at("X-ONE"), "1, 2");
    EXPECT_EQ(seen.body, "body");
    EXPECT_EQ(seen.peerAddress, "127.0.0.1");
    EXPECT_NE(seen.peerPort, 0);
}

TEST_F(HttpServerTests, AnswersWithStatusHeadersAndBody)
{
    answer = [](const HttpRequest&, const Respond& respond)
    { respond({.status = 404, .headers = {{"Content-Type", "text/x"}}, .body = "nobody here"}); };
    serve();
    const auto text = answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(text.starts_with("HTTP/1.1 404 Not Found\r\n")) << text;
    EXPECT_NE(text.find("\r\nContent-Type: text/x\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\nContent-Length: 11\r\n"), std::string::npos);
    EXPECT_TRUE(endsWith(text, "\r\n\r\nnobody here")) << text;
}

TEST_F(HttpServerTests, KeepsTheConnectionForTheNextRequest)
{
    serve();
    auto socket = connect();
    for (const char* path : {"/one", "/two"})
    {
        socket.send(std::string("GET ") + path + " HTTP/1.1\r\nHost: x\r\n\r\n");
        EXPECT_TRUE(endsWith(socket.receiveAnswer(), std::string("GET ") + path + ' '));
    }
}

TEST_F(HttpServerTests, AnswersPipelinedRequestsInOrder)
{
    serve();
    auto socket = connect();
    socket.send("POST /1 HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\n\r\nabcGET /2 HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "POST /1 abc"));
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "GET /2 "));
}

TEST_F(HttpServerTests, ClosesWhenTheClientAsksForIt)
{
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    const auto text = socket.receiveAll();
    EXPECT_NE(text.find("\r\nConnection: close\r\n"), std::string::npos);
    EXPECT_TRUE(endsWith(text, "GET / "));
}

TEST_F(HttpServerTests, ClosesWhenTheHandlerAsksForIt)
{
    answer = [](const HttpRequest&, const Respond& respond) { respond({.headers = {{"connection", "Close"}}}); };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_NE(socket.receiveAll().find("\r\nConnection: close\r\n"), std::string::npos);
}

TEST_F(HttpServerTests, AnOldClientGetsOneAnswerPerConnection)
{
    serve();
    auto socket = connect();
    socket.send("GET /old HTTP/1.0\r\n\r\n");
    EXPECT_TRUE(endsWith(socket.receiveAll(), "GET /old "));
}

TEST_F(HttpServerTests, AHalfClosedClientStillGetsItsAnswer)
{
    serve();
    auto socket = connect();
    socket.send("GET /half HTTP/1.1\r\nHost: x\r\n\r\n");
    socket.finishSending();
    EXPECT_TRUE(endsWith(socket.receiveAll(), "GET /half "));
}

TEST_F(HttpServerTests, HeadIsAnsweredWithoutABody)
{
    serve();
    auto socket = connect();
    socket.send("HEAD / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    const auto text = socket.receiveAll();
    EXPECT_NE(text.find("\r\nContent-Length: 7\r\n"), std::string::npos) << text;
    EXPECT_TRUE(endsWith(text, "\r\n\r\n")) << text;
}

TEST_F(HttpServerTests, AStatusWithoutABodyHasNoLength)
{
    answer = [](const HttpRequest&, const Respond& respond) { respond({.status = 204, .body = "ignored"}); };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    const auto text = socket.receiveAll();
    EXPECT_EQ(text.find("Content-Length"), std::string::npos) << text;
    EXPECT_TRUE(endsWith(text, "\r\n\r\n")) << text;
}

TEST_F(HttpServerTests, ReadsChunkedBodies)
{
    serve();
    EXPECT_TRUE(endsWith(answerTo("POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n"
                                  "3\r\nabc\r\n5;name=value\r\ndefgh\r\n0\r\nTrailer: t\r\n\r\n"),
                         "POST / abcdefgh"));
}

TEST_F(HttpServerTests, ReadsALargeChunkedBodyAndTheRequestAfterIt)
{
    const std::string chunk(100'000, 'c');
    accept = [](const HttpRequest&) { return HttpBodySink{.limit = 10'000'000}; };
    answer = [](const HttpRequest& request, const Respond& respond)
    { respond({.body = request.path + ' ' + std::to_string(request.body.size())}); };
    serve();
    auto socket = connect();
    std::string bytes = "POST /one HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (int i = 0; i < 30; ++i)
        bytes += "186A0\r\n" + chunk + "\r\n";
    socket.send(bytes + "0\r\n\r\nGET /two HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "/one 3000000"));
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "/two 0"));
}

TEST_F(HttpServerTests, TellsAWaitingClientToContinue)
{
    serve();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nExpect: 100-continue\r\nContent-Length: 3\r\n\r\n");
    EXPECT_EQ(socket.receiveUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
    socket.send("abc");
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "PUT / abc"));
}

TEST_F(HttpServerTests, WritesABodyToItsFile)
{
    const TempDir folder;
    const auto file = folder.path() / "upload.bin";
    HttpRequest seen;
    accept = [&](const HttpRequest&) { return HttpBodySink{.limit = 2'000'000, .file = file}; };
    answer = [&](HttpRequest request, const Respond& respond)
    {
        seen = std::move(request);
        respond({.status = 201});
    };
    serve();
    const std::string body(1'500'000, 'b');
    const auto text = answerTo("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 1500000\r\n\r\n" + body);
    EXPECT_TRUE(text.starts_with("HTTP/1.1 201 Created")) << text;
    EXPECT_EQ(seen.bodyFile, file);
    EXPECT_TRUE(seen.body.empty());
    EXPECT_TRUE(readFile(file) == body);
    EXPECT_EQ(std::filesystem::status(file).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(HttpServerTests, ABodyThatIsCutOffLeavesNoFile)
{
    const TempDir folder;
    std::promise<void> started;
    accept = [&](const HttpRequest&)
    {
        started.set_value();
        return HttpBodySink{.file = folder.path() / "upload.bin"};
    };
    serve();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n\r\nonly this");
    started.get_future().wait();
    socket.reset();
    server.reset();
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(HttpServerTests, ABodyWhoseFolderIsMissingIsAFailureOfTheServer)
{
    accept = [&](const HttpRequest&) { return HttpBodySink{.file = "/nonexistent-folder/upload.bin"}; };
    serve();
    EXPECT_TRUE(answerTo("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\n\r\nabc").starts_with("HTTP/1.1 500 "));
}

TEST_F(HttpServerTests, StreamsAFileAsTheBody)
{
    const TempDir folder;
    std::string content;
    for (int i = 0; content.size() < 1'000'000; ++i)
        content += std::to_string(i);
    const auto file = folder.write("result.bin", content);
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.file = file}); };
    serve();
    auto socket = connect();
    for (int i = 0; i < 2; ++i)
    {
        socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        const auto text = socket.receiveAnswer();
        EXPECT_TRUE(text.substr(text.find("\r\n\r\n") + 4) == content);
    }
}

TEST_F(HttpServerTests, AnEmptyFileIsAnEmptyBody)
{
    const TempDir folder;
    const auto file = folder.write("empty.bin", "");
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.file = file}); };
    serve();
    EXPECT_NE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").find("\r\nContent-Length: 0\r\n"), std::string::npos);
}

TEST_F(HttpServerTests, WhatIsNotARegularFileCannotBeStreamed)
{
    const TempDir folder;
    std::filesystem::path file;
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.file = file}); };
    serve();
    for (const auto& path : {folder.path() / "missing", folder.path(), std::filesystem::path("/dev/zero")})
    {
        file = path;
        EXPECT_TRUE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").starts_with("HTTP/1.1 500 ")) << path;
    }
}

TEST_F(HttpServerTests, RefusesARequestByItsHead)
{
    bool isHandled = false;
    accept = [](const HttpRequest&) -> tl::expected<HttpBodySink, HttpResponse>
    { return tl::unexpected(HttpResponse{.status = 403, .body = "no"}); };
    answer = [&](const HttpRequest&, const Respond& respond)
    {
        isHandled = true;
        respond({});
    };
    serve();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 1000\r\n\r\n");
    const auto text = socket.receiveAll();
    EXPECT_TRUE(text.starts_with("HTTP/1.1 403 Forbidden\r\n")) << text;
    EXPECT_NE(text.find("\r\nConnection: close\r\n"), std::string::npos);
    EXPECT_FALSE(isHandled);
}

TEST_F(HttpServerTests, AnswersLaterFromAnotherThread)
{
    std::promise<Respond> asked;
    answer = [&](const HttpRequest&, Respond respond) { asked.set_value(std::move(respond)); };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    const auto respond = asked.get_future().get();
    std::thread([&] { respond({.body = "late"}); }).join();
    EXPECT_TRUE(endsWith(socket.receiveAnswer(), "late"));
}

TEST_F(HttpServerTests, OnlyTheFirstAnswerCounts)
{
    answer = [](const HttpRequest&, const Respond& respond)
    {
        respond({.body = "first"});
        respond({.body = "second"});
    };
    serve();
    auto socket = connect();
    for (int i = 0; i < 2; ++i)
    {
        socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        EXPECT_TRUE(endsWith(socket.receiveAnswer(), "first"));
    }
}

TEST_F(HttpServerTests, ARequestThatIsDroppedGetsStatus500)
{
    answer = [](const HttpRequest&, const Respond&) {};
    serve();
    EXPECT_TRUE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").starts_with("HTTP/1.1 500 Internal Server Error\r\n"));
}

TEST_F(HttpServerTests, AHandlerThatThrowsGivesStatus500)
{
    answer = [](const HttpRequest&, const Respond&) { throw std::runtime_error("broken"); };
    serve();
    EXPECT_TRUE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").starts_with("HTTP/1.1 500 "));
    accept = [](const HttpRequest&) -> HttpBodySink { throw std::runtime_error("broken"); };
    EXPECT_TRUE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").starts_with("HTTP/1.1 500 "));
}

TEST_F(HttpServerTests, AnUnusableStatusBecomes500)
{
    answer = [](const HttpRequest&, const Respond& respond) { respond({.status = 42}); };
    serve();
    EXPECT_TRUE(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").starts_with("HTTP/1.1 500 "));
}

TEST_F(HttpServerTests, StatusZeroClosesWithoutAnAnswer)
{
    answer = [](const HttpRequest&, const Respond& respond) { respond({.status = 0}); };
    serve();
    EXPECT_EQ(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n"), "");
}

TEST_F(HttpServerTests, HeaderValuesCannotStartFieldsOfTheirOwn)
{
    answer = [](const HttpRequest&, const Respond& respond) { respond({.headers = {{"X", "a\r\nInjected: 1"}}}); };
    serve();
    const auto text = answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_EQ(text.find("\r\nInjected"), std::string::npos) << text;
    EXPECT_NE(text.find("\r\nX: a  Injected: 1\r\n"), std::string::npos) << text;
}

TEST_F(HttpServerTests, ServesSeveralClientsWhileOneAnswerIsPending)
{
    std::promise<Respond> asked;
    answer = [&](const HttpRequest& request, Respond respond)
    {
        if (request.path == "/slow")
            asked.set_value(std::move(respond));
        else
            respond({.body = "quick"});
    };
    serve();
    auto slow = connect();
    slow.send("GET /slow HTTP/1.1\r\nHost: x\r\n\r\n");
    const auto respond = asked.get_future().get();
    EXPECT_TRUE(endsWith(answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n"), "quick"));
    respond({.body = "slow"});
    EXPECT_TRUE(endsWith(slow.receiveAnswer(), "slow"));
}

TEST_F(HttpServerTests, EndsWhileRequestsAreInFlight)
{
    std::promise<Respond> asked;
    answer = [&](const HttpRequest&, Respond respond) { asked.set_value(std::move(respond)); };
    serve();
    auto idle = connect();
    auto sending = connect();
    sending.send("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 10\r\n\r\nabc");
    auto waiting = connect();
    waiting.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    const auto respond = asked.get_future().get();
    server.reset();
    respond({.body = "too late"});
    EXPECT_EQ(waiting.receiveAll(), "");
    EXPECT_EQ(sending.receiveAll(), "");
    EXPECT_EQ(idle.receiveAll(), "");
}

TEST_F(HttpServerTests, EndsWhileAnswersComeFromOtherThreads)
{
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Respond> asked;
    answer = [&](const HttpRequest&, Respond respond)
    {
        const std::lock_guard lock(mutex);
        asked.push_back(std::move(respond));
        changed.notify_one();
    };
    serve();
    std::vector<RawSocket> sockets;
    for (int i = 0; i < 20; ++i)
    {
        sockets.push_back(connect());
        sockets.back().send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    }
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return asked.size() == sockets.size(); });
    std::thread answering(
        [&]
        {
            for (auto& respond : asked)
                std::exchange(respond, {})({.body = "x"});
        });
    server.reset();
    answering.join();
}

TEST_F(HttpServerTests, WaitsForARunningHandlerWhenItEnds)
{
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> isLeft = false;
    answer = [&](const HttpRequest&, const Respond&)
    {
        entered.set_value();
        leave.get_future().wait();
        isLeft = true;
    };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    entered.get_future().wait();
    std::thread ending([&] { server.reset(); });
    leave.set_value();
    ending.join();
    EXPECT_TRUE(isLeft);
}

TEST_F(HttpServerTests, TakesOverAListeningSocket)
{
    RawListener listener;
    const auto port = listener.port();
    serve({.listenFd = listener.release()});
    EXPECT_EQ(server->port(), port);
    EXPECT_TRUE(endsWith(answerTo("GET /fd HTTP/1.1\r\nHost: x\r\n\r\n"), "GET /fd "));
}

TEST_F(HttpServerTests, SaysThatAPortIsTaken)
{
    const RawListener listener;
    const auto started = HttpServer::start({.port = listener.port()}, *this);
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(),
              "Port " + std::to_string(listener.port()) + " of 127.0.0.1 cannot be used: Address already in use");
}

TEST_F(HttpServerTests, SaysThatASocketCannotBeUsed)
{
    const auto started = HttpServer::start({.listenFd = 9999}, *this);
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), "The listening socket cannot be used: Bad file descriptor");
}

} // namespace VX::Test
