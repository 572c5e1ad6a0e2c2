#include "WebRequestFixture.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RawSocket.h"

#include <atomic>
#include <thread>
#include <vector>

namespace VX::Test
{

namespace
{

using WebRequestFailureTests = WebRequestFixture;
using namespace std::chrono_literals;

std::string urlOf(const RawListener& listener)
{
    return "http://127.0.0.1:" + std::to_string(listener.port()) + "/";
}

} // namespace

TEST_F(WebRequestFailureTests, SaysThatNobodyListens)
{
    recorder.stop();
    const auto answer = get("/");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Cannot connect to 127.0.0.1. Check the network connection.");
    EXPECT_FALSE(answer.isMember("text"));
}

TEST_F(WebRequestFailureTests, SaysThatTheHostDoesNotExist)
{
    WebRequest request("http://nowhere.invalid/");
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "nowhere.invalid was not found. Check the network connection.");
}

TEST_F(WebRequestFailureTests, SaysThatTheAddressIsUnusable)
{
    const auto file = folder.write("file.txt", "text");
    for (const auto& url :
         {std::string(), std::string("nonsense://host/"), "file://" + file.string(), std::string("http://"),
          std::string("http://127.0.0.1:99999/"), std::string("ftp://127.0.0.1/"), std::string("http://127.0.0.1/a b")})
    {
        const auto answer = answerTo(WebRequest(url));
        EXPECT_EQ(answer["code"], 0) << url;
        EXPECT_EQ(answer["error"], "The address of the request is not a valid http or https address.") << url;
    }
}

TEST_F(WebRequestFailureTests, AnUnusableRequestIsAnsweredOnAnotherThreadToo)
{
    std::promise<std::thread::id> delivered;
    WebRequest("nonsense").send([&](const Json::Value&) { delivered.set_value(std::this_thread::get_id()); });
    EXPECT_NE(delivered.get_future().get(), std::this_thread::get_id());
}

TEST_F(WebRequestFailureTests, TakesNoLongerThanItsTimeout)
{
    recorder.answer("/", {.delay = 1min});
    WebRequest request(recorder.url());
    request.setTimeout(50);
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "127.0.0.1 did not answer in time.");
}

TEST_F(WebRequestFailureTests, TheTimeoutCountsForASlowBodyToo)
{
    RawListener listener;
    WebRequest request(urlOf(listener));
    request.setTimeout(100);
    auto answer = send(request);
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    client.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
    EXPECT_EQ(wait(answer)["error"], "127.0.0.1 did not answer in time.");
}

TEST_F(WebRequestFailureTests, ASlowAnswerWithinItsTimeIsTaken)
{
    RawListener listener;
    auto answer = send(WebRequest(urlOf(listener)));
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    for (const char c : std::string_view("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc"))
    {
        client.send({&c, 1});
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(wait(answer)["text"], "abc");
}

TEST_F(WebRequestFailureTests, AServerThatClosesWithoutAnAnswerGivesNone)
{
    recorder.answer("/", {.status = 0});
    const auto answer = get("/");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "The connection to 127.0.0.1 broke off.");
}

TEST_F(WebRequestFailureTests, AnAnswerThatIsCutOffIsNone)
{
    RawListener listener;
    auto answer = send(WebRequest(urlOf(listener)));
    {
        auto client = listener.accept();
        client.receiveUntil("\r\n\r\n");
        client.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
    }
    const auto got = wait(answer);
    EXPECT_EQ(got["code"], 0);
    EXPECT_EQ(got["error"], "The connection to 127.0.0.1 broke off.");
}

TEST_F(WebRequestFailureTests, AKilledServerGivesNoAnswer)
{
    RawListener listener;
    auto answer = send(WebRequest(urlOf(listener)));
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    client.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
    client.reset();
    EXPECT_EQ(wait(answer)["code"], 0);
}

TEST_F(WebRequestFailureTests, AServerKilledDuringAnUploadGivesNoAnswer)
{
    RawListener listener;
    WebRequest request(urlOf(listener));
    request.setMethod(WebRequest::Method::Put);
    request.setInputPath(folder.write("in.bin", std::string(32U << 20U, 'x')));
    auto answer = send(request);
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    client.reset();
    EXPECT_EQ(wait(answer)["code"], 0);
}

TEST_F(WebRequestFailureTests, AnAnswerThatIsNotHttpIsNone)
{
    RawListener listener;
    auto answer = send(WebRequest(urlOf(listener)));
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    client.send("SSH-2.0-OpenSSH\r\n");
    client.finishSending();
    const auto got = wait(answer);
    EXPECT_EQ(got["code"], 0);
    EXPECT_TRUE(got["error"].isString());
}

TEST_F(WebRequestFailureTests, AConnectionThatTheServerClosedMeanwhileIsReplaced)
{
    RawListener listener;
    for (int i = 0; i < 2; ++i)
    {
        WebRequest request(urlOf(listener));
        request.setMethod(WebRequest::Method::Post);
        request.setBody("body");
        auto answer = send(request);
        auto client = listener.accept();
        client.receiveUntil("body");
        client.send("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
        EXPECT_EQ(wait(answer)["text"], "ok");
    }
}

TEST_F(WebRequestFailureTests, AStatusLineWithoutWordsHasAnErrorToo)
{
    RawListener listener;
    auto answer = send(WebRequest(urlOf(listener)));
    auto client = listener.accept();
    client.receiveUntil("\r\n\r\n");
    client.send("HTTP/1.1 599\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(wait(answer)["error"], "HTTP 599");
}

TEST_F(WebRequestFailureTests, TheShutdownCancelsWhatIsUnderWay)
{
    recorder.answer("/", {.delay = 1min});
    auto answer = send(WebRequest(recorder.url()));
    ASSERT_TRUE(recorder.waitForRequests(1));
    WebRequests::beginShutdown();
    const auto got = wait(answer);
    EXPECT_EQ(got["code"], 0);
    EXPECT_EQ(got["error"], "The application is closing.");
}

TEST_F(WebRequestFailureTests, TheShutdownCancelsARequestThatIsWaitedFor)
{
    recorder.answer("/", {.delay = 1min});
    std::thread closing(
        [&]
        {
            EXPECT_TRUE(recorder.waitForRequests(1));
            WebRequests::beginShutdown();
        });
    EXPECT_EQ(get("/")["error"], "The application is closing.");
    closing.join();
}

TEST_F(WebRequestFailureTests, ARequestAfterTheShutdownSignalIsStillSent)
{
    (void)get("/");
    WebRequests::beginShutdown();
    auto answer = send(WebRequest(recorder.url("/last")));
    WebRequests::finish();
    ASSERT_EQ(answer.wait_for(0s), std::future_status::ready);
    EXPECT_EQ(answer.get()["code"], 200);
    EXPECT_EQ(recorder.requests().back().path, "/last");
}

TEST_F(WebRequestFailureTests, FinishingWaitsForEveryCallback)
{
    std::atomic<int> count = 0;
    for (int i = 0; i < 50; ++i)
        WebRequest(recorder.url())
            .send(
                [&](const Json::Value&)
                {
                    std::this_thread::sleep_for(1ms);
                    ++count;
                });
    WebRequests::finish();
    EXPECT_EQ(count, 50);
}

TEST_F(WebRequestFailureTests, FinishingEndsAChainOfRequests)
{
    std::atomic<int> count = 0;
    std::promise<void> begun;
    std::function<void(const Json::Value&)> next = [&](const Json::Value& answer)
    {
        if (++count == 3)
            begun.set_value();
        if (answer["code"] != 0)
            WebRequest(recorder.url()).send(next);
    };
    WebRequest(recorder.url()).send(next);
    begun.get_future().wait();
    WebRequests::finish();
    const int last = count;
    (void)get("/");
    EXPECT_EQ(count, last);
}

TEST_F(WebRequestFailureTests, AFailureIsLoggedForDevelopersOnly)
{
    const LogCapture log;
    recorder.stop();
    (void)get("/private-path");
    for (const auto& line : log.lines())
        EXPECT_EQ(line.level, spdlog::level::debug) << line.text;
    EXPECT_FALSE(log.contains("private"));
}

} // namespace VX::Test
