#include "ServerFixture.h"

#include <future>
#include <string>
#include <string_view>
#include <thread>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

/// The status of an answer, after which the server has closed the connection; 0 for none.
int finalStatus(RawSocket& socket)
{
    const auto text = socket.receiveAll();
    return text.starts_with("HTTP/1.1 ") ? std::stoi(text.substr(9, 3)) : 0;
}

class HttpServerLimitsTests : public ServerFixture
{
protected:
    /// The final status of the answer to bytes sent on a connection of their own.
    [[nodiscard]] int finalStatusOf(std::string_view bytes) const
    {
        auto socket = connect();
        socket.send(bytes);
        return finalStatus(socket);
    }

    /// Serves while no request is expected to be complete: one that is fails the test.
    void serveNothing()
    {
        answer = [](const HttpRequest& request, const Respond& respond)
        {
            ADD_FAILURE() << "handled: " << request.method << ' ' << request.path;
            respond({});
        };
        serve();
    }

    /// Takes bodies of 10 bytes at most.
    void serveSmallBodies()
    {
        accept = [](const HttpRequest&) { return HttpBodySink{.limit = 10}; };
        serve();
    }
};

struct Malformed
{
    const char* name;
    const char* bytes;
    int status;
};

class MalformedRequestTests : public HttpServerLimitsTests, public testing::WithParamInterface<Malformed>
{
};

} // namespace

TEST_P(MalformedRequestTests, IsRefusedAndTheConnectionClosed)
{
    serveNothing();
    EXPECT_EQ(finalStatusOf(GetParam().bytes), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Http, MalformedRequestTests,
    testing::Values(
        Malformed{"Garbage", "\x16\x03\x01\x02 hello\r\n\r\n", 400}, Malformed{"NoVersion", "GET /\r\n\r\n", 400},
        Malformed{"UnknownVersion", "GET / HTTP/3.0\r\nHost: x\r\n\r\n", 505},
        Malformed{"Http2Preface", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 505},
        Malformed{"NoHost", "GET / HTTP/1.1\r\n\r\n", 400},
        Malformed{"TwoHosts", "GET / HTTP/1.1\r\nHost: a\r\nHost: b\r\n\r\n", 400},
        Malformed{"BadEscape", "GET /%zz HTTP/1.1\r\nHost: x\r\n\r\n", 400},
        Malformed{"BadQueryEscape", "GET /?a=% HTTP/1.1\r\nHost: x\r\n\r\n", 400},
        Malformed{"ZeroByte", "GET /a%00b HTTP/1.1\r\nHost: x\r\n\r\n", 400},
        Malformed{"Authority", "CONNECT host:80 HTTP/1.1\r\nHost: x\r\n\r\n", 400},
        Malformed{"BlankBeforeColon", "GET / HTTP/1.1\r\nHost : x\r\n\r\n", 400},
        Malformed{"HeaderWithoutColon", "GET / HTTP/1.1\r\nHost: x\r\nNonsense\r\n\r\n", 400},
        Malformed{"LengthIsNoNumber", "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: ten\r\n\r\n", 400},
        Malformed{"NegativeLength", "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: -1\r\n\r\n", 400},
        Malformed{"TwoLengths", "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nab", 400},
        Malformed{"LengthAndChunked",
                  "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
                  400},
        Malformed{"UnknownEncoding", "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: gzip\r\n\r\n", 501},
        Malformed{"ChunkedInHttp10", "POST / HTTP/1.0\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n", 400},
        Malformed{"BadChunkSize", "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n", 400},
        Malformed{"HugeChunkSize",
                  "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nfffffffffffffffff\r\n", 400},
        Malformed{"ChunkWithoutLineEnd",
                  "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabcdef\r\n0\r\n\r\n", 400},
        Malformed{"UnknownExpectation", "PUT / HTTP/1.1\r\nHost: x\r\nExpect: wonders\r\nContent-Length: 1\r\n\r\n",
                  417}),
    [](const auto& test) { return test.param.name; });

TEST_F(HttpServerLimitsTests, ALongHeadIsRefused)
{
    serve({.headLimit = 4096});
    EXPECT_EQ(finalStatusOf("GET / HTTP/1.1\r\nHost: x\r\nX: " + std::string(5000, 'x') + "\r\n\r\n"), 431);
}

TEST_F(HttpServerLimitsTests, AHeadWithoutEndIsRefused)
{
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\n");
    for (int i = 0; i < 100; ++i)
        socket.send("X: " + std::string(1000, 'x') + "\r\n");
    EXPECT_EQ(finalStatus(socket), 431);
}

TEST_F(HttpServerLimitsTests, ABodyOverTheLimitIsRefusedBeforeItIsRead)
{
    serveSmallBodies();
    EXPECT_EQ(finalStatusOf("PUT / HTTP/1.1\r\nHost: x\r\nExpect: 100-continue\r\nContent-Length: 11\r\n\r\n"), 413);
}

TEST_F(HttpServerLimitsTests, ABodyAtTheLimitIsTaken)
{
    serveSmallBodies();
    EXPECT_TRUE(answerTo("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 10\r\n\r\n0123456789").ends_with("0123456789"));
}

TEST_F(HttpServerLimitsTests, AChunkedBodyOverTheLimitIsRefused)
{
    serveSmallBodies();
    EXPECT_EQ(
        finalStatusOf(
            "PUT / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n6\r\nabcdef\r\n6\r\nabcdef\r\n0\r\n\r\n"),
        413);
}

TEST_F(HttpServerLimitsTests, AChunkHeaderWithoutEndIsRefused)
{
    serve();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n1;");
    const std::string extension(100'000, 'e');
    int pieces = 0;
    while (pieces < 100 && socket.send(extension))
        ++pieces;
    const int status = finalStatus(socket);
    EXPECT_TRUE(status == 400 || (status == 0 && pieces < 100)) << status << " after " << pieces;
}

TEST_F(HttpServerLimitsTests, AnAnswerIsNotLostWhenItsBodyIsStillOnTheWay)
{
    accept = [](const HttpRequest&) -> tl::expected<HttpBodySink, HttpResponse>
    { return tl::unexpected(HttpResponse{.status = 403}); };
    serve();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 3000000\r\n\r\n");
    socket.send(std::string(3'000'000, 'x'));
    EXPECT_TRUE(socket.receiveAnswer().starts_with("HTTP/1.1 403 "));
}

TEST_F(HttpServerLimitsTests, AnIdleConnectionIsClosed)
{
    serve({.idleTimeout = 50ms});
    auto socket = connect();
    EXPECT_EQ(socket.receiveAll(), "");
}

TEST_F(HttpServerLimitsTests, AnIdleConnectionIsClosedAfterAnAnswerToo)
{
    serve({.idleTimeout = 50ms});
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(socket.receiveAll().ends_with("GET / "));
}

TEST_F(HttpServerLimitsTests, AHeadThatStallsIsAnsweredWith408)
{
    serve({.idleTimeout = 50ms});
    EXPECT_EQ(finalStatusOf("GET / HT"), 408);
}

TEST_F(HttpServerLimitsTests, ABodyThatStallsIsAnsweredWith408AndLeavesNoFile)
{
    const TempDir folder;
    accept = [&](const HttpRequest&) { return HttpBodySink{.file = folder.path() / "upload.bin"}; };
    serve({.idleTimeout = 50ms});
    EXPECT_EQ(finalStatusOf("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 10\r\n\r\nabc"), 408);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(HttpServerLimitsTests, AChunkedBodyThatStallsIsAnsweredWith408)
{
    serve({.idleTimeout = 50ms});
    EXPECT_EQ(finalStatusOf("PUT / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab"), 408);
}

TEST_F(HttpServerLimitsTests, AClientThatReadsNothingIsGivenUp)
{
    answer = [](const HttpRequest& request, const Respond& respond)
    { respond({.body = std::string(request.path == "/large" ? 64U << 20U : 1, 'x')}); };
    serve({.maxConnections = 1, .idleTimeout = 50ms});
    auto stuck = connect();
    stuck.send("GET /large HTTP/1.1\r\nHost: x\r\n\r\n");
    // The only connection is free again once the server has given up the one before.
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (answerTo("GET / HTTP/1.1\r\nHost: x\r\n\r\n").empty())
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    EXPECT_LT(stuck.receiveAll().size(), 64U << 20U);
}

TEST_F(HttpServerLimitsTests, ALongAnswerTimeIsNotAnIdleConnection)
{
    std::promise<Respond> asked;
    answer = [&](const HttpRequest& request, Respond respond)
    {
        if (request.path == "/")
            asked.set_value(std::move(respond));
    };
    serve({.idleTimeout = 50ms});
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    const auto respond = asked.get_future().get();
    auto other = connect();
    EXPECT_EQ(other.receiveAll(), "");
    respond({.body = "late"});
    EXPECT_TRUE(socket.receiveAll().ends_with("late"));
}

TEST_F(HttpServerLimitsTests, ConnectionsOverTheLimitAreClosed)
{
    serve({.maxConnections = 1});
    auto first = connect();
    first.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(first.receiveAnswer().ends_with("GET / "));
    auto second = connect();
    EXPECT_EQ(second.receiveAll(), "");
    first.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(first.receiveAnswer().ends_with("GET / "));
}

TEST_F(HttpServerLimitsTests, WaitsForTheLastAnswersButNotForLong)
{
    std::promise<Respond> taken;
    answer = [&](const HttpRequest&, Respond respond) { taken.set_value(std::move(respond)); };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    const Respond respond = taken.get_future().get();
    server->finish(1ms);
    std::thread answering([&] { respond({.body = "late"}); });
    server->finish(10s);
    server.reset();
    answering.join();
    EXPECT_TRUE(socket.receiveAll().ends_with("late"));
}

TEST_F(HttpServerLimitsTests, ATruncatedBodyDoesNotReachTheHandler)
{
    serveNothing();
    auto socket = connect();
    socket.send("PUT / HTTP/1.1\r\nHost: x\r\nContent-Length: 10\r\n\r\nabc");
    socket.finishSending();
    EXPECT_EQ(socket.receiveAll(), "");
}

} // namespace VX::Test
