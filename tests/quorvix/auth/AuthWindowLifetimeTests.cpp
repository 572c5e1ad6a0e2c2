#include "AuthWindowFixture.h"
#include <quorvix/auth/UserInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace VX
{

namespace
{

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class AuthWindowLifetimeTest : public VX::Test::AuthWindowFixture
{
protected:
    void answerOnAnotherThread_(int code, const std::string& text)
    {
        std::thread([&] { answerAccount_(code, text); }).join();
    }
};

TEST_F(AuthWindowLifetimeTest, LooksAtAnAnswerOnTheUiThread)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    answerOnAnotherThread_(200, tokens_());
    EXPECT_EQ(window.state(), 2);
    EXPECT_TRUE(window.isBusy());
    CommandLoop::processCommands();
    EXPECT_EQ(window.state(), 7);
}

TEST_F(AuthWindowLifetimeTest, TakesAnAnswerOnce)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    answerAccount_(400, refusal_("First"));
    answerAccount_(200, tokens_());
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.errorText(), "First");
}

TEST_F(AuthWindowLifetimeTest, TakesTheAnswerOfTheLastRequestAlone)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestForgot();
    const auto first = transport_->last();
    window.requestResendConfirm();
    first.answer(VX::Test::makeAnswer(200, sentTo_("a***")));
    EXPECT_EQ(window.state(), 2);
    EXPECT_TRUE(window.isBusy());
    answerAccount_(200, "{}");
    EXPECT_FALSE(window.isBusy());
}

TEST_F(AuthWindowLifetimeTest, IgnoresAnAnswerThatComesAfterItsEnd)
{
    startWith_(ann, "s3cret").requestSignIn();
    window_.reset();
    answerAccount_(200, tokens_());
    answerOnAnotherThread_(200, tokens_());
    CommandLoop::processCommands();
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_EQ(loadAuthToken(), AuthToken{});
}

TEST_F(AuthWindowLifetimeTest, IgnoresAnAnswerThatWaitsForTheLoopAtItsEnd)
{
    startWith_(ann, "s3cret").requestSignIn();
    answerOnAnotherThread_(200, tokens_());
    window_.reset();
    CommandLoop::processCommands();
    EXPECT_EQ(UserInfo::getEmail(), "");
}

TEST_F(AuthWindowLifetimeTest, DoesNotStartAfterItsEnd)
{
    saveAuthToken(tokenOf_(ann));
    window_.emplace(false);
    window_.reset();
    CommandLoop::processCommands();
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthWindowLifetimeTest, IgnoresTheAnswerOfASignInThatASignOutEnded)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    window_->signOut();
    EXPECT_FALSE(window_->isInProcess());
    answerAccount_(200, tokens_());
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_EQ(loadAuthToken(), (AuthToken{ann, "", ""}));
    EXPECT_THAT(log_.texts(spdlog::level::info), Not(Contains("Signed in.")));
}

TEST_F(AuthWindowLifetimeTest, IgnoresAnAnswerThatWaitsForTheLoopAtASignOut)
{
    const auto window = startWith_(ann, "s3cret");
    window.requestSignIn();
    answerOnAnotherThread_(200, tokens_());
    window_->signOut();
    CommandLoop::processCommands();
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(UserInfo::getEmail(), "");
}

TEST_F(AuthWindowLifetimeTest, SendsNoRetryAfterASignOut)
{
    saveAuthToken(tokenOf_(ann));
    const auto window = start_();
    window_->signOut();
    answerAccount_(400, refusal_("Refresh Token has expired"));
    EXPECT_THAT(asked_(), SizeIs(1));
    EXPECT_EQ(window.state(), 2);
    EXPECT_EQ(window.errorText(), "");
}

} // namespace

} // namespace VX
