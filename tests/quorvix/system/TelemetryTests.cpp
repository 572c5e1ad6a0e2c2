#include "tests/quorvix/system/ServiceFixture.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/Version.h>
#include <quorvix/telemetry/SessionLogs.h>
#include <quorvix/telemetry/TelemetryRecord.h>

#include <VXMesh/SystemInfo.h>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX::Test
{

namespace
{

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::SizeIs;

class TelemetryTest : public ServiceFixture
{
protected:
    void SetUp() override
    {
        ServiceFixture::SetUp();
        SessionLogs::reset();
    }

    void TearDown() override
    {
        UserInfo::setEmail({});
        UserInfo::setAccessToken({});
        SessionLogs::reset();
        ServiceFixture::TearDown();
    }

    void signIn_() const
    {
        UserInfo::setAccessToken("token");
        UserInfo::setEmail("ann@example.com");
        ASSERT_TRUE(waitForActions_(1));
    }
};

TEST_F(TelemetryTest, keepsASessionWithItsActionsInTheirOrder)
{
    std::vector<std::string> expected{"Sign In"};
    signIn_();
    for (int i = 1; i <= 10; ++i)
    {
        expected.push_back(fmt::format("Action {}", i));
        SessionLogs::logAction(expected.back(), false);
    }
    UserInfo::setEmail({});
    expected.emplace_back("Sign Out");
    ASSERT_TRUE(waitForActions_(expected.size()));
    EXPECT_THAT(actions_(), ElementsAreArray(expected));
    EXPECT_THAT(stored_("SELECT email FROM sessions"), ElementsAre("ann@example.com"));
    EXPECT_THAT(stored_("SELECT DISTINCT session FROM actions"), SizeIs(1));
}

TEST_F(TelemetryTest, tellsThePlatformOnceInASession)
{
    signIn_();
    SessionLogs::logAction("Action", false);
    UserInfo::setEmail({});
    ASSERT_TRUE(waitForActions_(3));
    EXPECT_TRUE(waitUntil(
        [&] { return stored_("SELECT platform FROM sessions") == std::vector<std::string>{GetDetailedOSName()}; }));
    EXPECT_THAT(stored_("SELECT version FROM sessions"), ElementsAre(versionNoSpaces(true)));
    const std::string sent = readFile(TelemetryRecord::file());
    const auto first = sent.find("setPlatform");
    EXPECT_NE(first, std::string::npos);
    EXPECT_EQ(sent.find("setPlatform", first + 1), std::string::npos);
}

TEST_F(TelemetryTest, beginsAnotherSessionWithTheNextSignIn)
{
    signIn_();
    UserInfo::setEmail({});
    ASSERT_TRUE(waitForActions_(2));
    UserInfo::setEmail("bob@example.com");
    ASSERT_TRUE(waitForActions_(3));
    EXPECT_THAT(stored_("SELECT email FROM sessions ORDER BY email"),
                ElementsAre("ann@example.com", "bob@example.com"));
}

TEST_F(TelemetryTest, sendsNothingWhereTheCommandLineForbidsIt)
{
    getViewerInstance().setCommandLineArguments({"-noTelemetry"});
    UserInfo::setEmail("ann@example.com");
    SessionLogs::logAction("Action", false);
    UserInfo::setEmail({});
    WebRequests::finish();
    EXPECT_EQ(readFile(TelemetryRecord::file()), "");
}

} // namespace

} // namespace VX::Test
