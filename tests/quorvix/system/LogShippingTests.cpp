#include "tests/quorvix/system/ServiceFixture.h"
#include <quorvix/auth/Cognito.h>
#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/telemetry/ServerSendSink.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Logger.h>
#include <VXViewer/WebRequest.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/spdlog.h>

#include <backend/accounts/UserCommand.h>
#include <backend/telemetry/LogsCommand.h>

#include <algorithm>
#include <future>

namespace VX::Test
{

namespace
{

using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* address = "ann@example.com";
constexpr const char* password = "passw0rd!";

class LogShippingTest : public ServiceFixture
{
protected:
    void SetUp() override
    {
        ServiceFixture::SetUp();
        SessionLogs::reset();
        setup_.startCallback();
    }

    void TearDown() override
    {
        Logger::instance().removeSink(getServerSendSink());
        UserInfo::setAccessToken({});
        SessionLogs::reset();
        ServiceFixture::TearDown();
    }

    void signIn_() const
    {
        CommandArguments arguments;
        arguments.command = CommandArguments::Command::UserAdd;
        arguments.dataFolder = data_;
        arguments.address = address;
        ASSERT_TRUE(runUserCommand(arguments, [] { return password; }));
        std::promise<Json::Value> answer;
        Cognito::signInEmail(address, password, [&answer](const Json::Value& value) { answer.set_value(value); });
        const auto signedIn = parseResponse(answer.get_future().get());
        ASSERT_TRUE(signedIn) << signedIn.error();
        UserInfo::setAccessToken((*signedIn)["AuthenticationResult"]["AccessToken"].asString());
    }

    /// What the service's own command prints of the lines that hold `text`.
    [[nodiscard]] std::string stored_(const std::string& text) const
    {
        return runLogsCommand(data_, {.text = text}, false).value();
    }

    const QuorvixSetup setup_;
};

TEST_F(LogShippingTest, bringsLinesToTheService)
{
    signIn_();
    spdlog::warn("A line to ship");
    setup_.shutdownCallback();
    EXPECT_THAT(stored_("A line to ship"), HasSubstr("Z warning ann@example.com Quorvix "));
}

TEST_F(LogShippingTest, bringsNoLineTwice)
{
    signIn_();
    spdlog::warn("The first line");
    getServerSendSink()->trySendBatch(true);
    spdlog::warn("The second line");
    // Does not wait for the answer to the first one, and so sends it again.
    getServerSendSink()->trySendBatch(false);
    WebRequests::finish();
    const std::string lines = stored_(" line");
    EXPECT_EQ(std::ranges::count(lines, '\n'), 2) << lines;
}

TEST_F(LogShippingTest, isRefusedWithATokenThatNobodyHas)
{
    UserInfo::setAccessToken("nonsense");
    spdlog::warn("A line to ship");
    setup_.shutdownCallback();
    EXPECT_THAT(stored_("A line to ship"), IsEmpty());
}

TEST_F(LogShippingTest, bringsLinesLaterWhereTheFirstTokenWasRefused)
{
    UserInfo::setAccessToken("nonsense");
    spdlog::warn("The first line");
    getServerSendSink()->trySendBatch(false);
    signIn_();
    spdlog::warn("The second line");
    getServerSendSink()->trySendBatch(false);
    EXPECT_THAT(stored_("The first line"), HasSubstr("ann@example.com"));
}

TEST_F(LogShippingTest, bringsNothingWhereTelemetryIsNotAllowed)
{
    signIn_();
    SessionLogs::allow(false);
    spdlog::warn("A line to ship");
    setup_.shutdownCallback();
    EXPECT_THAT(stored_("A line to ship"), IsEmpty());
}

} // namespace

} // namespace VX::Test
