#include "tests/quorvix/telemetry/LogSinkFixture.h"

#include <VXMesh/Logger.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/spdlog.h>

#include <algorithm>

namespace VX
{

namespace
{

using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class ServerSendSinkEndTest : public VX::Test::LogSinkFixture
{
};

TEST_F(ServerSendSinkEndTest, beginsWithoutASend)
{
    logLines_(500);
    sink_->preShutdown();
    EXPECT_EQ(sendCount_(), 0U);
    sink_->flush();
    EXPECT_EQ(sendCount_(), 0U);
}

TEST_F(ServerSendSinkEndTest, waitsForTheAnswerToWhatIsLeft)
{
    logLines_(3);
    sink_->preShutdown();
    logLine_("the last one");
    sink_->shutdown();
    ASSERT_EQ(sendCount_(), 1U);
    EXPECT_FALSE(transport_->last().request.async);
    EXPECT_THAT(lastMessages_(), ElementsAre("line 1", "line 2", "line 3", "the last one"));
}

TEST_F(ServerSendSinkEndTest, sendsNothingWhereNothingIsLeft)
{
    sink_->shutdown();
    EXPECT_EQ(sendCount_(), 0U);
}

TEST_F(ServerSendSinkEndTest, losesAFailedBatchWhereNothingElseIsLeft)
{
    logLines_(200);
    sink_->flush();
    answer_(500);
    sink_->shutdown();
    EXPECT_EQ(sendCount_(), 1U);
}

TEST_F(ServerSendSinkEndTest, takesAFailedBatchAlong)
{
    logLine_("failed");
    sink_->trySendBatch(true);
    answer_(500);
    logLine_("left");
    sink_->shutdown();
    EXPECT_THAT(lastMessages_(), ElementsAre("failed", "left"));
}

TEST_F(ServerSendSinkEndTest, doesNotWaitForABatchUnderWay)
{
    logLine_("under way");
    sink_->trySendBatch(true);
    logLine_("left");
    sink_->shutdown();
    ASSERT_EQ(sendCount_(), 2U);
    EXPECT_THAT(lastMessages_(), ElementsAre("under way", "left"));
}

TEST_F(ServerSendSinkEndTest, sendsNothingWhereTelemetryIsNotAllowed)
{
    SessionLogs::allow(false);
    logLines_(3);
    sink_->shutdown();
    EXPECT_EQ(sendCount_(), 0U);
}

/// The sink that the log of the process has.
class InstalledServerSendSinkTest : public VX::Test::LogSinkFixture
{
protected:
    void TearDown() override
    {
        while (const auto sink = getServerSendSink())
            Logger::instance().removeSink(sink);
        LogSinkFixture::TearDown();
    }

    static auto countOfSinks_()
    {
        const auto& sinks = Logger::instance().getSpdLogger()->sinks();
        return std::ranges::count_if(sinks, [](const spdlog::sink_ptr& sink)
                                     { return std::dynamic_pointer_cast<ServerSendSink>(sink) != nullptr; });
    }
};

TEST_F(InstalledServerSendSinkTest, isNotThereAtFirst)
{
    EXPECT_EQ(getServerSendSink(), nullptr);
}

TEST_F(InstalledServerSendSinkTest, isThereOnce)
{
    addServerSendSink(params_());
    const auto first = getServerSendSink();
    ASSERT_TRUE(first);
    addServerSendSink(params_());
    EXPECT_EQ(getServerSendSink(), first);
    EXPECT_EQ(countOfSinks_(), 1);
}

TEST_F(InstalledServerSendSinkTest, getsLinesWithoutThePatternOfTheLog)
{
    addServerSendSink(params_());
    spdlog::warn("The number {}", 7);
    spdlog::debug("Too fine");
    getServerSendSink()->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("The number 7"));
}

TEST_F(InstalledServerSendSinkTest, getsNoSecrets)
{
    addServerSendSink(params_());
    spdlog::warn("password=hunter2 and Bearer abcdefghijkl");
    getServerSendSink()->trySendBatch(true);
    EXPECT_THAT(lastMessages_(), ElementsAre("password=[redacted] and Bearer [redacted]"));
}

TEST_F(InstalledServerSendSinkTest, letsARequestAndItsAnswerLog)
{
    const auto transport = VX::Test::RecordingTransport::install(
        [](const WebRequestData&)
        {
            spdlog::warn("from the request");
            Logger::instance().getSpdLogger()->flush();
            return VX::Test::makeAnswer(200, "");
        });
    addServerSendSink(params_());
    spdlog::warn("line");
    getServerSendSink()->shutdown();
    EXPECT_THAT(transport->sent(), SizeIs(1));
}

} // namespace

} // namespace VX
