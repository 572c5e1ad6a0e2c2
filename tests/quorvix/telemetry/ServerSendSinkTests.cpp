#include "tests/quorvix/telemetry/LogSinkFixture.h"

#include <VXMesh/Logger.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using std::chrono::nanoseconds;
using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

class ServerSendSinkTest : public VX::Test::LogSinkFixture
{
};

TEST_F(ServerSendSinkTest, sendsNothingBeforeThereAreEnoughLines)
{
    logLines_(199);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
    logLine_("the last one");
    EXPECT_EQ(sendCount_(), 0U);
    sink_->flush();
    ASSERT_EQ(sendCount_(), 1U);
    EXPECT_THAT(lastMessages_(), SizeIs(200));
}

TEST_F(ServerSendSinkTest, sendsAllThatHasGathered)
{
    logLines_(500);
    sink_->flush();
    EXPECT_THAT(lastMessages_(), SizeIs(500));
    EXPECT_EQ(lastMessages_().front(), "line 1");
    EXPECT_EQ(lastMessages_().back(), "line 500");
}

TEST_F(ServerSendSinkTest, waits60WholeSecondsBetweenTwoBatches)
{
    logLines_(200);
    sink_->flush();
    answer_(201);
    logLines_(500);
    now_ += seconds(30);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 1U);
    now_ += seconds(30) - nanoseconds(1);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 1U);
    now_ += nanoseconds(1);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 2U);
    EXPECT_THAT(lastMessages_(), SizeIs(500));
}

TEST_F(ServerSendSinkTest, asksForJustThis)
{
    logLines_(200);
    sink_->flush();
    const WebRequestData request = transport_->last().request;
    EXPECT_EQ(request.method, WebMethod::Post);
    EXPECT_EQ(request.url, "https://logs.example.com/v1/logs");
    EXPECT_THAT(request.headers,
                UnorderedElementsAre(Pair("Content-Type", "application/json"), Pair("Authorization", "Bearer token")));
    EXPECT_TRUE(request.async);
}

TEST_F(ServerSendSinkTest, sendsNoSecondBatchWhileOneIsUnderWay)
{
    logLines_(200);
    sink_->flush();
    logLines_(200);
    now_ += seconds(100);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 1U);
    answer_(200);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 2U);
}

TEST_F(ServerSendSinkTest, takesLinesFromLevelInfoOn)
{
    for (const auto level : {spdlog::level::trace, spdlog::level::debug, spdlog::level::info, spdlog::level::warn,
                             spdlog::level::err, spdlog::level::critical})
        logLine_(spdlog::level::to_string_view(level).data(), level);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("info", "warning", "error", "critical"));
}

TEST_F(ServerSendSinkTest, takesFinerLinesWhereItsLevelIsLower)
{
    sink_->setLogLevel(spdlog::level::debug);
    logLine_("fine", spdlog::level::debug);
    logLine_("too fine", spdlog::level::trace);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("fine"));
}

TEST_F(ServerSendSinkTest, dropsLinesBelowANewLevel)
{
    logLine_("one");
    logLine_("two", spdlog::level::err);
    logLine_("three");
    logLine_("four", spdlog::level::warn);
    sink_->setLogLevel(spdlog::level::warn);
    logLine_("five");
    logLine_("six", spdlog::level::critical);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("two", "four", "six"));
}

TEST_F(ServerSendSinkTest, sendsNothingByItselfWhileItsLevelIsOff)
{
    auto params = params_();
    params.batchSize = 0;
    const auto sink = std::make_shared<ServerSendSink>(params, clock_);
    sink->setLogLevel(spdlog::level::off);
    sink->flush();
    EXPECT_EQ(sendCount_(), 0U);
    sink->setLogLevel(spdlog::level::info);
    sink->flush();
    EXPECT_EQ(sendCount_(), 1U);
}

TEST_F(ServerSendSinkTest, neverSendsByItselfWithABatchSizeBelowZero)
{
    auto params = params_();
    params.batchSize = -1;
    sink_ = std::make_shared<ServerSendSink>(params, clock_);
    logLines_(500);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
}

TEST_F(ServerSendSinkTest, forgetsWhatWaitsWhenItIsDisabled)
{
    logLines_(200);
    sink_->enable(false);
    logLine_("ignored");
    sink_->flush();
    sink_->enable(true);
    logLine_("taken");
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("taken"));
}

TEST_F(ServerSendSinkTest, keepsTheBatchUnderWayWhenItIsDisabled)
{
    logLines_(200);
    sink_->flush();
    sink_->enable(false);
    answer_(500);
    sink_->enable(true);
    logLine_("new");
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), SizeIs(201));
    EXPECT_EQ(lastMessages_().back(), "new");
}

TEST_F(ServerSendSinkTest, forgetsABatchThatHasArrived)
{
    for (const int code : {200, 201})
    {
        logLines_(3, "old");
        sink_->trySendBatch(true);
        answer_(code);
        logLine_("new");
        sink_->trySendBatch(true);
        EXPECT_THAT(lastMessages_(), ElementsAre("new")) << code;
        answer_(code);
    }
}

TEST_F(ServerSendSinkTest, sendsAFailedBatchInFrontOfTheNextOne)
{
    logLines_(200, "old");
    sink_->flush();
    answer_(503);
    now_ += seconds(60);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 1U);
    logLines_(200, "new");
    sink_->flush();
    ASSERT_EQ(sendCount_(), 2U);
    const auto messages = lastMessages_();
    ASSERT_THAT(messages, SizeIs(400));
    EXPECT_EQ(messages.front(), "old 1");
    EXPECT_EQ(messages.at(199), "old 200");
    EXPECT_EQ(messages.at(200), "new 1");
    EXPECT_EQ(messages.back(), "new 200");
}

TEST_F(ServerSendSinkTest, keepsABatchWithWhateverElseIsAnswered)
{
    Json::Value withText;
    withText["code"] = "200";
    const Json::Value answers[] = {VX::Test::makeAnswer(0, ""),
                                   VX::Test::makeAnswer(202, ""),
                                   VX::Test::makeAnswer(204, ""),
                                   VX::Test::makeAnswer(400, ""),
                                   VX::Test::makeAnswer(401, ""),
                                   VX::Test::makeAnswer(404, ""),
                                   VX::Test::makeAnswer(413, ""),
                                   VX::Test::makeAnswer(500, ""),
                                   withText,
                                   Json::Value(Json::objectValue),
                                   Json::Value(),
                                   Json::Value("200"),
                                   Json::Value(Json::arrayValue)};
    logLine_("line");
    for (const Json::Value& answer : answers)
    {
        sink_->trySendBatch(true);
        EXPECT_THAT(lastMessages_(), ElementsAre("line")) << answer.toStyledString();
        transport_->last().answer(answer);
    }
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("line"));
}

TEST_F(ServerSendSinkTest, keepsLinesThatCameWhileABatchWasUnderWay)
{
    logLine_("old");
    sink_->trySendBatch(true);
    logLine_("new");
    answer_(201);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("new"));
}

TEST_F(ServerSendSinkTest, losesNothingWhereTwoBatchesAreUnderWayAndOneFails)
{
    logLine_("one");
    sink_->trySendBatch(true);
    logLine_("two");
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("one", "two"));
    transport_->sent().at(0).answer(VX::Test::makeAnswer(201, ""));
    transport_->sent().at(1).answer(VX::Test::makeAnswer(0, ""));
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("two"));
}

TEST_F(ServerSendSinkTest, waitsForAUser)
{
    UserInfo::setAccessToken("");
    logLines_(1000);
    sink_->flush();
    sink_->shutdown();
    EXPECT_EQ(sendCount_(), 0U);
    UserInfo::setAccessToken("another token");
    sink_->flush();
    ASSERT_EQ(sendCount_(), 1U);
    EXPECT_THAT(lastMessages_(), SizeIs(1000));
    EXPECT_EQ(transport_->last().request.headers.at("Authorization"), "Bearer another token");
}

TEST_F(ServerSendSinkTest, dropsABatchWhereTelemetryIsNotAllowed)
{
    SessionLogs::allow(false);
    logLines_(200, "dropped");
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
    SessionLogs::allow(true);
    logLines_(200, "sent");
    now_ += seconds(59);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
    now_ += seconds(1);
    sink_->flush();
    ASSERT_EQ(sendCount_(), 1U);
    EXPECT_EQ(lastMessages_().front(), "sent 1");
    EXPECT_THAT(lastMessages_(), SizeIs(200));
}

TEST_F(ServerSendSinkTest, dropsAFailedBatchToo)
{
    logLine_("failed");
    sink_->trySendBatch(true);
    answer_(500);
    SessionLogs::allow(false);
    sink_->trySendBatch(true);
    SessionLogs::allow(true);
    logLine_("new");
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("new"));
}

TEST_F(ServerSendSinkTest, survivesTheEndOfTheSinkWhileABatchIsUnderWay)
{
    logLine_("line");
    sink_->trySendBatch(true);
    sink_.reset();
    EXPECT_NO_THROW(answer_(201));
}

} // namespace

} // namespace VX
