#include "tests/quorvix/support/AccountsFixture.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/telemetry/ServerSendSink.h>

#include <VXMesh/Logger.h>
#include <VXViewer/ViewerSignals.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/spdlog.h>

namespace VX
{

namespace
{

using ::testing::IsEmpty;
using ::testing::SizeIs;

/// The way of the log to its service, in the order in which the program's start and end go it.
class QuorvixSetupLogTest : public VX::Test::AccountsFixture
{
protected:
    void SetUp() override
    {
        AccountsFixture::SetUp();
        Deployment services;
        services.logs = "https://logs.example.com";
        resetDeployment();
        ASSERT_TRUE(setDeployment(services));
        UserInfo::setAccessToken("token");
    }

    void TearDown() override
    {
        if (const auto sink = getServerSendSink())
            Logger::instance().removeSink(sink);
        AccountsFixture::TearDown();
    }

    /// As many lines as a batch has.
    static void logBatch_()
    {
        for (int i = 0; i < 200; ++i)
            spdlog::info("line");
    }

    static void flush_() { Logger::instance().getSpdLogger()->flush(); }

    const VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
    const QuorvixSetup setup_;
};

TEST_F(QuorvixSetupLogTest, beginsWithTheStart)
{
    EXPECT_EQ(getServerSendSink(), nullptr);
    setup_.startCallback();
    EXPECT_NE(getServerSendSink(), nullptr);
}

TEST_F(QuorvixSetupLogTest, leadsToTheLogServiceOfTheDeployment)
{
    setup_.startCallback();
    spdlog::warn("line");
    getServerSendSink()->trySendBatch(true);
    ASSERT_THAT(transport_->sent(), SizeIs(1));
    EXPECT_EQ(transport_->last().request.url, "https://logs.example.com/v1/logs");
    Json::Value item = bodies_().front()["items"][0];
    item.removeMember("timestamp");
    Json::Value expected;
    expected["logLevel"] = "warning";
    expected["serviceName"] = "Quorvix";
    expected["serviceVersion"] = "1.2.3 beta";
    expected["platform"] = "debian_x86_64";
    expected["environment"] = "production";
    expected["message"] = "line";
    EXPECT_EQ(item, expected);
}

TEST_F(QuorvixSetupLogTest, goesInBatchesOf200)
{
    setup_.startCallback();
    logBatch_();
    flush_();
    ASSERT_THAT(transport_->sent(), SizeIs(1));
    EXPECT_EQ(bodies_().front()["items"].size(), 200U);
    transport_->last().answer(VX::Test::makeAnswer(201, ""));
    logBatch_();
    flush_();
    EXPECT_THAT(transport_->sent(), SizeIs(1)) << "a minute has not passed";
}

TEST_F(QuorvixSetupLogTest, hasNoWayToAnotherToken)
{
    setup_.startCallback();
    spdlog::warn("line");
    getServerSendSink()->trySendBatch(true);
    transport_->last().answer(VX::Test::makeAnswer(401, ""));
    EXPECT_THAT(transport_->sent(), SizeIs(1));
}

TEST_F(QuorvixSetupLogTest, pausesOnceTheViewerCloses)
{
    setup_.setupBasePlugins(&viewer_);
    setup_.startCallback();
    viewer_.signals().shutdown();
    logBatch_();
    flush_();
    EXPECT_THAT(transport_->sent(), IsEmpty());
}

TEST_F(QuorvixSetupLogTest, endsWithASendThatIsWaitedFor)
{
    setup_.setupBasePlugins(&viewer_);
    setup_.startCallback();
    spdlog::warn("line");
    viewer_.signals().shutdown();
    setup_.shutdownCallback();
    ASSERT_THAT(transport_->sent(), SizeIs(1));
    EXPECT_FALSE(transport_->last().request.async);
}

TEST_F(QuorvixSetupLogTest, needsNoStartForItsEnd)
{
    setup_.setupBasePlugins(&viewer_);
    viewer_.signals().shutdown();
    setup_.shutdownCallback();
    EXPECT_THAT(transport_->sent(), IsEmpty());
}

} // namespace

} // namespace VX
