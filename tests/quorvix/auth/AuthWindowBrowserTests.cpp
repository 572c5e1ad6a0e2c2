#include "AuthWindowFixture.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/auth/WebAuth.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AuthWindowBrowserTest : public VX::Test::AuthWindowFixture
{
protected:
    void SetUp() override
    {
        AuthWindowFixture::SetUp();
        setDefaultSharedMemoryNamePrefix(fmt::format("QuorvixAuthWindowTest-{}", ::getpid()));
    }

    AuthWindowAccess startBrowser_()
    {
        window_.emplace(true);
        CommandLoop::processCommands();
        return AuthWindowAccess(*window_);
    }

    static void handOver_(const std::string& query)
    {
        notifyWebAuth(getDefaultSharedMemoryName(), "quorvix://auth?" + query, "QuorvixTest");
    }

    /// Lets the loop run until the listener has woken it.
    static bool runLoop_()
    {
        return VX::Test::waitUntil([] { return CommandLoop::processCommands(); });
    }
};

TEST_F(AuthWindowBrowserTest, SignsInWithWhatTheBrowserHandsOver)
{
    const auto window = startBrowser_();
    handOver_("email=bob%40example.com&refresh-token=from-browser");
    ASSERT_TRUE(runLoop_());
    EXPECT_EQ(window.email(), "bob@example.com");
    EXPECT_EQ(window.state(), 2);
    EXPECT_THAT(askedFor_(), ElementsAre("signInToken"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["REFRESH_TOKEN"], "from-browser");
    answerAccount_(200, tokens_(""));
    EXPECT_TRUE(window_->isAuthed());
    EXPECT_EQ(UserInfo::getEmail(), "bob@example.com");
    EXPECT_EQ(loadAuthToken(), (AuthToken{"bob@example.com", "from-browser", Cognito::getEndpoint("bob@example.com")}));
}

TEST_F(AuthWindowBrowserTest, TriesAHandedOverTokenOnce)
{
    const auto window = startBrowser_();
    handOver_("email=bob%40example.com&refresh-token=from-browser");
    ASSERT_TRUE(runLoop_());
    answerAccount_(400, refusal_("Refresh Token has expired"));
    EXPECT_EQ(asked_().size(), 1U);
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.errorText(), "Refresh Token has expired Session expired. Please log in again.");
}

TEST_F(AuthWindowBrowserTest, ReplacesTheUserByTheOneOfTheBrowser)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = startBrowser_();
    answerAccount_(200, tokens_(""));
    ASSERT_EQ(UserInfo::getEmail(), ann);
    handOver_("email=bob%40example.com&refresh-token=from-browser");
    ASSERT_TRUE(runLoop_());
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_EQ(UserInfo::getAccessToken(), "");
    EXPECT_EQ(window.state(), 2);
    answerAccount_(200, tokens_(""));
    EXPECT_EQ(UserInfo::getEmail(), "bob@example.com");
}

TEST_F(AuthWindowBrowserTest, TakesTheBrowsersTokenInsteadOfTheStoredOneThatIsBeingTried)
{
    saveAuthToken(tokenOf_(ann));
    startBrowser_();
    const auto first = transport_->last();
    handOver_("email=bob%40example.com&refresh-token=from-browser");
    ASSERT_TRUE(runLoop_());
    first.answer(VX::Test::makeAnswer(200, tokens_("")));
    EXPECT_EQ(UserInfo::getEmail(), "");
    answerAccount_(200, tokens_(""));
    EXPECT_EQ(UserInfo::getEmail(), "bob@example.com");
}

TEST_F(AuthWindowBrowserTest, StaysSignedOutWhereTheLinkBringsNothing)
{
    const auto window = startBrowser_();
    handOver_("");
    ASSERT_TRUE(runLoop_());
    EXPECT_EQ(window.state(), 2);
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowBrowserTest, SignsOutWithAnotherInstance)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = startBrowser_();
    answerAccount_(200, tokens_(""));
    saveAuthToken({});
    makeDefaultWebAuth([] {})->notifyAboutSignOut();
    ASSERT_TRUE(runLoop_());
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(UserInfo::getEmail(), "");
}

TEST_F(AuthWindowBrowserTest, IsNotWokenAfterItsEnd)
{
    startBrowser_();
    handOver_("email=bob%40example.com&refresh-token=from-browser");
    ASSERT_TRUE(VX::Test::waitUntil([] { return !CommandLoop::isEmpty(); }));
    window_.reset();
    CommandLoop::processCommands();
    EXPECT_THAT(asked_(), IsEmpty());
}

} // namespace

} // namespace VX
