#include "tests/quorvix/support/AccountsFixture.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/QuorvixWindowTitle.h>

#include <VXMesh/Config.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UserInfoTest : public VX::Test::AccountsFixture
{
};

TEST_F(UserInfoTest, hasNobodyAtFirst)
{
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_EQ(UserInfo::getAccessToken(), "");
    EXPECT_FALSE(UserInfo::isUserSet());
}

TEST_F(UserInfoTest, keepsTheAccessToken)
{
    UserInfo::setAccessToken("first");
    EXPECT_EQ(UserInfo::getAccessToken(), "first");
    UserInfo::setAccessToken("second");
    EXPECT_EQ(UserInfo::getAccessToken(), "second");
    UserInfo::setAccessToken({});
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

TEST_F(UserInfoTest, keepsTheAddress)
{
    UserInfo::setEmail("ann@example.com");
    EXPECT_EQ(UserInfo::getEmail(), "ann@example.com");
    UserInfo::setEmail({});
    EXPECT_EQ(UserInfo::getEmail(), "");
}

TEST_F(UserInfoTest, leavesTheTextOfAnEarlierReferenceAlone)
{
    UserInfo::setAccessToken("first");
    const std::string& token = UserInfo::getAccessToken();
    UserInfo::setAccessToken("second");
    EXPECT_EQ(token, "first");
}

TEST_F(UserInfoTest, isReadWhileAnotherThreadWrites)
{
    std::thread writer(
        []
        {
            for (int i = 0; i < 1000; ++i)
                UserInfo::setAccessToken(std::string(static_cast<std::size_t>(i % 50), 'x'));
        });
    for (int i = 0; i < 1000; ++i)
    {
        const std::string token = UserInfo::getAccessToken();
        EXPECT_EQ(token, std::string(token.size(), 'x'));
    }
    writer.join();
}

TEST_F(UserInfoTest, hasAUserOnceThereIsBothAddressAndToken)
{
    UserInfo::setEmail("ann@example.com");
    EXPECT_FALSE(UserInfo::isUserSet());
    UserInfo::setAccessToken("token");
    EXPECT_TRUE(UserInfo::isUserSet());
    UserInfo::setEmail({});
    EXPECT_FALSE(UserInfo::isUserSet());
}

TEST_F(UserInfoTest, asksForATelemetrySessionAtASignIn)
{
    UserInfo::setEmail("ann@example.com");
    EXPECT_THAT(types_(), ElementsAre("createSession"));
    EXPECT_EQ(bodies_().front()["email"], "ann@example.com");
}

TEST_F(UserInfoTest, reportsASignIn)
{
    UserInfo::setEmail("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    EXPECT_THAT(actions_(), ElementsAre("Sign In"));
    EXPECT_EQ(bodies_().at(1)["email"], "ann@example.com");
}

TEST_F(UserInfoTest, reportsASignOutUnderTheOldAddress)
{
    UserInfo::setEmail("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    SessionLogs::logAction("Waiting", false);
    UserInfo::setEmail({});
    EXPECT_THAT(actions_(), ElementsAre("Sign In", "Waiting", "Sign Out"));
    EXPECT_EQ(bodies_().back()["email"], "ann@example.com");
    EXPECT_EQ(bodies_().back()["sessionId"], 7);
}

TEST_F(UserInfoTest, endsTheSessionAtASignOut)
{
    UserInfo::setEmail("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    UserInfo::setEmail({});
    const auto before = types_();
    SessionLogs::logAction("Later", false);
    SessionLogs::flushIfNeeded(true);
    EXPECT_EQ(types_(), before);
}

TEST_F(UserInfoTest, sendsNothingForASignOutOfNobody)
{
    UserInfo::setEmail({});
    EXPECT_THAT(types_(), IsEmpty());
}

TEST_F(UserInfoTest, followsTheSettingOfTheUser)
{
    Config::instance().setBool("allowSimpleTelemetry", false);
    UserInfo::setEmail("ann@example.com");
    EXPECT_FALSE(SessionLogs::isAllowed());
    Config::instance().setBool("allowSimpleTelemetry", true);
    UserInfo::setEmail("ann@example.com");
    EXPECT_TRUE(SessionLogs::isAllowed());
}

TEST_F(UserInfoTest, reportsTheForbiddanceAndTheSignOutOnlyWhereTheSettingForbidsTelemetry)
{
    Config::instance().setBool("allowSimpleTelemetry", false);
    UserInfo::setEmail("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    SessionLogs::logAction("Dropped", false);
    UserInfo::setEmail({});
    EXPECT_THAT(types_(), ElementsAre("createSession", "logAction", "setPlatform", "logAction"));
    EXPECT_THAT(actions_(), ElementsAre("Forbid Telemetry", "Sign Out"));
}

TEST_F(UserInfoTest, sendsNothingWhereTheCommandLineForbidsTelemetry)
{
    getViewerInstance().setCommandLineArguments({"-noTelemetry"});
    UserInfo::setEmail("ann@example.com");
    EXPECT_FALSE(SessionLogs::isAllowed());
    UserInfo::setEmail({});
    EXPECT_THAT(types_(), IsEmpty());
}

TEST_F(UserInfoTest, bringsTheAddressIntoTheTitle)
{
    const auto title = std::make_shared<QuorvixWindowTitle>();
    getViewerInstance().setWindowTitle(title);
    UserInfo::setEmail("ann@example.com");
    EXPECT_EQ(title->compose(), "ann@example.com");
    UserInfo::setEmail({});
    EXPECT_EQ(title->compose(), "");
}

TEST_F(UserInfoTest, leavesAnotherTitleAlone)
{
    UserInfo::setEmail("ann@example.com");
    EXPECT_EQ(getViewerInstance().windowTitle()->compose(), "");
}

} // namespace

} // namespace VX
