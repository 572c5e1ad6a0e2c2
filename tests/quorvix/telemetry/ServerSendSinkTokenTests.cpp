#include "tests/quorvix/telemetry/LogSinkFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::SizeIs;

/// The function that gets a fresh token is asked `asked_` times so far; what it hands over is up to the test.
class ServerSendSinkTokenTest : public VX::Test::LogSinkFixture
{
protected:
    void SetUp() override
    {
        LogSinkFixture::SetUp();
        refreshWith_(
            [this](ServerSendSink::TakeToken take)
            {
                ++asked_;
                takeToken_ = std::move(take);
            });
    }

    [[nodiscard]] std::string lastAuthorization_() const
    {
        return transport_->last().request.headers.at("Authorization");
    }

    int asked_ = 0;
    ServerSendSink::TakeToken takeToken_;
};

TEST_F(ServerSendSinkTokenTest, sendsTheBatchAgainWithAFreshToken)
{
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    EXPECT_EQ(sendCount_(), 1U);
    takeToken_("fresh");
    ASSERT_EQ(sendCount_(), 2U);
    EXPECT_EQ(lastAuthorization_(), "Bearer fresh");
    EXPECT_EQ(transport_->last().request.url, "https://logs.example.com/v1/logs");
    EXPECT_TRUE(transport_->last().request.async);
    EXPECT_THAT(lastMessages_(), ElementsAre("line"));
}

TEST_F(ServerSendSinkTokenTest, forgetsTheBatchOnceTheSecondTrySucceeds)
{
    for (const int code : {200, 201})
    {
        logLine_("old");
        sink_->trySendBatch(true);
        answer_(401);
        takeToken_("fresh");
        answer_(code);
        logLine_("new");
        sink_->trySendBatch(true);
        EXPECT_THAT(lastMessages_(), ElementsAre("new")) << code;
        answer_(code);
    }
}

TEST_F(ServerSendSinkTokenTest, triesOnceMoreOnly)
{
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    takeToken_("fresh");
    answer_(401);
    EXPECT_EQ(asked_, 1);
    EXPECT_EQ(sendCount_(), 2U);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("line"));
    EXPECT_EQ(lastAuthorization_(), "Bearer token");
    answer_(401);
    EXPECT_EQ(asked_, 2);
}

TEST_F(ServerSendSinkTokenTest, keepsTheBatchWhereNoTokenIsToBeHad)
{
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    takeToken_("");
    EXPECT_EQ(sendCount_(), 1U);
    logLine_("next");
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("line", "next"));
}

TEST_F(ServerSendSinkTokenTest, keepsTheBatchWhereNobodyCanBeAsked)
{
    refreshWith_({});
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    EXPECT_EQ(sendCount_(), 1U);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("line"));
}

TEST_F(ServerSendSinkTokenTest, asksNobodyForOtherFailures)
{
    for (const int code : {0, 400, 403, 500})
    {
        logLine_("line");
        sink_->trySendBatch(true);
        answer_(code);
    }
    EXPECT_EQ(asked_, 0);
}

TEST_F(ServerSendSinkTokenTest, waitsForTheSecondAnswerAtTheEndToo)
{
    refreshWith_([](const ServerSendSink::TakeToken& take) { take("fresh"); });
    logLine_("line");
    sink_->shutdown();
    answer_(401);
    ASSERT_EQ(sendCount_(), 2U);
    EXPECT_FALSE(transport_->last().request.async);
}

TEST_F(ServerSendSinkTokenTest, asksWithoutItsLock)
{
    refreshWith_(
        [this](const ServerSendSink::TakeToken& take)
        {
            logLine_("asking");
            take("fresh");
            logLine_("asked");
        });
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    EXPECT_THAT(lastMessages_(), ElementsAre("line"));
    answer_(201);
    sink_->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("asking", "asked"));
}

TEST_F(ServerSendSinkTokenTest, takesATokenAfterItsEnd)
{
    logLine_("line");
    sink_->trySendBatch(true);
    answer_(401);
    sink_.reset();
    takeToken_("fresh");
    EXPECT_THAT(lastMessages_(), SizeIs(1));
}

} // namespace

} // namespace VX
