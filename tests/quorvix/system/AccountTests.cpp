#include "tests/quorvix/system/ServiceFixture.h"
#include <quorvix/auth/Cognito.h>

#include <VXViewer/WebRequest.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <future>

namespace VX::Test
{

namespace
{

using ::testing::StartsWith;

constexpr const char* address = "ann@example.com";
constexpr const char* password = "passw0rd!";

class AccountTest : public ServiceFixture
{
protected:
    using Result = tl::expected<Json::Value, std::string>;

    /// What the service says to an operation of the client.
    static Result ask_(const std::function<void(Cognito::Callback)>& operation)
    {
        std::promise<Json::Value> answer;
        operation([&answer](const Json::Value& value) { answer.set_value(value); });
        return parseResponse(answer.get_future().get());
    }

    static Result signUp_(const std::string& with = password)
    {
        return ask_([&](auto done) { Cognito::signUp(address, with, std::move(done)); });
    }

    static Result confirm_(const std::string& code)
    {
        return ask_([&](auto done) { Cognito::confirmSignUp(address, code, std::move(done)); });
    }

    static Result signIn_(const std::string& with = password)
    {
        return ask_([&](auto done) { Cognito::signInEmail(address, with, std::move(done)); });
    }

    static Result refresh_(const std::string& token)
    {
        return ask_([&](auto done) { Cognito::signInToken(token, Cognito::getEndpoint(address), std::move(done)); });
    }

    void makeAccount_() const
    {
        ASSERT_TRUE(signUp_());
        ASSERT_TRUE(confirm_(newestCode_()));
    }

    static std::string textOf_(const Result& result) { return result ? result->toStyledString() : result.error(); }
};

TEST_F(AccountTest, isOpenOnceItsCodeWasConfirmed)
{
    const auto made = signUp_();
    ASSERT_TRUE(made) << made.error();
    EXPECT_THAT((*made)["CodeDeliveryDetails"]["Destination"].asString(), StartsWith("a***@e***"));
    EXPECT_EQ(textOf_(signIn_()), "User is not confirmed.");
    EXPECT_EQ(textOf_(confirm_(newestCode_())), "{}\n");
    const auto signedIn = signIn_();
    ASSERT_TRUE(signedIn) << signedIn.error();
    EXPECT_FALSE((*signedIn)["AuthenticationResult"]["AccessToken"].asString().empty());
}

TEST_F(AccountTest, isSignedInAgainWithItsRefreshToken)
{
    makeAccount_();
    const auto signedIn = signIn_();
    ASSERT_TRUE(signedIn) << signedIn.error();
    const auto refreshed = refresh_((*signedIn)["AuthenticationResult"]["RefreshToken"].asString());
    ASSERT_TRUE(refreshed) << refreshed.error();
    const Json::Value& result = (*refreshed)["AuthenticationResult"];
    EXPECT_FALSE(result["AccessToken"].asString().empty());
    EXPECT_FALSE(result.isMember("RefreshToken"));
}

TEST_F(AccountTest, getsANewPasswordWithTheCodeOfItsOwner)
{
    makeAccount_();
    ASSERT_TRUE(ask_([](auto done) { Cognito::forget(address, std::move(done)); }));
    const auto reset = ask_([code = newestCode_()](auto done)
                            { Cognito::confirmForget(address, "n3w-passw0rd", code, std::move(done)); });
    EXPECT_EQ(textOf_(reset), "{}\n");
    EXPECT_EQ(textOf_(signIn_()), "Incorrect username or password.");
    EXPECT_TRUE(signIn_("n3w-passw0rd"));
}

TEST_F(AccountTest, isConfirmedWithTheCodeThatWasSentLast)
{
    ASSERT_TRUE(signUp_());
    const auto sent = ask_([](auto done) { Cognito::resendConfirmationCode(address, std::move(done)); });
    ASSERT_TRUE(sent) << sent.error();
    EXPECT_EQ((*sent)["CodeDeliveryDetails"]["DeliveryMedium"].asString(), "EMAIL");
    EXPECT_EQ(mailCount(data_ / "outbox"), 2U);
    EXPECT_TRUE(confirm_(newestCode_()));
}

TEST_F(AccountTest, tellsWhyItIsRefused)
{
    EXPECT_EQ(textOf_(signUp_("short")), "Password did not conform with policy: Password not long enough");
    makeAccount_();
    EXPECT_EQ(textOf_(signUp_()), "User already exists");
    EXPECT_EQ(textOf_(signIn_("wr0ng-passw0rd")), "Incorrect username or password.");
    EXPECT_EQ(textOf_(refresh_("nonsense")), "Invalid Refresh Token.");
}

} // namespace

} // namespace VX::Test
