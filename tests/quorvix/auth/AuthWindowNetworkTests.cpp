#include "AuthWindowFixture.h"
#include "tests/support/HttpRecorder.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/UserInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::SizeIs;

/// The window against a real server on loopback.
class AuthWindowNetworkTest : public VX::Test::AuthWindowFixture
{
protected:
    void SetUp() override
    {
        AuthWindowFixture::SetUp();
        WebRequests::setTransport(nullptr);
        Deployment services;
        services.account = service_.url("");
        services.webApp = "https://web.example.com";
        services.telemetry = service_.url("");
        resetDeployment();
        ASSERT_TRUE(setDeployment(services));
        SessionLogs::allow(false);
    }

    [[nodiscard]] bool runLoopUntil_(const std::function<bool()>& done) const
    {
        return VX::Test::waitUntil(
            [&]
            {
                CommandLoop::processCommands();
                return done();
            });
    }

    /// The requests for "/auth".
    [[nodiscard]] std::vector<HttpRequest> accountRequests_() const
    {
        std::vector<HttpRequest> all = service_.requests();
        std::erase_if(all, [](const HttpRequest& request) { return request.path != "/auth"; });
        return all;
    }

    VX::Test::HttpRecorder service_;
};

TEST_F(AuthWindowNetworkTest, TriesAnExpiredTokenFourTimes)
{
    saveAuthToken(tokenOf_(ann));
    service_.answer("/auth", {400, refusal_("Refresh Token has expired")});
    const auto window = start_();
    ASSERT_TRUE(runLoopUntil_([&] { return !window_->isInProcess(); }));
    const auto requests = accountRequests_();
    ASSERT_THAT(requests, SizeIs(4));
    for (const HttpRequest& request : requests)
    {
        EXPECT_EQ(request.method, "POST");
        EXPECT_EQ(request.body, requests.front().body);
        EXPECT_EQ(request.headers.find("x-amz-target")->second, "AWSCognitoIdentityProviderService.InitiateAuth");
    }
    EXPECT_EQ(window.errorText(), "Refresh Token has expired Session expired. Please log in again.");
}

TEST_F(AuthWindowNetworkTest, TriesFourTimesWhereNoAnswerComes)
{
    saveAuthToken(tokenOf_(ann));
    service_.answer("/auth", VX::Test::HttpRecorder::Answer{.status = 0});
    const auto window = start_();
    ASSERT_TRUE(runLoopUntil_([&] { return !window_->isInProcess(); }));
    EXPECT_THAT(accountRequests_(), SizeIs(4));
    EXPECT_EQ(window.state(), 2);
    EXPECT_NE(window.errorText(), "");
}

TEST_F(AuthWindowNetworkTest, SignsInWithAPassword)
{
    service_.answer("/auth", {200, tokens_()});
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    ASSERT_TRUE(runLoopUntil_([&] { return window_->isAuthed(); }));
    EXPECT_EQ(UserInfo::getAccessToken(), "access token");
    EXPECT_FALSE(log_.contains("s3cret"));
    EXPECT_FALSE(log_.contains("access token"));
}

TEST_F(AuthWindowNetworkTest, MayEndWhileARequestIsUnderWay)
{
    service_.answer("/auth", {.status = 200, .body = tokens_(), .delay = std::chrono::milliseconds(50)});
    startWith_(ann, "s3cret").requestSignIn();
    ASSERT_TRUE(service_.waitForRequests(1));
    window_.reset();
    WebRequests::finish();
    CommandLoop::processCommands();
    EXPECT_EQ(UserInfo::getEmail(), "");
}

} // namespace

} // namespace VX
