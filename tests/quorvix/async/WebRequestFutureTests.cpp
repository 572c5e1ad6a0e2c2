#include <quorvix/async/WebRequestFuture.h>

#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>
#include <json/writer.h>

#include <tests/quorvix/support/RecordingTransport.h>
#include <tests/support/HttpRecorder.h>

#include <future>
#include <thread>

namespace VX
{

namespace
{

using Test::HttpRecorder;
using Test::makeAnswer;
using Test::RecordingTransport;

class WebRequestFutureTest : public ::testing::Test
{
protected:
    void TearDown() override { WebRequests::reset(); }

    const std::shared_ptr<RecordingTransport> transport_ = RecordingTransport::install();
    const Json::Value first_ = makeAnswer(200, "first");
    const Json::Value second_ = makeAnswer(404, "second");
};

TEST_F(WebRequestFutureTest, sendsTheRequestAtOnce)
{
    WebRequest request("http://127.0.0.1/path");
    request.setLogName("name");
    const WebRequestFuture future(request);
    ASSERT_EQ(transport_->sent().size(), 1U);
    EXPECT_EQ(transport_->last().request.url, "http://127.0.0.1/path");
    EXPECT_EQ(transport_->last().request.logName, "name");
    EXPECT_TRUE(transport_->last().request.async);
}

TEST_F(WebRequestFutureTest, isEmptyUntilTheAnswerArrives)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    EXPECT_EQ(future(), std::nullopt);
    EXPECT_EQ(future(), std::nullopt);
    transport_->last().answer(first_);
    EXPECT_EQ(future(), first_);
}

TEST_F(WebRequestFutureTest, keepsItsAnswerWhenItIsPolled)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    transport_->last().answer(first_);
    EXPECT_EQ(future(), first_);
    EXPECT_EQ(future(), first_);
    EXPECT_EQ(future.get(), first_);
}

TEST_F(WebRequestFutureTest, keepsItsAnswerWhenItIsWaitedFor)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    transport_->last().answer(first_);
    EXPECT_EQ(future.get(), first_);
    EXPECT_EQ(future.get(), first_);
    EXPECT_EQ(future(), first_);
}

TEST_F(WebRequestFutureTest, waitsForAnAnswerFromAnotherThread)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    std::thread other([this] { transport_->last().answer(first_); });
    EXPECT_EQ(future.get(), first_);
    other.join();
}

TEST_F(WebRequestFutureTest, isWaitedForOnAThreadThatStartedBeforeTheAnswer)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    std::promise<void> started;
    auto waiting = std::async(std::launch::async,
                              [&]
                              {
                                  started.set_value();
                                  return future.get();
                              });
    started.get_future().wait();
    transport_->last().answer(first_);
    EXPECT_EQ(waiting.get(), first_);
}

TEST_F(WebRequestFutureTest, takesTheLastOfSeveralAnswers)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    transport_->last().answer(first_);
    transport_->last().answer(second_);
    EXPECT_EQ(future(), second_);
    EXPECT_EQ(future.get(), second_);
}

TEST_F(WebRequestFutureTest, handsFailuresOnLikeAnyOtherAnswer)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    Json::Value failure(Json::objectValue);
    failure["code"] = 0;
    failure["error"] = "no answer";
    transport_->last().answer(failure);
    EXPECT_EQ(future.get(), failure);
}

TEST_F(WebRequestFutureTest, mayGoBeforeItsAnswerArrives)
{
    {
        const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    }
    transport_->last().answer(first_);
    transport_->last().answer(second_);
}

TEST_F(WebRequestFutureTest, sharesItsAnswerWithItsCopies)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    const WebRequestFuture copy = future; // NOLINT(performance-unnecessary-copy-initialization)
    transport_->last().answer(first_);
    EXPECT_EQ(copy(), first_);
    EXPECT_EQ(future(), first_);
}

TEST_F(WebRequestFutureTest, wakesTheLoopWhenTheAnswerArrives)
{
    const WebRequestFuture future{WebRequest("http://127.0.0.1/")};
    static_cast<void>(getViewerInstance().takeWakeUp());
    transport_->last().answer(first_);
    EXPECT_TRUE(getViewerInstance().takeWakeUp());
}

TEST_F(WebRequestFutureTest, hasTheAnswerOfASynchronousRequestFromTheStart)
{
    WebRequests::reset();
    HttpRecorder recorder;
    recorder.answer("/path", {.status = 418, .body = "body"});
    WebRequest request(recorder.url("/path"));
    request.setAsync(false);
    const WebRequestFuture future(request);
    const Json::Value answer = future().value_or(Json::Value());
    EXPECT_EQ(answer["code"], 418);
    EXPECT_EQ(answer["text"], "body");
}

TEST_F(WebRequestFutureTest, waitsForTheAnswerOfAServer)
{
    WebRequests::reset();
    HttpRecorder recorder;
    recorder.answer("/path", {.status = 200, .body = "body"});
    const WebRequestFuture future{WebRequest(recorder.url("/path"))};
    const Json::Value answer = future.get();
    EXPECT_EQ(answer["code"], 200);
    EXPECT_EQ(answer["text"], "body");
}

} // namespace

} // namespace VX
