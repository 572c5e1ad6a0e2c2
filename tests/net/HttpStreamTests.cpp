#include "ServerFixture.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>

#include <net/HttpBodyStream.h>
#include <net/HttpClientWatch.h>

#include <atomic>
#include <future>

namespace VX::Test
{

namespace
{

using HttpStreamTests = ServerFixture;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view get = "GET / HTTP/1.1\r\nHost: x\r\n\r\n";

} // namespace

TEST_F(HttpStreamTests, SendsWhatIsWrittenAsItComes)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest&, const Respond& respond)
    { respond({.headers = {{"Content-Type", "text/x"}}, .stream = stream}); };
    serve();
    auto socket = connect();
    socket.send(get);
    const std::string head = socket.receiveUntil("\r\n\r\n");
    EXPECT_THAT(head, HasSubstr("Transfer-Encoding: chunked\r\n"));
    EXPECT_THAT(head, HasSubstr("Content-Type: text/x\r\n"));
    EXPECT_THAT(head, Not(HasSubstr("Content-Length")));
    EXPECT_TRUE(stream->write("hello"));
    EXPECT_EQ(socket.receiveUntil("hello\r\n"), "5\r\nhello\r\n");
    EXPECT_TRUE(stream->write("a longer piece of text"));
    EXPECT_EQ(socket.receiveUntil("text\r\n"), "16\r\na longer piece of text\r\n");
    stream->end();
    EXPECT_EQ(socket.receiveUntil("0\r\n\r\n"), "0\r\n\r\n");
}

TEST_F(HttpStreamTests, SendsWhatWasWrittenBeforeTheAnswer)
{
    answer = [](const HttpRequest&, const Respond& respond)
    {
        const auto stream = std::make_shared<HttpBodyStream>();
        stream->write("early");
        stream->end();
        respond({.stream = stream});
    };
    serve();
    auto socket = connect();
    for (int i = 0; i < 2; ++i)
    {
        socket.send(get);
        socket.receiveUntil("\r\n\r\n");
        EXPECT_EQ(socket.receiveUntil("\r\n0\r\n\r\n"), "5\r\nearly\r\n0\r\n\r\n");
    }
}

TEST_F(HttpStreamTests, AnEmptyStreamIsAnEmptyBody)
{
    answer = [](const HttpRequest&, const Respond& respond)
    {
        const auto stream = std::make_shared<HttpBodyStream>();
        stream->end();
        respond({.stream = stream});
    };
    serve();
    auto socket = connect();
    socket.send(get);
    socket.receiveUntil("\r\n\r\n");
    EXPECT_EQ(socket.receiveUntil("0\r\n\r\n"), "0\r\n\r\n");
}

TEST_F(HttpStreamTests, AClientOfHttp10ReadsUntilTheEnd)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.stream = stream}); };
    serve();
    auto socket = connect();
    socket.send("GET / HTTP/1.0\r\n\r\n");
    stream->write("whole");
    stream->end();
    EXPECT_THAT(socket.receiveAll(), testing::EndsWith("\r\n\r\nwhole"));
}

TEST_F(HttpStreamTests, AHeadRequestLeavesTheStreamOut)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest& request, const Respond& respond)
    {
        if (request.method == "HEAD")
            respond({.stream = stream});
        else
            respond({.body = "next"});
    };
    serve();
    auto socket = connect();
    socket.send("HEAD / HTTP/1.1\r\nHost: x\r\n\r\n");
    socket.receiveUntil("\r\n\r\n");
    EXPECT_TRUE(waitUntil([&] { return !stream->write("unread"); }));
    socket.send(get);
    EXPECT_THAT(socket.receiveAnswer(), testing::EndsWith("next"));
}

TEST_F(HttpStreamTests, AHeartbeatComesWhileNothingElseDoes)
{
    const auto stream = std::make_shared<HttpBodyStream>("beat", 5ms);
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.stream = stream}); };
    serve();
    auto socket = connect();
    socket.send(get);
    EXPECT_THAT(socket.receiveUntil("beat\r\n4\r\nbeat\r\n"), HasSubstr("beat"));
}

TEST_F(HttpStreamTests, AStreamOutlivesTheIdleTimeOfTheServer)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest& request, const Respond& respond)
    {
        if (request.path == "/")
            respond({.stream = stream});
    };
    serve({.idleTimeout = 50ms});
    auto socket = connect();
    socket.send(get);
    auto idle = connect();
    EXPECT_EQ(idle.receiveAll(), "");
    EXPECT_TRUE(stream->write("late"));
    EXPECT_THAT(socket.receiveUntil("late"), testing::EndsWith("late"));
}

TEST_F(HttpStreamTests, WritesFailOnceTheClientHasGone)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    std::promise<void> gone;
    answer = [&](const HttpRequest& request, const Respond& respond)
    {
        request.client->onGone([&] { gone.set_value(); });
        respond({.stream = stream});
    };
    serve();
    {
        auto socket = connect();
        socket.send(get);
        socket.receiveUntil("\r\n\r\n");
    }
    EXPECT_EQ(gone.get_future().wait_for(30s), std::future_status::ready);
    EXPECT_FALSE(stream->write("unread"));
    EXPECT_TRUE(waitUntil([&] { return server->connections() == 0; }));
}

TEST_F(HttpStreamTests, AClientThatStaysIsNotTakenForGone)
{
    std::vector<std::shared_ptr<HttpBodyStream>> streams;
    answer = [&](const HttpRequest&, const Respond& respond)
    { respond({.stream = streams.emplace_back(std::make_shared<HttpBodyStream>())}); };
    serve();
    // Now and then a thread passes on that a request has come when the other one has answered it already.
    for (int i = 0; i < 2000; ++i)
    {
        auto socket = connect();
        socket.send(get);
        socket.receiveUntil("\r\n\r\n");
        ASSERT_TRUE(streams.back()->write("x"));
        ASSERT_EQ(socket.receiveUntil("x\r\n"), "1\r\nx\r\n");
    }
}

TEST_F(HttpStreamTests, AClientThatResetsIsSeenToGo)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.stream = stream}); };
    serve();
    auto socket = connect();
    socket.send(get);
    socket.receiveUntil("\r\n\r\n");
    socket.reset();
    EXPECT_TRUE(waitUntil([&] { return !stream->write("x"); }));
}

TEST_F(HttpStreamTests, AClientThatReadsNothingLosesItsStream)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.stream = stream}); };
    serve({.idleTimeout = 50ms});
    auto socket = connect();
    socket.send(get);
    socket.receiveUntil("\r\n\r\n");
    const std::string piece(1U << 20U, 'x');
    EXPECT_TRUE(waitUntil([&] { return !stream->write(piece); }));
}

TEST_F(HttpStreamTests, BytesThatWaitAreCounted)
{
    HttpBodyStream stream;
    stream.write("abc");
    EXPECT_EQ(stream.waiting(), 3U);
    stream.take();
    EXPECT_EQ(stream.waiting(), 0U);
}

TEST_F(HttpStreamTests, AStreamMayOutliveTheServer)
{
    const auto stream = std::make_shared<HttpBodyStream>();
    answer = [&](const HttpRequest&, const Respond& respond) { respond({.stream = stream}); };
    serve();
    auto socket = connect();
    socket.send(get);
    socket.receiveUntil("\r\n\r\n");
    server.reset();
    EXPECT_FALSE(stream->write("late"));
    stream->end();
}

TEST_F(HttpStreamTests, TheHandlerHearsThatAClientLeavesBeforeTheAnswer)
{
    std::promise<Respond> asked;
    std::promise<void> gone;
    answer = [&](const HttpRequest& request, Respond respond)
    {
        request.client->onGone([&] { gone.set_value(); });
        asked.set_value(std::move(respond));
    };
    serve();
    Respond respond;
    {
        auto socket = connect();
        socket.send(get);
        respond = asked.get_future().get();
    }
    EXPECT_EQ(gone.get_future().wait_for(30s), std::future_status::ready);
    respond({});
}

TEST_F(HttpStreamTests, AHalfClosedClientIsAnsweredAllTheSame)
{
    std::promise<void> gone;
    answer = [&](const HttpRequest& request, const Respond& respond)
    {
        request.client->onGone(
            [&, respond]
            {
                respond({.body = "still there"});
                gone.set_value();
            });
    };
    serve();
    auto socket = connect();
    socket.send(get);
    socket.finishSending();
    EXPECT_EQ(gone.get_future().wait_for(30s), std::future_status::ready);
    EXPECT_THAT(socket.receiveAll(), HasSubstr("still there"));
}

TEST_F(HttpStreamTests, ANextRequestIsNotADeparture)
{
    std::promise<Respond> asked;
    std::atomic<bool> isGone = false;
    answer = [&](const HttpRequest& request, Respond respond)
    {
        if (request.path == "/second")
            return respond({.body = "second"});
        request.client->onGone([&] { isGone = true; });
        asked.set_value(std::move(respond));
    };
    serve();
    auto socket = connect();
    socket.send(get);
    auto respond = asked.get_future().get();
    socket.send("GET /second HTTP/1.1\r\nHost: x\r\n\r\n");
    respond({.body = "first"});
    EXPECT_THAT(socket.receiveAnswer(), testing::EndsWith("first"));
    EXPECT_THAT(socket.receiveAnswer(), testing::EndsWith("second"));
    EXPECT_FALSE(isGone);
}

} // namespace VX::Test
