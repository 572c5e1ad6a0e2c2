#include "AuthWindowFixture.h"
#include <quorvix/auth/UserInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace VX
{

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::SizeIs;

using AuthWindowTest = VX::Test::AuthWindowFixture;

TEST_F(AuthWindowTest, SignsInWithAPassword)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    EXPECT_TRUE(window_->isInProcess());
    EXPECT_EQ(lastBody_()["AuthFlow"], "USER_PASSWORD_AUTH");
    EXPECT_EQ(lastBody_()["AuthParameters"]["USERNAME"], ann);
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret");
    answerAccount_(200, tokens_());
    EXPECT_EQ(window.state(), 7);
    EXPECT_EQ(UserInfo::getEmail(), ann);
    EXPECT_EQ(UserInfo::getAccessToken(), "access token");
    EXPECT_THAT(log_.texts(spdlog::level::info), Contains("Signed in."));
}

TEST_F(AuthWindowTest, RemembersTheUser)
{
    startWith_(ann, "s3cret").requestSignIn();
    answerAccount_(200, tokens_());
    EXPECT_EQ(loadAuthToken(), (AuthToken{ann, "new refresh token", Cognito::getEndpoint(ann)}));
}

TEST_F(AuthWindowTest, KeepsWhatIsStoredWhereTheAnswerHasNoRefreshToken)
{
    saveAuthToken(tokenOf_(ann));
    start_();
    answerAccount_(200, R"({"AuthenticationResult":{"AccessToken":"access token"}})");
    EXPECT_EQ(loadAuthToken(), tokenOf_(ann));
}

TEST_F(AuthWindowTest, ForgetsWhatIsStoredWhereTheUserIsNotToBeRemembered)
{
    saveAuthToken({ann, "", ""});
    const auto window = startWith_(ann, "s3cret");
    window.rememberMe() = false;
    window.requestSignIn();
    answerAccount_(200, tokens_());
    EXPECT_TRUE(window_->isAuthed());
    EXPECT_EQ(loadAuthToken(), AuthToken{});
}

TEST_F(AuthWindowTest, KeepsTheAddressAtASignOut)
{
    startWith_(ann, "s3cret").requestSignIn();
    answerAccount_(200, tokens_());
    window_->signOut();
    EXPECT_EQ(loadAuthToken(), (AuthToken{ann, "", ""}));
}

TEST_F(AuthWindowTest, KeepsNothingAtASignOutWhereTheUserIsNotToBeRemembered)
{
    const auto window = startWith_(ann, "s3cret");
    window.rememberMe() = false;
    window.requestSignIn();
    answerAccount_(200, tokens_());
    window_->signOut();
    EXPECT_EQ(loadAuthToken(), AuthToken{});
}

TEST_F(AuthWindowTest, ShowsTheSignInScreenAfterASignOut)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    answerAccount_(200, tokens_());
    window_->signOut();
    EXPECT_EQ(window.state(), 2);
    EXPECT_FALSE(window.isBackgroundShown());
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

TEST_F(AuthWindowTest, ShowsAnErrorWhereTheAnswerHasNoResult)
{
    for (const char* answer : {"{}", "", "[1]", R"({"AuthenticationResult":null})", R"({"AuthenticationResult":"x"})"})
    {
        const VX::Test::LogCapture log;
        const auto window = startWith_(ann, "s3cret");
        window.requestSignIn();
        answerAccount_(200, answer);
        EXPECT_EQ(window.state(), 1) << answer;
        EXPECT_EQ(window.errorText(), "Unknown error.");
        EXPECT_THAT(log.texts(spdlog::level::warn), ElementsAre("Sign in error: \"Unknown error.\""));
    }
}

TEST_F(AuthWindowTest, TakesAResultWithoutTexts)
{
    startWith_(ann, "s3cret").requestSignIn();
    answerAccount_(200, R"({"AuthenticationResult":{"AccessToken":1,"RefreshToken":{}}})");
    EXPECT_TRUE(window_->isAuthed());
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

TEST_F(AuthWindowTest, ShowsWhyAPasswordWasRefused)
{
    const auto window = startWith_(ann, "wrong");
    window.requestSignIn();
    answerAccount_(400, refusal_("Incorrect username or password."));
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.errorText(), "Incorrect username or password.");
    EXPECT_EQ(window.password(), "wrong");
    EXPECT_THAT(asked_(), SizeIs(1));
}

TEST_F(AuthWindowTest, SignsUpAndConfirms)
{
    const auto window = startWith_(ann, "s3cret-word");
    window.setState(3);
    window.requestSignUp();
    EXPECT_THAT(askedFor_(), ElementsAre("signUp"));
    EXPECT_EQ(lastBody_()["Username"], ann);
    EXPECT_EQ(lastBody_()["Password"], "s3cret-word");
    answerAccount_(200, sentTo_("a***@e***"));
    EXPECT_EQ(window.state(), 4);
    EXPECT_EQ(window.destination(), "a***@e***");

    window.code() = "123456";
    window.requestConfirmSignUp();
    EXPECT_EQ(lastBody_()["Username"], ann);
    EXPECT_EQ(lastBody_()["ConfirmationCode"], "123456");
    answerAccount_(200, "{}");
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.destination(), "");
    EXPECT_EQ(window.password(), "s3cret-word");
}

TEST_F(AuthWindowTest, SendsACodeAgain)
{
    const auto window = startWith_(ann, "s3cret-word");
    window.setState(4);
    window.requestResendConfirm();
    EXPECT_THAT(askedFor_(), ElementsAre("resendConfirmationCode"));
    EXPECT_EQ(lastBody_()["Username"], ann);
    answerAccount_(200, sentTo_("other"));
    EXPECT_EQ(window.state(), 4);
    EXPECT_EQ(window.destination(), "");
    EXPECT_FALSE(window.isBusy());
}

TEST_F(AuthWindowTest, ResetsAPassword)
{
    const auto window = startWith_(ann, "");
    window.setState(5);
    window.requestForgot();
    EXPECT_THAT(askedFor_(), ElementsAre("forget"));
    answerAccount_(200, sentTo_("a***@e***"));
    EXPECT_EQ(window.state(), 6);
    EXPECT_EQ(window.destination(), "a***@e***");

    window.code() = "123456";
    window.password() = "n3w-s3cret";
    window.requestConfirmForgot();
    EXPECT_EQ(lastBody_()["ConfirmationCode"], "123456");
    EXPECT_EQ(lastBody_()["Password"], "n3w-s3cret");
    answerAccount_(200, "");
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.destination(), "");
}

TEST_F(AuthWindowTest, TakesAnAnswerThatDoesNotSayWhereTheCodeWent)
{
    for (const char* answer : {"{}", "[]", R"({"CodeDeliveryDetails":7})"})
    {
        const auto window = startWith_(ann, "s3cret-word");
        window.requestForgot();
        answerAccount_(200, answer);
        EXPECT_EQ(window.state(), 6) << answer;
        EXPECT_EQ(window.destination(), "");
    }
}

TEST_F(AuthWindowTest, StaysOnTheScreenWhoseRequestFails)
{
    using Request = void (AuthWindowAccess::*)() const;
    const std::array<std::pair<int, Request>, 5> requests{{{3, &AuthWindowAccess::requestSignUp},
                                                           {4, &AuthWindowAccess::requestConfirmSignUp},
                                                           {4, &AuthWindowAccess::requestResendConfirm},
                                                           {5, &AuthWindowAccess::requestForgot},
                                                           {6, &AuthWindowAccess::requestConfirmForgot}}};
    for (const auto& [state, request] : requests)
    {
        const VX::Test::LogCapture log;
        const auto window = startWith_(ann, "s3cret-word");
        window.setState(state);
        (window.*request)();
        EXPECT_TRUE(window.isBusy());
        answerAccount_(400, refusal_("Attempt limit exceeded"));
        EXPECT_EQ(window.state(), state);
        EXPECT_FALSE(window.isBusy());
        EXPECT_EQ(window.errorText(), "Attempt limit exceeded");
        EXPECT_THAT(log.texts(spdlog::level::warn), ElementsAre("Auth error: \"Attempt limit exceeded\""));
    }
}

TEST_F(AuthWindowTest, ShowsWhatTheCheckBeforeASignUpSays)
{
    const auto window = startWith_(ann, "s3cret-word");
    window.setState(3);
    window.requestSignUp();
    answerAccount_(400, refusal_("PreSignUp failed with error  Use your work address."));
    EXPECT_EQ(window.errorText(), "Use your work address.");
    EXPECT_THAT(log_.texts(spdlog::level::warn),
                ElementsAre("Auth error: \"PreSignUp failed with error  Use your work address.\""));
}

TEST_F(AuthWindowTest, TakesACheckBeforeASignUpThatSaysNothing)
{
    for (const char* rest : {"", ".", ". "})
    {
        const auto window = startWith_(ann, "s3cret-word");
        window.requestSignUp();
        answerAccount_(400, refusal_(std::string("PreSignUp failed with error") + rest));
        EXPECT_EQ(window.errorText(), "");
    }
}

TEST_F(AuthWindowTest, LeavesThatTextInOtherErrors)
{
    const auto window = startWith_(ann, "s3cret-word");
    window.requestForgot();
    answerAccount_(400, refusal_("PreSignUp failed with error x"));
    EXPECT_EQ(window.errorText(), "PreSignUp failed with error x");
}

TEST_F(AuthWindowTest, LogsNoSecrets)
{
    const auto window = startWith_(ann, "s3cret-word");
    window.requestSignIn();
    answerAccount_(200, tokens_());
    window_->signOut();
    for (const char* secret : {"s3cret-word", "access token", "new refresh token"})
        EXPECT_FALSE(log_.contains(secret)) << secret;
}

TEST_F(AuthWindowTest, OverwritesThePasswordOnceItWasGood)
{
    const auto window = startWith_(ann, "a password that is longer than short strings are");
    const char* const memory = window.password().data();
    const std::size_t length = window.password().size();
    window.requestSignIn();
    answerAccount_(200, tokens_());
    EXPECT_EQ(window.password().data(), memory);
    EXPECT_EQ(std::string(memory, length), std::string(length, '\0'));
}

TEST_F(AuthWindowTest, OverwritesThePasswordAtASignOut)
{
    const auto window = startWith_(ann, "a password that is longer than short strings are");
    const char* const memory = window.password().data();
    const std::size_t length = window.password().size();
    window_->signOut();
    EXPECT_EQ(window.password().data(), memory);
    EXPECT_EQ(std::string(memory, length), std::string(length, '\0'));
}

} // namespace

} // namespace VX
