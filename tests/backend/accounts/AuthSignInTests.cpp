#include "support/AccountTestSupport.h"
#include "tests/support/LogCapture.h"
#include "tests/support/StartThreads.h"

#include <gmock/gmock.h>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::StartsWith;

constexpr const char* wrongText = "NotAuthorizedException: Incorrect username or password.";
constexpr const char* blockedText = "NotAuthorizedException: Password attempts exceeded";

class AuthSignInTest : public AccountServiceTest
{
public:
    AuthSignInTest() { start(); }

    [[nodiscard]] std::string refreshToken() const
    {
        return signIn().json()["AuthenticationResult"]["RefreshToken"].asString();
    }

    [[nodiscard]] ClientAnswer refresh(const std::string& token) const
    {
        return call("InitiateAuth", tokenSignIn(token));
    }
};

TEST_F(AuthSignInTest, answersAPasswordWithTokens)
{
    makeAccount();
    const auto answer = signIn();
    EXPECT_EQ(answer.status, 200);
    const Json::Value document = answer.json();
    EXPECT_EQ(document.getMemberNames(), (std::vector<std::string>{"AuthenticationResult", "ChallengeParameters"}));
    EXPECT_TRUE(document["ChallengeParameters"].isObject());
    const Json::Value& result = document["AuthenticationResult"];
    EXPECT_EQ(result.getMemberNames(),
              (std::vector<std::string>{"AccessToken", "ExpiresIn", "IdToken", "RefreshToken", "TokenType"}));
    EXPECT_EQ(result["ExpiresIn"].asInt(), 30 * 24 * 3600);
    EXPECT_EQ(result["TokenType"].asString(), "Bearer");
    for (const char* token : {"AccessToken", "IdToken", "RefreshToken"})
        EXPECT_EQ(result[token].asString().size(), 43U) << token;
}

TEST_F(AuthSignInTest, answersInTheFormatOfTheProvider)
{
    makeAccount();
    const auto answer = signIn();
    EXPECT_NE(answer.head.find("Content-Type: application/x-amz-json-1.1\r\n"), std::string::npos) << answer.head;
    EXPECT_NE(answer.head.find("Cache-Control: no-store\r\n"), std::string::npos) << answer.head;
}

TEST_F(AuthSignInTest, takesAnyContentType)
{
    makeAccount();
    for (const char* type : {"application/x-amz-json-1.1", "application/x-www-form-urlencoded", "text/plain"})
        EXPECT_EQ(call("InitiateAuth", passwordSignIn(address, password), "Content-Type: " + std::string(type) + "\r\n")
                      .status,
                  200)
            << type;
}

TEST_F(AuthSignInTest, comparesAddressesWithoutLetterCase)
{
    makeAccount();
    EXPECT_EQ(signIn("ANN@Example.COM").status, 200);
}

TEST_F(AuthSignInTest, refusesAWrongPasswordAndAStrangerAlike)
{
    makeAccount();
    EXPECT_EQ(errorOf(signIn(address, "passw0rd?")), wrongText);
    EXPECT_EQ(errorOf(signIn("nobody@example.com", password)), wrongText);
    EXPECT_EQ(errorOf(signIn("", "")), wrongText);
}

TEST_F(AuthSignInTest, comparesPasswordsByLetterCase)
{
    makeAccount();
    EXPECT_EQ(errorOf(signIn(address, "Passw0rd!")), wrongText);
}

TEST_F(AuthSignInTest, asksForTheConfirmationBeforeThePassword)
{
    ASSERT_EQ(call("SignUp", userBody(address, password)).status, 200);
    EXPECT_EQ(errorOf(signIn()), "UserNotConfirmedException: User is not confirmed.");
    EXPECT_EQ(errorOf(signIn(address, "wrong")), "UserNotConfirmedException: User is not confirmed.");
}

TEST_F(AuthSignInTest, blocksAnAccountAfterFiveWrongPasswords)
{
    makeAccount();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(signIn(address, "wrong")), wrongText);
    EXPECT_EQ(errorOf(signIn(address, "wrong")), blockedText);
    EXPECT_EQ(errorOf(signIn()), blockedText);
    EXPECT_EQ(errorOf(signIn("ANN@example.com")), blockedText);
}

TEST_F(AuthSignInTest, blocksAnAddressWithoutAnAccountTheSameWay)
{
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(errorOf(signIn("nobody@example.com")), wrongText);
    EXPECT_EQ(errorOf(signIn("nobody@example.com")), blockedText);
}

TEST_F(AuthSignInTest, blocksOnlyTheAccountThatWasTried)
{
    makeAccount();
    for (int i = 0; i < 6; ++i)
        (void)signIn("nobody@example.com");
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignInTest, letsAnAccountTryAgainAfterAPauseThatDoubles)
{
    makeAccount();
    for (int i = 0; i < 5; ++i)
        (void)signIn(address, "wrong");
    now = now.load() + 1s;
    EXPECT_EQ(errorOf(signIn(address, "wrong")), wrongText);
    now = now.load() + 1s;
    EXPECT_EQ(errorOf(signIn()), blockedText);
    now = now.load() + 1s;
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignInTest, countsAnewAfterAGoodPassword)
{
    makeAccount();
    for (int round = 0; round < 2; ++round)
    {
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(errorOf(signIn(address, "wrong")), wrongText);
        EXPECT_EQ(signIn().status, 200);
    }
}

TEST_F(AuthSignInTest, doesNotCountGoodPasswords)
{
    makeAccount();
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(signIn().status, 200);
}

TEST_F(AuthSignInTest, remembersTriesOverARestart)
{
    makeAccount();
    for (int i = 0; i < 5; ++i)
        (void)signIn(address, "wrong");
    start();
    EXPECT_EQ(errorOf(signIn()), blockedText);
}

TEST_F(AuthSignInTest, answersARefreshTokenWithoutAnotherOne)
{
    makeAccount();
    const auto answer = refresh(refreshToken());
    EXPECT_EQ(answer.status, 200);
    const Json::Value result = answer.json()["AuthenticationResult"];
    EXPECT_EQ(result.getMemberNames(), (std::vector<std::string>{"AccessToken", "ExpiresIn", "IdToken", "TokenType"}));
    EXPECT_TRUE(services->isSignedIn(result["AccessToken"].asString()));
}

TEST_F(AuthSignInTest, knowsWhoseAnAccessTokenIs)
{
    makeAccount();
    const auto answer = signIn();
    EXPECT_EQ(services->userOf(answer.json()["AuthenticationResult"]["AccessToken"].asString()), address);
    EXPECT_EQ(services->userOf("nonsense"), std::nullopt);
}

TEST_F(AuthSignInTest, takesARefreshTokenOverAndOver)
{
    makeAccount();
    const std::string token = refreshToken();
    std::vector<int> statuses(8);
    startThreads(std::size(statuses), [&](std::size_t i) { statuses[i] = refresh(token).status; }).clear();
    EXPECT_THAT(statuses, Each(200));
    start();
    EXPECT_EQ(refresh(token).status, 200);
}

TEST_F(AuthSignInTest, refusesARefreshTokenAfterAYear)
{
    makeAccount();
    const std::string token = refreshToken();
    now = now.load() + 365 * 24h - 1s;
    EXPECT_EQ(refresh(token).status, 200);
    now = now.load() + 1s;
    EXPECT_EQ(errorOf(refresh(token)), "NotAuthorizedException: Refresh Token has expired");
    services->forgetExpired();
    EXPECT_EQ(errorOf(refresh(token)), "NotAuthorizedException: Refresh Token has expired");
}

TEST_F(AuthSignInTest, doesNotKnowOtherRefreshTokens)
{
    makeAccount();
    const Json::Value result = signIn().json()["AuthenticationResult"];
    for (const std::string& token :
         {std::string(), std::string("token"), result["AccessToken"].asString(), result["IdToken"].asString()})
        EXPECT_EQ(errorOf(refresh(token)), "NotAuthorizedException: Invalid Refresh Token.");
}

TEST_F(AuthSignInTest, knowsAccessTokensForThirtyDays)
{
    makeAccount();
    const Json::Value result = signIn().json()["AuthenticationResult"];
    const std::string token = result["AccessToken"].asString();
    EXPECT_TRUE(services->isSignedIn(token));
    EXPECT_FALSE(services->isSignedIn(result["RefreshToken"].asString()));
    EXPECT_FALSE(services->isSignedIn(""));
    now = now.load() + 30 * 24h;
    EXPECT_FALSE(services->isSignedIn(token));
}

TEST_F(AuthSignInTest, blocksAPeerThatTriesManyAccounts)
{
    makeAccount();
    config.trustForwardedFor = true;
    start();
    const std::string bad = "X-Forwarded-For: 10.0.0.9, 10.0.0.1\r\n";
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(errorOf(call("InitiateAuth", passwordSignIn("a" + std::to_string(i), "wrong"), bad)), wrongText);
    EXPECT_EQ(errorOf(call("InitiateAuth", passwordSignIn(address, password), bad)), blockedText);
    EXPECT_EQ(call("InitiateAuth", passwordSignIn(address, password), "X-Forwarded-For: 10.0.0.1, 10.0.0.2\r\n").status,
              200);
}

TEST_F(AuthSignInTest, doesNotBelieveAClientThatNamesItsPeer)
{
    EXPECT_EQ(peerOf({.headers = {{"X-Forwarded-For", "10.0.0.1"}}, .peerAddress = "127.0.0.1"}, false), "127.0.0.1");
    EXPECT_EQ(peerOf({.headers = {{"X-Forwarded-For", "10.0.0.1"}}, .peerAddress = "127.0.0.1"}, true), "10.0.0.1");
    EXPECT_EQ(peerOf({.peerAddress = "127.0.0.1"}, true), "127.0.0.1");
}

TEST_F(AuthSignInTest, saysWhatIsWrongWithACall)
{
    EXPECT_THAT(errorOf(call("Unknown", Json::Value(Json::objectValue))), StartsWith("UnknownOperationException: "));
    EXPECT_THAT(errorOf(client().send("POST", "/auth", "{}")), StartsWith("UnknownOperationException: "));
    for (const char* body : {"", "[]", "{", "1"})
        EXPECT_EQ(errorOf(client().send("POST", "/auth", body,
                                        "x-amz-target: AWSCognitoIdentityProviderService.InitiateAuth\r\n")),
                  "SerializationException: The request must be a JSON object.")
            << body;
    Json::Value body;
    body["AuthFlow"] = "USER_PASSWORD_AUTH";
    EXPECT_EQ(errorOf(call("InitiateAuth", body)), "InvalidParameterException: Missing required parameter USERNAME");
    body["AuthParameters"] = 1;
    EXPECT_EQ(errorOf(call("InitiateAuth", body)), "SerializationException: \"AuthParameters\" must be an object.");
    body = passwordSignIn(address, password);
    body["AuthParameters"]["PASSWORD"] = 1;
    EXPECT_EQ(errorOf(call("InitiateAuth", body)), "SerializationException: \"PASSWORD\" must be a string.");
    body["AuthFlow"] = "CUSTOM_AUTH";
    EXPECT_EQ(errorOf(call("InitiateAuth", body)), "InvalidParameterException: Initiate Auth method not supported.");
}

TEST_F(AuthSignInTest, answersUnderAPathWithASlashToo)
{
    EXPECT_THAT(errorOf(client().send("POST", "/auth/", "{}")), StartsWith("UnknownOperationException: "));
}

TEST_F(AuthSignInTest, answersOnlyToPost)
{
    EXPECT_EQ(client().send("GET", "/auth").status, 405);
    EXPECT_EQ(client().send("OPTIONS", "/auth").status, 405);
}

TEST_F(AuthSignInTest, keepsSecretsOutOfTheLogAndTheDatabase)
{
    const LogCapture log;
    makeAccount();
    const Json::Value result = signIn().json()["AuthenticationResult"];
    EXPECT_EQ(errorOf(signIn("typed-in-the-wrong-field", "some0ther!")), wrongText);
    EXPECT_EQ(refresh(result["RefreshToken"].asString()).status, 200);
    ASSERT_EQ(call("ForgotPassword", userBody(address)).status, 200);
    const std::string code = newestCode();

    std::string stored;
    for (const auto& entry : std::filesystem::directory_iterator(data))
        if (entry.is_regular_file())
            stored += readFile(entry.path());
    ASSERT_NE(stored.find(address), std::string::npos);
    for (const std::string& secret :
         {std::string(password), std::string("some0ther!"), std::string("typed-in-the-wrong-field"),
          result["AccessToken"].asString(), result["RefreshToken"].asString(), result["IdToken"].asString()})
    {
        EXPECT_EQ(stored.find(secret), std::string::npos) << secret;
        EXPECT_FALSE(log.contains(secret)) << secret;
    }
    EXPECT_FALSE(log.contains(code));
    EXPECT_FALSE(log.contains(address));
}

} // namespace

} // namespace VX::Test
