#include "WebRequestFixture.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/LogCapture.h"

#include <algorithm>
#include <latch>
#include <set>
#include <thread>
#include <vector>

namespace VX::Test
{

namespace
{

using WebRequestHttpTests = WebRequestFixture;
using Method = WebRequest::Method;

} // namespace

TEST_F(WebRequestHttpTests, DeliversStatusAndText)
{
    recorder.answer("/hello", {.body = "world"});
    const auto answer = get("/hello");
    EXPECT_EQ(answer["code"], 200);
    EXPECT_EQ(answer["text"], "world");
    EXPECT_FALSE(answer.isMember("error"));
}

TEST_F(WebRequestHttpTests, AnEmptyBodyIsAnEmptyText)
{
    const auto answer = get("/");
    ASSERT_TRUE(answer.isMember("text"));
    EXPECT_EQ(answer["text"], "");
}

TEST_F(WebRequestHttpTests, AFailureHasTheBodyAndAnError)
{
    recorder.answer("/", {.status = 404, .body = "nobody"});
    const auto answer = get("/");
    EXPECT_EQ(answer["code"], 404);
    EXPECT_EQ(answer["text"], "nobody");
    EXPECT_EQ(answer["error"], "HTTP 404: Not Found");
}

TEST_F(WebRequestHttpTests, SendsNoHeadersOfItsOwn)
{
    (void)get("/");
    std::set<std::string> names;
    const auto sent = recorder.requests().front();
    for (const auto& [name, value] : sent.headers)
        names.insert(name);
    EXPECT_EQ(names, (std::set<std::string>{"Accept", "Host"}));
}

TEST_F(WebRequestHttpTests, SendsItsHeaders)
{
    WebRequest request(recorder.url());
    request.setHeaders({{"x-amz-target", "Service.Operation"}, {"X-Empty", ""}});
    (void)answerTo(request);
    const auto headers = recorder.requests().front().headers;
    EXPECT_EQ(headers.at("x-amz-target"), "Service.Operation");
    EXPECT_EQ(headers.at("X-Empty"), "");
}

TEST_F(WebRequestHttpTests, AHeaderThatWouldBreakTheRequestIsRefused)
{
    for (const auto& [name, value] :
         {std::pair{"X", "a\r\nY: b"}, {"X\r\nY", "b"}, {"X Y", "b"}, {"", "b"}, {"X:", "b"}})
    {
        WebRequest request(recorder.url());
        request.setHeaders({{name, value}});
        const auto answer = answerTo(request);
        EXPECT_EQ(answer["code"], 0);
        EXPECT_EQ(answer["error"], "The request has a header that cannot be sent.");
    }
    EXPECT_TRUE(recorder.requests().empty());
}

TEST_F(WebRequestHttpTests, ABodyIsJsonByDefault)
{
    WebRequest request(recorder.url());
    request.setMethod(Method::Post);
    request.setBody(R"({"a":1})");
    (void)answerTo(request);
    const auto sent = recorder.requests().front();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.body, R"({"a":1})");
    EXPECT_EQ(sent.headers.at("Content-Type"), "application/json");
    EXPECT_EQ(sent.headers.at("Content-Length"), "7");
    EXPECT_FALSE(sent.headers.contains("Expect"));
    EXPECT_FALSE(sent.headers.contains("Transfer-Encoding"));
}

TEST_F(WebRequestHttpTests, ABodyKeepsTheTypeThatTheHeadersName)
{
    WebRequest request(recorder.url());
    request.setMethod(Method::Post);
    request.setBody("a");
    request.setHeaders({{"content-type", "text/plain"}});
    (void)answerTo(request);
    EXPECT_EQ(recorder.requests().front().headers.at("Content-Type"), "text/plain");
}

TEST_F(WebRequestHttpTests, EachMethodIsSentWithAndWithoutABody)
{
    for (const auto& [method, name] :
         {std::pair{Method::Get, "GET"}, {Method::Post, "POST"}, {Method::Delete, "DELETE"}, {Method::Put, "PUT"}})
        for (const bool hasBody : {false, true})
        {
            WebRequest request(recorder.url());
            request.setMethod(method);
            if (hasBody)
                request.setBody("body");
            EXPECT_EQ(answerTo(request)["code"], 200);
            const auto sent = recorder.requests().back();
            EXPECT_EQ(sent.method, name);
            EXPECT_EQ(sent.body, hasBody ? "body" : "") << name;
            EXPECT_EQ(sent.headers.contains("Content-Type"), hasBody) << name;
        }
}

TEST_F(WebRequestHttpTests, AnEmptyBodyHasALength)
{
    for (const auto method : {Method::Post, Method::Put})
    {
        WebRequest request(recorder.url());
        request.setMethod(method);
        (void)answerTo(request);
        EXPECT_EQ(recorder.requests().back().headers.at("Content-Length"), "0");
    }
}

TEST_F(WebRequestHttpTests, EncodesItsParameters)
{
    WebRequest request(recorder.url("/path"));
    request.setParameters({{"a b", "1&2=3"}, {"plus", "+"}, {"umlaut", "\xC3\xA4"}, {"safe", "A-z_0.9~"}});
    (void)answerTo(request);
    const auto sent = recorder.requests().front();
    EXPECT_EQ(sent.path, "/path");
    EXPECT_EQ(sent.rawQuery, "a%20b=1%262%3D3&plus=%2B&safe=A-z_0.9~&umlaut=%C3%A4");
    EXPECT_EQ(sent.query.at("a b"), "1&2=3");
}

TEST_F(WebRequestHttpTests, AddsParametersToTheQueryOfTheUrl)
{
    for (const auto& [url, query] : {std::pair{"/?x=1", "x=1&a=2"},
                                     {"/?", "a=2"},
                                     {"/?x=1&", "x=1&a=2"},
                                     {"/#part", "a=2"},
                                     {"/?x=1#part?", "x=1&a=2"},
                                     {"", "a=2"}})
    {
        WebRequest request(recorder.url(url));
        request.setParameters({{"a", "2"}});
        (void)answerTo(request);
        EXPECT_EQ(recorder.requests().back().rawQuery, query) << url;
        EXPECT_EQ(recorder.requests().back().path, "/") << url;
    }
}

TEST_F(WebRequestHttpTests, LeavesAPresignedQueryAsItIs)
{
    (void)get("/o?sig=a%2Fb%20c&x=%C3%A4+1");
    EXPECT_EQ(recorder.requests().front().rawQuery, "sig=a%2Fb%20c&x=%C3%A4+1");
}

TEST_F(WebRequestHttpTests, KeepsBytesThatAreNoUtf8)
{
    const std::string bytes("a\0\xFF\xC3", 4);
    recorder.answer("/", {.body = bytes});
    const auto answer = get("/");
    EXPECT_EQ(answer["text"].asString(), bytes);
    EXPECT_FALSE(answer.toStyledString().empty());
}

TEST_F(WebRequestHttpTests, FollowsRedirections)
{
    recorder.answer("/old", {.status = 302, .headers = {{"Location", "/new"}}});
    recorder.answer("/new", {.body = "here"});
    const auto answer = get("/old");
    EXPECT_EQ(answer["code"], 200);
    EXPECT_EQ(answer["text"], "here");
}

TEST_F(WebRequestHttpTests, SendsTheBodyAgainWhereARedirectionAsksForIt)
{
    recorder.answer("/old", {.status = 307, .headers = {{"Location", "/new"}}});
    const auto file = folder.write("in.bin", "the file");
    WebRequest post(recorder.url("/old"));
    post.setMethod(Method::Post);
    post.setBody("the body");
    EXPECT_EQ(answerTo(post)["code"], 200);
    EXPECT_EQ(recorder.requests().back().path, "/new");
    EXPECT_EQ(recorder.requests().back().body, "the body");
    WebRequest put(recorder.url("/old"));
    put.setMethod(Method::Put);
    put.setInputPath(file);
    EXPECT_EQ(answerTo(put)["code"], 200);
    EXPECT_EQ(recorder.requests().back().method, "PUT");
    EXPECT_EQ(recorder.requests().back().path, "/new");
    EXPECT_EQ(recorder.requests().back().body, "the file");
}

TEST_F(WebRequestHttpTests, GivesUpARedirectionInCircles)
{
    recorder.answer("/", {.status = 302, .headers = {{"Location", "/"}}});
    const auto answer = get("/");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "127.0.0.1 sends the request in circles.");
    EXPECT_EQ(recorder.requests().size(), 11U);
}

TEST_F(WebRequestHttpTests, DoesNotHandCredentialsToAnotherHost)
{
    HttpRecorder other;
    recorder.answer(
        "/", {.status = 302, .headers = {{"Location", "http://localhost:" + std::to_string(other.port()) + "/"}}});
    WebRequest request(recorder.url());
    request.setHeaders({{"Authorization", "Bearer secret"}});
    (void)answerTo(request);
    ASSERT_EQ(other.requests().size(), 1U);
    EXPECT_FALSE(other.requests().front().headers.contains("Authorization"));
}

TEST_F(WebRequestHttpTests, GoesToNoFileByARedirection)
{
    const auto file = folder.write("secret.txt", "secret");
    recorder.answer("/", {.status = 302, .headers = {{"Location", "file://" + file.string()}}});
    const auto answer = get("/");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "127.0.0.1 sends the request to an address that is not allowed.");
    EXPECT_FALSE(answer.isMember("text"));
}

TEST_F(WebRequestHttpTests, UsesNoProxyForLoopback)
{
    const EnvironmentVariable proxy("http_proxy", "http://127.0.0.1:1");
    EXPECT_EQ(get("/")["code"], 200);
}

TEST_F(WebRequestHttpTests, UsesAConnectionAgain)
{
    for (int i = 0; i < 3; ++i)
        (void)get("/");
    std::set<std::uint16_t> ports;
    for (const auto& request : recorder.requests())
        ports.insert(request.peerPort);
    EXPECT_EQ(ports.size(), 1U);
}

TEST_F(WebRequestHttpTests, DeliversOnTheSendingThreadWhenSynchronous)
{
    std::thread::id thread;
    WebRequest request(recorder.url());
    request.setAsync(false);
    request.send([&](const Json::Value&) { thread = std::this_thread::get_id(); });
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(WebRequestHttpTests, DeliversOnAnotherThreadWhenAsynchronous)
{
    std::promise<std::thread::id> delivered;
    WebRequest(recorder.url()).send([&](const Json::Value&) { delivered.set_value(std::this_thread::get_id()); });
    EXPECT_NE(delivered.get_future().get(), std::this_thread::get_id());
}

TEST_F(WebRequestHttpTests, ABlockedCallbackHoldsNoOtherAnswerUp)
{
    constexpr int count = 20;
    // The callbacks may still look at it when the last one has come.
    const auto all = std::make_shared<std::latch>(count + 1);
    for (int i = 0; i < count; ++i)
        WebRequest(recorder.url()).send([all](const Json::Value&) { all->arrive_and_wait(); });
    EXPECT_EQ(get("/")["code"], 200);
    all->arrive_and_wait();
}

TEST_F(WebRequestHttpTests, ACallbackMaySendTheNextRequest)
{
    std::promise<int> last;
    WebRequest(recorder.url("/1"))
        .send(
            [&](const Json::Value&)
            {
                (void)get("/2");
                WebRequest(recorder.url("/3"))
                    .send([&](const Json::Value& answer) { last.set_value(answer["code"].asInt()); });
            });
    EXPECT_EQ(last.get_future().get(), 200);
    EXPECT_EQ(recorder.requests().size(), 3U);
}

TEST_F(WebRequestHttpTests, SurvivesACallbackThatThrows)
{
    std::promise<void> called;
    WebRequest(recorder.url())
        .send(
            [&](const Json::Value&)
            {
                called.set_value();
                throw std::runtime_error("broken");
            });
    called.get_future().wait();
    EXPECT_EQ(get("/")["code"], 200);
}

TEST_F(WebRequestHttpTests, SendsManyAtOnce)
{
    recorder.answer("/", [](const HttpRequest& request) { return HttpRecorder::Answer{.body = request.rawQuery}; });
    std::vector<std::future<Json::Value>> answers;
    for (int i = 0; i < 300; ++i)
    {
        WebRequest request(recorder.url());
        request.setParameters({{"i", std::to_string(i)}});
        answers.push_back(send(request));
    }
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(wait(answers[static_cast<std::size_t>(i)])["text"], "i=" + std::to_string(i));
}

TEST_F(WebRequestHttpTests, LogsNameMethodHostAndStatusButNoSecret)
{
    const LogCapture log;
    WebRequest request(recorder.url("/private-path?signature=secret"));
    request.setMethod(Method::Post);
    request.setHeaders({{"Authorization", "Bearer secret"}});
    request.setBody("secret body");
    request.setLogName("Service");
    (void)answerTo(request);
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.front().level, spdlog::level::debug);
    EXPECT_TRUE(lines.front().text.starts_with("Service: POST 127.0.0.1: 200 after ")) << lines.front().text;
    EXPECT_FALSE(log.contains("secret"));
    EXPECT_FALSE(log.contains("private"));
}

} // namespace VX::Test
