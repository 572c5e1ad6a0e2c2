#include "tests/quorvix/support/AccountsFixture.h"
#include <quorvix/setup/McpToolGate.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

constexpr const char* refusal =
    "Quorvix is signed out \xE2\x80\x94 MCP tools are disabled. Ask the user to sign in, then retry.";

class McpToolGateTest : public VX::Test::AccountsFixture
{
protected:
    static void signIn_()
    {
        UserInfo::setAccessToken("token");
        UserInfo::setEmail("ann@example.com");
    }

    static void signOut_()
    {
        UserInfo::setEmail({});
        UserInfo::setAccessToken({});
    }
};

TEST_F(McpToolGateTest, leavesTwoToolsToAgentsWhileNobodyIsSignedIn)
{
    EXPECT_TRUE(checkMcpTool("viewer.shutdown"));
    EXPECT_TRUE(checkMcpTool("viewer.captureScreenshot"));
}

TEST_F(McpToolGateTest, refusesAllOthersWhileNobodyIsSignedIn)
{
    for (const char* const name : {"viewer.Shutdown", "viewer.shutdown ", " viewer.shutdown", "viewer.shutdow",
                                   "viewer.capturescreenshot", "viewer_shutdown", "shutdown", "scene.list", ""})
    {
        const auto checked = checkMcpTool(name);
        ASSERT_FALSE(checked) << name;
        EXPECT_EQ(checked.error(), refusal) << name;
    }
}

TEST_F(McpToolGateTest, allowsAllWhileAUserIsSignedIn)
{
    signIn_();
    for (const char* const name : {"viewer.shutdown", "viewer.captureScreenshot", "scene.list", "nonsense", ""})
        EXPECT_TRUE(checkMcpTool(name)) << name;
}

TEST_F(McpToolGateTest, followsTheUser)
{
    EXPECT_FALSE(checkMcpTool("scene.list"));
    signIn_();
    EXPECT_TRUE(checkMcpTool("scene.list"));
    signOut_();
    EXPECT_FALSE(checkMcpTool("scene.list"));
}

TEST_F(McpToolGateTest, takesATokenWithoutAnAddressForNoUser)
{
    UserInfo::setAccessToken("token");
    EXPECT_FALSE(checkMcpTool("scene.list"));
}

} // namespace

} // namespace VX
