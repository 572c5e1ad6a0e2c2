#include "support/AccountTestSupport.h"

#include <gmock/gmock.h>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

constexpr const char* newPassword = "an0ther-word";
constexpr const char* mismatchText = "CodeMismatchException: Invalid verification code provided, please try again.";
constexpr const char* expiredText = "ExpiredCodeException: Invalid code provided, please request a code again.";
constexpr const char* limitText = "LimitExceededException: Attempt limit exceeded, please try after some time.";

class AuthPasswordResetTest : public AccountServiceTest
{
public:
    AuthPasswordResetTest()
    {
        start();
        makeAccount();
    }

    [[nodiscard]] ClientAnswer forgot(const std::string& name = address) const
    {
        return call("ForgotPassword", userBody(name));
    }

    [[nodiscard]] ClientAnswer reset(const std::string& code, const std::string& word = newPassword,
                                     const std::string& name = address) const
    {
        return call("ConfirmForgotPassword", userBody(name, word, code));
    }
};

TEST_F(AuthPasswordResetTest, mailsACode)
{
    const auto answer = forgot("Ann@example.com");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json().getMemberNames(), (std::vector<std::string>{"CodeDeliveryDetails"}));
    EXPECT_EQ(answer.json()["CodeDeliveryDetails"]["Destination"].asString(), "A***@e*** (" + outbox.string() + ")");
    const std::string mail = newestMail(outbox);
    EXPECT_NE(mail.find("\r\nTo: <ann@example.com>\r\n"), std::string::npos) << mail;
    EXPECT_NE(mail.find("\r\nSubject: Reset your Quorvix password\r\n"), std::string::npos) << mail;
    EXPECT_EQ(codeIn(mail).size(), 6U);
}

TEST_F(AuthPasswordResetTest, setsTheNewPassword)
{
    ASSERT_EQ(forgot().status, 200);
    const auto answer = reset(newestCode());
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(signIn(address, newPassword).status, 200);
    EXPECT_EQ(errorOf(signIn()), "NotAuthorizedException: Incorrect username or password.");
}

TEST_F(AuthPasswordResetTest, keepsTheOldPasswordUntilThen)
{
    ASSERT_EQ(forgot().status, 200);
    EXPECT_EQ(errorOf(reset(wrongCode(newestCode()))), mismatchText);
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthPasswordResetTest, revokesEarlierSignIns)
{
    const Json::Value result = signIn().json()["AuthenticationResult"];
    ASSERT_EQ(forgot().status, 200);
    ASSERT_EQ(reset(newestCode()).status, 200);
    EXPECT_EQ(errorOf(call("InitiateAuth", tokenSignIn(result["RefreshToken"].asString()))),
              "NotAuthorizedException: Refresh Token has been revoked");
    EXPECT_FALSE(services->isSignedIn(result["AccessToken"].asString()));
}

TEST_F(AuthPasswordResetTest, takesACodeOnce)
{
    ASSERT_EQ(forgot().status, 200);
    const std::string code = newestCode();
    ASSERT_EQ(reset(code).status, 200);
    EXPECT_EQ(errorOf(reset(code, "th1rd-word")), expiredText);
    EXPECT_EQ(signIn(address, newPassword).status, 200);
}

TEST_F(AuthPasswordResetTest, refusesACodeAfterADay)
{
    ASSERT_EQ(forgot().status, 200);
    const std::string code = newestCode();
    now = now.load() + 24h;
    EXPECT_EQ(errorOf(reset(code)), expiredText);
    services->forgetExpired();
    EXPECT_EQ(errorOf(reset(code)), expiredText);
}

TEST_F(AuthPasswordResetTest, locksACodeAfterFiveWrongOnes)
{
    ASSERT_EQ(forgot().status, 200);
    const std::string code = newestCode();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(reset(wrongCode(code))), mismatchText);
    EXPECT_EQ(errorOf(reset(code)), limitText);
}

TEST_F(AuthPasswordResetTest, looksAtThePasswordBeforeTheCode)
{
    ASSERT_EQ(forgot().status, 200);
    const std::string code = newestCode();
    EXPECT_EQ(errorOf(reset(code, "short")),
              "InvalidPasswordException: Password did not conform with policy: Password not long enough");
    EXPECT_EQ(reset(code).status, 200);
}

TEST_F(AuthPasswordResetTest, takesNoCodeOfAnotherKindOrAccount)
{
    ASSERT_EQ(call("SignUp", userBody("bob@example.com", password)).status, 200);
    const std::string confirmation = newestCode();
    EXPECT_EQ(errorOf(reset(confirmation, newPassword, "bob@example.com")), expiredText);
    ASSERT_EQ(forgot().status, 200);
    EXPECT_EQ(errorOf(reset(newestCode(), newPassword, "bob@example.com")), expiredText);
}

TEST_F(AuthPasswordResetTest, confirmsTheAddressToo)
{
    ASSERT_EQ(call("SignUp", userBody("bob@example.com", password)).status, 200);
    ASSERT_EQ(forgot("bob@example.com").status, 200);
    ASSERT_EQ(reset(newestCode(), newPassword, "bob@example.com").status, 200);
    EXPECT_EQ(signIn("bob@example.com", newPassword).status, 200);
}

TEST_F(AuthPasswordResetTest, letsAnAccountInThatTriedTooManyPasswords)
{
    for (int i = 0; i < 5; ++i)
        (void)signIn(address, "wrong");
    ASSERT_EQ(forgot().status, 200);
    ASSERT_EQ(reset(newestCode()).status, 200);
    EXPECT_EQ(signIn(address, newPassword).status, 200);
}

TEST_F(AuthPasswordResetTest, answersAStrangerLikeAnAccountAndMailsNothing)
{
    const auto mails = mailCount(outbox);
    const auto known = forgot("ann@example.com");
    EXPECT_EQ(mailCount(outbox), mails + 1);
    const auto stranger = forgot("abe@example.com");
    EXPECT_EQ(mailCount(outbox), mails + 1);
    EXPECT_EQ(known.status, stranger.status);
    EXPECT_EQ(known.body, stranger.body);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(reset("12345", newPassword, "abe@example.com")), mismatchText);
    EXPECT_EQ(errorOf(reset("12345", newPassword, "abe@example.com")), limitText);
}

TEST_F(AuthPasswordResetTest, limitsHowManyCodesAreGivenOut)
{
    for (const char* name : {"ann@example.com", "nobody@example.com"})
    {
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(forgot(name).status, 200);
        EXPECT_EQ(errorOf(forgot(name)), limitText);
    }
    now = now.load() + 1min;
    EXPECT_EQ(forgot().status, 200);
}

TEST_F(AuthPasswordResetTest, asksForEveryArgument)
{
    EXPECT_EQ(errorOf(call("ForgotPassword", Json::Value(Json::objectValue))),
              "InvalidParameterException: Missing required parameter Username");
    EXPECT_EQ(errorOf(call("ConfirmForgotPassword", userBody(address, newPassword))),
              "InvalidParameterException: Missing required parameter ConfirmationCode");
    EXPECT_EQ(errorOf(call("ConfirmForgotPassword", userBody(address, {}, "123456"))),
              "InvalidParameterException: Missing required parameter Password");
}

} // namespace

} // namespace VX::Test
