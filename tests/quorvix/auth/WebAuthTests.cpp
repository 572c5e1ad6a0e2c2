#include "tests/quorvix/support/AccountsFixture.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/Cognito.h>
#include <quorvix/auth/WebAuth.h>

#include <VXViewer/OpenLink.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <future>

namespace VX
{

namespace
{

using ::testing::ElementsAre;

class WebAuthTest : public VX::Test::AccountsFixture
{
protected:
    void SetUp() override
    {
        AccountsFixture::SetUp();
        setDefaultSharedMemoryNamePrefix("QuorvixWebAuthTest-" + std::to_string(::getpid()));
        setLinkOpener([this](const std::string& url) { opened_.push_back(url); });
    }

    void TearDown() override
    {
        setLinkOpener({});
        AccountsFixture::TearDown();
    }

    /// A running instance that counts its notifications.
    [[nodiscard]] std::unique_ptr<WebAuthInterface> instance_(std::atomic<int>& notified) const
    {
        return makeDefaultWebAuth([&notified] { ++notified; });
    }

    /// Hands the link over as a process does that the system starts with these arguments.
    static bool handOver_(std::vector<std::string> arguments)
    {
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        return processDeepLinkAuth(static_cast<int>(pointers.size()), pointers.data(), getDefaultSharedMemoryName(),
                                   "QuorvixTest");
    }

    /// What is stored after the link was handed over.
    static AuthToken stored_(const std::string& link)
    {
        EXPECT_TRUE(handOver_({"Quorvix", "-url", link}));
        return loadAuthToken();
    }

    std::vector<std::string> opened_;
};

TEST_F(WebAuthTest, namesTheChannelByItsPrefix)
{
    setDefaultSharedMemoryNamePrefix("First");
    EXPECT_EQ(getDefaultSharedMemoryName(), "First_1");
    setDefaultSharedMemoryNamePrefix("Second");
    EXPECT_EQ(getDefaultSharedMemoryName(), "Second_1");
}

TEST_F(WebAuthTest, opensThePagesOfTheWebApplication)
{
    std::atomic<int> notified{0};
    const auto auth = instance_(notified);
    auth->openSignIn();
    auth->openSignUp();
    auth->openForgotPassword();
    const std::string query = "?source=native-application&platform=debian_x86_64&version=1.2.3-beta";
    EXPECT_THAT(opened_,
                ElementsAre("https://web.example.com/sign-in" + query, "https://web.example.com/sign-up" + query,
                            "https://web.example.com/forgot-password" + query));
}

TEST_F(WebAuthTest, storesWhatTheLinkBrings)
{
    EXPECT_EQ(stored_("quorvix://auth?email=Ann%40example.com&refresh-token=abc"),
              (AuthToken{"Ann@example.com", "abc", Cognito::getEndpoint("ann@example.com")}));
}

TEST_F(WebAuthTest, takesAnyAbsoluteLink)
{
    EXPECT_EQ(stored_("https://example.com/some/page?x=1&email=a&refresh-token=b#part").token, "b");
}

TEST_F(WebAuthTest, keepsPlusSignsPlainOrEscaped)
{
    EXPECT_EQ(stored_("quorvix://auth?email=a&refresh-token=1%2B2+3").token, "1+2+3");
}

TEST_F(WebAuthTest, takesTheFirstOfEachParameter)
{
    const AuthToken token = stored_("quorvix://auth?email=a&email=b&refresh-token=1&refresh-token=2");
    EXPECT_EQ(token.login, "a");
    EXPECT_EQ(token.token, "1");
}

TEST_F(WebAuthTest, tellsLettersOfParametersApart)
{
    EXPECT_EQ(stored_("quorvix://auth?Email=a&refresh-token=b").login, "");
}

TEST_F(WebAuthTest, storesEmptyFieldsForALinkWithoutParameters)
{
    saveAuthToken({"old", "old", "old"});
    EXPECT_EQ(stored_("quorvix://auth"), (AuthToken{"", "", Cognito::getEndpoint("")}));
    EXPECT_EQ(stored_("quorvix://auth?#part"), (AuthToken{"", "", Cognito::getEndpoint("")}));
}

TEST_F(WebAuthTest, handsOverTheLastLinkOfTheCommandLine)
{
    EXPECT_TRUE(handOver_({"Quorvix", "-url", "quorvix://a?email=A", "-url", "quorvix://a?email=B"}));
    EXPECT_EQ(loadAuthToken().login, "B");
}

TEST_F(WebAuthTest, handsOverNothingWithoutALink)
{
    EXPECT_FALSE(handOver_({}));
    EXPECT_FALSE(handOver_({"Quorvix"}));
    EXPECT_FALSE(handOver_({"Quorvix", "-url"}));
    EXPECT_FALSE(handOver_({"Quorvix", "-url", "-url"}));
    EXPECT_FALSE(handOver_({"Quorvix", "-url", ""}));
    EXPECT_FALSE(handOver_({"Quorvix", "part.stl"}));
    EXPECT_EQ(loadAuthToken(), AuthToken());
}

TEST_F(WebAuthTest, refusesWhatIsNoLinkAndLetsTheChannelGo)
{
    std::atomic<int> notified{0};
    const auto auth = instance_(notified);
    EXPECT_ANY_THROW(handOver_({"Quorvix", "-url", "quorvix://auth?email=%zz"}));
    EXPECT_EQ(loadAuthToken(), AuthToken());
    auth->notifyAboutSignOut();
    EXPECT_TRUE(VX::Test::waitUntil([&] { return notified > 0; }));
    EXPECT_EQ(notified, 1);
}

TEST_F(WebAuthTest, wakesTheRunningInstanceOnceTheTokenIsStored)
{
    std::promise<std::string> token;
    const auto auth = makeDefaultWebAuth([&] { token.set_value(loadAuthToken().token); });
    EXPECT_TRUE(handOver_({"Quorvix", "-url", "quorvix://auth?email=a&refresh-token=b"}));
    auto seen = token.get_future();
    ASSERT_EQ(seen.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(seen.get(), "b");
}

TEST_F(WebAuthTest, tellsEveryInstanceOfASignOut)
{
    std::atomic<int> first{0};
    std::atomic<int> second{0};
    const auto one = instance_(first);
    const auto other = instance_(second);
    one->notifyAboutSignOut();
    EXPECT_TRUE(VX::Test::waitUntil([&] { return first == 1 && second == 1; }));
}

TEST_F(WebAuthTest, logsNothingOfTheLink)
{
    EXPECT_TRUE(handOver_({"Quorvix", "-url", "quorvix://auth?email=ann%40example.com&refresh-token=s3cret"}));
    EXPECT_FALSE(log_.contains("s3cret"));
    EXPECT_FALSE(log_.contains("ann"));
}

} // namespace

} // namespace VX
