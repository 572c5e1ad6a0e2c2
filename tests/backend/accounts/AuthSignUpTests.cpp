#include "support/AccountTestSupport.h"
#include "tests/support/StartThreads.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

constexpr const char* mismatchText = "CodeMismatchException: Invalid verification code provided, please try again.";
constexpr const char* expiredText = "ExpiredCodeException: Invalid code provided, please request a code again.";
constexpr const char* limitText = "LimitExceededException: Attempt limit exceeded, please try after some time.";

class AuthSignUpTest : public AccountServiceTest
{
public:
    AuthSignUpTest() { start(); }

    [[nodiscard]] ClientAnswer signUp(const std::string& name = address, const std::string& word = password) const
    {
        return call("SignUp", userBody(name, word));
    }

    [[nodiscard]] ClientAnswer confirm(const std::string& code, const std::string& name = address) const
    {
        return call("ConfirmSignUp", userBody(name, {}, code));
    }

    [[nodiscard]] ClientAnswer resend(const std::string& name = address) const
    {
        return call("ResendConfirmationCode", userBody(name));
    }
};

TEST_F(AuthSignUpTest, makesAnAccountThatWaitsForItsConfirmation)
{
    const auto answer = signUp();
    EXPECT_EQ(answer.status, 200);
    const Json::Value document = answer.json();
    EXPECT_EQ(document.getMemberNames(), (std::vector<std::string>{"CodeDeliveryDetails", "UserConfirmed", "UserSub"}));
    EXPECT_EQ(document["UserConfirmed"], Json::Value(false));
    EXPECT_TRUE(
        std::regex_match(document["UserSub"].asString(), std::regex("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}")));
    const Json::Value& delivery = document["CodeDeliveryDetails"];
    EXPECT_EQ(delivery.getMemberNames(), (std::vector<std::string>{"AttributeName", "DeliveryMedium", "Destination"}));
    EXPECT_EQ(delivery["AttributeName"].asString(), "email");
    EXPECT_EQ(delivery["DeliveryMedium"].asString(), "EMAIL");
}

TEST_F(AuthSignUpTest, masksTheAddressAndSaysWhereTheMailIs)
{
    EXPECT_EQ(signUp().json()["CodeDeliveryDetails"]["Destination"].asString(), "a***@e*** (" + outbox.string() + ")");
}

TEST_F(AuthSignUpTest, mailsTheCode)
{
    ASSERT_EQ(signUp().status, 200);
    EXPECT_EQ(mailCount(outbox), 1U);
    const std::string mail = newestMail(outbox);
    EXPECT_NE(mail.find("\r\nTo: <ann@example.com>\r\n"), std::string::npos) << mail;
    EXPECT_NE(mail.find("\r\nSubject: Confirm your Quorvix account\r\n"), std::string::npos) << mail;
    EXPECT_EQ(codeIn(mail).size(), 6U);
}

TEST_F(AuthSignUpTest, keepsMailPrivate)
{
    ASSERT_EQ(signUp().status, 200);
    EXPECT_EQ(modeOf(outbox), 0700U);
    for (const auto& entry : std::filesystem::directory_iterator(outbox))
        EXPECT_EQ(modeOf(entry.path()), 0600U) << entry.path();
}

TEST_F(AuthSignUpTest, confirmsWithTheCode)
{
    ASSERT_EQ(signUp().status, 200);
    const auto answer = confirm(newestCode(), "Ann@Example.com");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignUpTest, refusesAnAddressThatHasAnAccount)
{
    makeAccount();
    const auto mails = mailCount(outbox);
    EXPECT_EQ(errorOf(signUp("ANN@EXAMPLE.com", "0ther-word")), "UsernameExistsException: User already exists");
    EXPECT_EQ(mailCount(outbox), mails);
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignUpTest, makesOneAccountOfManyAttemptsAtOnce)
{
    std::vector<int> statuses(6);
    startThreads(std::size(statuses), [&](std::size_t i) { statuses[i] = signUp().status; }).clear();
    EXPECT_EQ(std::ranges::count(statuses, 200), 1);
    EXPECT_EQ(mailCount(outbox), 1U);
    EXPECT_EQ(confirm(newestCode()).status, 200);
}

TEST_F(AuthSignUpTest, namesTheFirstRuleThatAPasswordBreaks)
{
    const std::pair<std::string, const char*> cases[] = {
        {"aB3!xyz", "Password not long enough"},
        {"a1!" + std::string(97, 'x'), "Password too long"},
        {"ABCDEFG1!", "Password must have lowercase characters"},
        {"abcdefgh!", "Password must have numeric characters"},
        {"abcdefgh1", "Password must have symbol characters"},
    };
    for (const auto& [word, text] : cases)
        EXPECT_EQ(errorOf(signUp(address, word)),
                  std::string("InvalidPasswordException: Password did not conform with policy: ") + text);
    EXPECT_EQ(mailCount(outbox), 0U);
}

TEST_F(AuthSignUpTest, refusesWhatIsNoAddress)
{
    for (const char* name : {"ann", "ann@example", "a nn@example.com", "ann@example.com\r\nBcc: bob@example.com", ""})
        EXPECT_EQ(errorOf(signUp(name)), "InvalidParameterException: Username should be an email.") << name;
}

TEST_F(AuthSignUpTest, refusesBlockedDomainsBeforeTheSignUp)
{
    config.blockedDomains = {"example.com"};
    start();
    const std::string refused = "UserLambdaValidationException: PreSignUp failed with error Addresses of example.com "
                                "cannot be used here: choose another one.";
    EXPECT_EQ(errorOf(signUp()), refused);
    EXPECT_EQ(errorOf(signUp("ann@mail.EXAMPLE.com")), refused);
    EXPECT_EQ(signUp("ann@notexample.com").status, 200);
}

TEST_F(AuthSignUpTest, refusesAWrongCode)
{
    ASSERT_EQ(signUp().status, 200);
    const std::string code = newestCode();
    EXPECT_EQ(errorOf(confirm(wrongCode(code))), mismatchText);
    EXPECT_EQ(errorOf(confirm(code.substr(0, 5))), mismatchText);
    EXPECT_EQ(errorOf(confirm(code + " ")), mismatchText);
    EXPECT_EQ(confirm(code).status, 200);
}

TEST_F(AuthSignUpTest, locksACodeAfterFiveWrongOnes)
{
    ASSERT_EQ(signUp().status, 200);
    const std::string code = newestCode();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(confirm(wrongCode(code))), mismatchText);
    EXPECT_EQ(errorOf(confirm(code)), limitText);
    EXPECT_EQ(resend().status, 200);
    EXPECT_EQ(confirm(newestCode()).status, 200);
}

TEST_F(AuthSignUpTest, refusesACodeAfterADay)
{
    ASSERT_EQ(signUp().status, 200);
    const std::string code = newestCode();
    now = now.load() + 24h;
    EXPECT_EQ(errorOf(confirm(code)), expiredText);
}

TEST_F(AuthSignUpTest, takesACodeUntilADayIsOver)
{
    ASSERT_EQ(signUp().status, 200);
    now = now.load() + 24h - 1s;
    EXPECT_EQ(confirm(newestCode()).status, 200);
}

TEST_F(AuthSignUpTest, replacesACodeByTheNextOne)
{
    ASSERT_EQ(signUp().status, 200);
    const std::string first = newestCode();
    std::string second = first;
    while (second == first)
    {
        now = now.load() + 1h;
        ASSERT_EQ(resend().status, 200);
        second = newestCode();
    }
    EXPECT_EQ(errorOf(confirm(first)), mismatchText);
    EXPECT_EQ(confirm(second).status, 200);
}

TEST_F(AuthSignUpTest, tellsThatAnAccountIsConfirmedAlready)
{
    makeAccount();
    EXPECT_EQ(errorOf(confirm("123456")),
              "NotAuthorizedException: User cannot be confirmed. Current status is CONFIRMED");
    EXPECT_EQ(errorOf(resend()), "InvalidParameterException: User is already confirmed.");
}

TEST_F(AuthSignUpTest, limitsHowManyCodesAreGivenOut)
{
    ASSERT_EQ(signUp().status, 200);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(resend().status, 200);
    EXPECT_EQ(errorOf(resend()), limitText);
    EXPECT_EQ(resend("bob@example.com").status, 200);
    now = now.load() + 1min;
    EXPECT_EQ(resend().status, 200);
    now = now.load() + 1min;
    EXPECT_EQ(errorOf(resend()), limitText);
}

TEST_F(AuthSignUpTest, answersAStrangerLikeAnAccountAndMailsNothing)
{
    const auto answer = resend();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json()["CodeDeliveryDetails"]["Destination"].asString(), "a***@e*** (" + outbox.string() + ")");
    EXPECT_TRUE(std::filesystem::is_empty(outbox));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(confirm("123456")), mismatchText);
    EXPECT_EQ(errorOf(confirm("123456")), limitText);
}

TEST_F(AuthSignUpTest, keepsAnAccountOverARestart)
{
    ASSERT_EQ(signUp().status, 200);
    start();
    EXPECT_EQ(confirm(newestCode()).status, 200);
    start();
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignUpTest, keepsNothingWhereTheMailCannotBeWritten)
{
    std::filesystem::remove(outbox);
    folder.write("data/outbox", "no folder");
    const auto answer = signUp();
    EXPECT_EQ(answer.status, 500);
    EXPECT_EQ(answer.json()["__type"].asString(), "InternalErrorException");
    EXPECT_EQ(answer.json()["message"].asString(), "The account service failed: try again.");
    std::filesystem::remove(outbox);
    start();
    EXPECT_EQ(signUp().status, 200);
}

TEST_F(AuthSignUpTest, removesOldMail)
{
    ASSERT_EQ(signUp().status, 200);
    services->forgetExpired();
    EXPECT_EQ(mailCount(outbox), 1U);
    for (const auto& entry : std::filesystem::directory_iterator(outbox))
        std::filesystem::last_write_time(entry.path(), std::filesystem::file_time_type::clock::now() - 25h);
    services->forgetExpired();
    EXPECT_EQ(mailCount(outbox), 0U);
}

} // namespace

} // namespace VX::Test
