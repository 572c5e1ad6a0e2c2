#include "AuthWindowFixture.h"

#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* expired = "Refresh Token has expired";

class AuthWindowStartTest : public VX::Test::AuthWindowFixture
{
protected:
    void giveCredentials_(const std::string& text)
    {
        const auto file = config_.folder().path() / "credentials.json";
        std::ofstream(file) << text;
        getViewerInstance().setCommandLineArguments({"-creds", file.string()});
    }

    [[nodiscard]] std::vector<std::string> warnings_() const { return log_.texts(spdlog::level::warn); }
};

TEST_F(AuthWindowStartTest, ShowsTheSignInScreenWhereNothingIsStored)
{
    const auto window = start_();
    EXPECT_EQ(window.state(), 2);
    EXPECT_TRUE(window.rememberMe());
    EXPECT_FALSE(window_->isAuthed());
    EXPECT_FALSE(window_->isInProcess());
    EXPECT_TRUE(window_->isCovering());
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowStartTest, WaitsForTheLoop)
{
    saveAuthToken(tokenOf_(ann));
    window_.emplace(false);
    EXPECT_EQ(VX::AuthWindowAccess(*window_).state(), 2);
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowStartTest, SignsInWithTheStoredToken)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    EXPECT_EQ(window.state(), 0);
    EXPECT_EQ(window.retriesLeft(), 3);
    EXPECT_EQ(window.email(), ann);
    EXPECT_TRUE(window_->isInProcess());
    EXPECT_FALSE(window_->isCovering());
    EXPECT_THAT(askedFor_(), ElementsAre("signInToken"));
    const Json::Value body = lastBody_();
    EXPECT_EQ(body["AuthParameters"]["REFRESH_TOKEN"], "refresh-ann@example.com");
    EXPECT_EQ(body["AnalyticsMetadata"]["AnalyticsEndpointId"], Cognito::getEndpoint(ann));
    answerAccount_(200, tokens_(""));
    EXPECT_EQ(window.state(), 7);
    EXPECT_TRUE(window_->isAuthed());
    EXPECT_FALSE(window_->isInProcess());
}

TEST_F(AuthWindowStartTest, FillsInTheAddressThatASignOutLeft)
{
    saveAuthToken({ann, "", ""});
    const auto window = start_();
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.email(), ann);
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowStartTest, DoesNotTryATokenWithoutItsEndpoint)
{
    saveAuthToken({ann, "token", ""});
    EXPECT_EQ(start_().state(), 2);
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowStartTest, TriesAnExpiredTokenFourTimes)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    for (int i = 0; i < 4; ++i)
        answerAccount_(400, refusal_(expired));
    EXPECT_THAT(askedFor_(), ElementsAre("signInToken", "signInToken", "signInToken", "signInToken"));
    const auto bodies = asked_();
    for (const auto& request : bodies)
        EXPECT_EQ(request.body, bodies.front().body);
    EXPECT_EQ(window.state(), 2);
    EXPECT_FALSE(window.isBusy());
    EXPECT_EQ(window.errorText(), "Refresh Token has expired Session expired. Please log in again.");
    EXPECT_THAT(warnings_(), ElementsAre("Sign in error: \"Refresh Token has expired\", retrying (2 left)",
                                         "Sign in error: \"Refresh Token has expired\", retrying (1 left)",
                                         "Sign in error: \"Refresh Token has expired\", retrying (0 left)",
                                         "Sign in error: \"Refresh Token has expired\""));
}

TEST_F(AuthWindowStartTest, TriesFourTimesWithoutANetwork)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    for (int i = 0; i < 4; ++i)
        answerNothing_();
    EXPECT_THAT(asked_(), SizeIs(4));
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.errorText(), "Cannot connect to account.example.com. Check the network connection.");
    // The last one is not logged: the request itself was.
    EXPECT_THAT(warnings_(), SizeIs(3));
}

TEST_F(AuthWindowStartTest, RetriesAfterABrokenConnectionUntilTheServiceAnswers)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    answerNothing_();
    EXPECT_EQ(window.state(), 0);
    EXPECT_TRUE(window.isBusy());
    answerAccount_(200, tokens_());
    EXPECT_EQ(window.state(), 7);
    EXPECT_EQ(window.errorText(), "");
}

TEST_F(AuthWindowStartTest, DoesNotRetryAfterAnotherRefusal)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    answerAccount_(400, refusal_("Invalid Refresh Token."));
    EXPECT_THAT(asked_(), SizeIs(1));
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.retriesLeft(), 2);
    EXPECT_EQ(window.errorText(), "Invalid Refresh Token.");
    EXPECT_THAT(warnings_(), ElementsAre("Sign in error: \"Invalid Refresh Token.\""));
}

TEST_F(AuthWindowStartTest, LogsNoErrorOfTheServiceItself)
{
    for (const int code : {500, 599})
    {
        saveAuthToken(tokenOf_(ann));
        const auto window = start_();
        answerAccount_(code, R"({"message":"Out of order"})");
        EXPECT_EQ(window.state(), 2);
        EXPECT_EQ(window.errorText(), "Out of order");
        EXPECT_THAT(warnings_(), IsEmpty());
    }
}

TEST_F(AuthWindowStartTest, LogsErrorsBeyondThoseOfTheService)
{
    saveAuthToken(tokenOf_(ann));
    start_();
    answerAccount_(600, R"({"message":"Strange"})");
    EXPECT_THAT(warnings_(), ElementsAre("Sign in error: \"Strange\""));
}

TEST_F(AuthWindowStartTest, SignsInWithAFileOfCredentialsBeforeAStoredToken)
{
    saveAuthToken(tokenOf_("bob@example.com"));
    giveCredentials_(R"({"email":"ann@example.com","password":"s3cret"})");
    const auto window = start_();
    EXPECT_THAT(askedFor_(), ElementsAre("signInEmail"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["USERNAME"], ann);
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret");
    EXPECT_EQ(window.state(), 2);
    EXPECT_TRUE(window_->isInProcess());
}

TEST_F(AuthWindowStartTest, UsesTheStoredTokenWhereTheFileCannotBeUsed)
{
    saveAuthToken(tokenOf_(ann));
    giveCredentials_(R"({"email":"no address","password":"s3cret"})");
    const auto window = start_();
    EXPECT_THAT(askedFor_(), ElementsAre("signInToken"));
    EXPECT_EQ(window.email(), ann);
    EXPECT_EQ(window.password(), "");
}

TEST_F(AuthWindowStartTest, LeavesTheFieldsEmptyWhereTheFilesAddressIsNone)
{
    giveCredentials_(R"({"email":"ann.example.com","password":"s3cret"})");
    const auto window = start_();
    EXPECT_EQ(window.email() + window.password(), "");
    EXPECT_THAT(warnings_(), ElementsAre("Credentials file: email is invalid"));
}

} // namespace

} // namespace VX
