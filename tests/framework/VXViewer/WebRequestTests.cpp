#include "tests/support/RecordingTransport.h"

#include <VXViewer/WebRequest.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>

#include <thread>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class WebRequestTests : public ::testing::Test
{
public:
    void TearDown() override { WebRequests::reset(); }

    /// What the transport got of the only request.
    [[nodiscard]] WebRequestData sent() const
    {
        const auto requests = transport->requests();
        EXPECT_EQ(requests.size(), 1U);
        return requests.empty() ? WebRequestData{} : requests.front();
    }

    RecordingTransport::Scope transport;
};

} // namespace

TEST_F(WebRequestTests, TheMethodsHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(WebRequest::Method::Get), 0);
    EXPECT_EQ(static_cast<int>(WebRequest::Method::Post), 1);
    EXPECT_EQ(static_cast<int>(WebRequest::Method::Delete), 2);
    EXPECT_EQ(static_cast<int>(WebRequest::Method::Put), 3);
}

TEST_F(WebRequestTests, IsAPlainAsynchronousGetByDefault)
{
    WebRequest("http://host/path").send([](const Json::Value&) {});
    const auto data = sent();
    EXPECT_EQ(data.url, "http://host/path");
    EXPECT_EQ(data.method, WebMethod::Get);
    EXPECT_TRUE(data.async);
    EXPECT_TRUE(data.headers.empty());
    EXPECT_TRUE(data.parameters.empty());
    EXPECT_FALSE(data.body);
    EXPECT_TRUE(data.inputPath.empty());
    EXPECT_TRUE(data.outputPath.empty());
    EXPECT_EQ(data.timeout, 60s);
    EXPECT_EQ(data.logName, "");
    EXPECT_FALSE(data.uploadProgress);
    EXPECT_FALSE(data.downloadProgress);
}

TEST_F(WebRequestTests, CarriesWhatWasSet)
{
    WebRequest request("http://host/");
    request.setMethod(WebRequest::Method::Put);
    request.setTimeout(600'000);
    request.setParameters({{"a", "1"}});
    request.setHeaders({{"X", "y"}});
    request.setBody("body");
    request.setInputPath("in");
    request.setOutputPath("out");
    request.setLogName("name");
    request.setAsync(false);
    request.setUploadProgressCallback([](float) { return true; });
    request.setDownloadProgressCallback([](float) { return false; });
    request.send([](const Json::Value&) {});
    const auto data = sent();
    EXPECT_EQ(data.method, WebMethod::Put);
    EXPECT_EQ(data.timeout, 600s);
    EXPECT_EQ(data.parameters.at("a"), "1");
    EXPECT_EQ(data.headers.at("X"), "y");
    EXPECT_EQ(data.body, "body");
    EXPECT_EQ(data.inputPath, "in");
    EXPECT_EQ(data.outputPath, "out");
    EXPECT_EQ(data.logName, "name");
    EXPECT_FALSE(data.async);
    EXPECT_TRUE(data.uploadProgress(0));
    EXPECT_FALSE(data.downloadProgress(0));
}

TEST_F(WebRequestTests, TakesUrlLogNameAndModeWithSend)
{
    WebRequest request;
    request.send("http://host/x", "name", [](const Json::Value&) {}, false);
    const auto data = sent();
    EXPECT_EQ(data.url, "http://host/x");
    EXPECT_EQ(data.logName, "name");
    EXPECT_FALSE(data.async);
}

TEST_F(WebRequestTests, ATimeoutBelowOneIsTheDefault)
{
    WebRequest request("http://host/");
    request.setTimeout(5);
    request.setTimeout(0);
    request.send([](const Json::Value&) {});
    EXPECT_EQ(sent().timeout, 60s);
}

TEST_F(WebRequestTests, MayBeGoneWhenItsAnswerArrives)
{
    int code = 0;
    {
        WebRequest request("http://host/");
        request.send([&](const Json::Value& answer) { code = answer["code"].asInt(); });
    }
    std::thread([&] { transport->deliver(0, RecordingTransport::answer(200, "")); }).join();
    EXPECT_EQ(code, 200);
}

TEST_F(WebRequestTests, MayBeSentTwice)
{
    WebRequest request("http://host/");
    request.setBody("x");
    request.send([](const Json::Value&) {});
    request.send([](const Json::Value&) {});
    ASSERT_EQ(transport->requests().size(), 2U);
    EXPECT_EQ(transport->requests()[1].body, "x");
}

TEST_F(WebRequestTests, NeedsNoCallback)
{
    transport->answerAtOnce([](const WebRequestData&) { return RecordingTransport::answer(200, ""); });
    WebRequest("http://host/").send(nullptr);
    EXPECT_EQ(transport->requests().size(), 1U);
}

TEST_F(WebRequestTests, TakesNoLongerThanASecondAndAHalfDuringTheShutdown)
{
    WebRequests::beginShutdown();
    WebRequest request("http://host/");
    request.send([](const Json::Value&) {});
    request.setTimeout(100);
    request.send([](const Json::Value&) {});
    EXPECT_EQ(transport->requests()[0].timeout, 1500ms);
    EXPECT_EQ(transport->requests()[1].timeout, 100ms);
}

TEST_F(WebRequestTests, IsRefusedOnceTheApplicationIsClosed)
{
    WebRequests::setTransport(nullptr);
    WebRequests::finish();
    Json::Value answer;
    WebRequest("http://host/").send([&](const Json::Value& value) { answer = value; });
    EXPECT_EQ(answer["code"].asInt(), 0);
    EXPECT_EQ(answer["error"].asString(), "The application is closing.");
}

} // namespace VX::Test
