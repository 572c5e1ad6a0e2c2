#include "Redactor.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/value.h>
#include <spdlog/spdlog.h>

#include <string>
#include <vector>

namespace VX
{

namespace
{

using testing::HasSubstr;
using testing::Not;

std::string redacted(const std::string& text)
{
    return redact(text).value_or(text);
}

/// `text` as it stands within JSON, with its quotes.
std::string quoted(const std::string& text)
{
    std::string out = Json::Value(text).toStyledString();
    out.pop_back(); // the line end
    return out;
}

/// A request of the identity service as it goes over the wire.
std::string signInBody(const std::string& password)
{
    Json::Value body;
    body["AuthFlow"] = "USER_PASSWORD_AUTH";
    body["AuthParameters"]["USERNAME"] = "ann@example.com";
    body["AuthParameters"]["PASSWORD"] = password;
    body["ClientMetadata"]["platform"] = "debian";
    return body.toStyledString();
}

/// Lines that each have the secret "s3cr3t-Wert!" in them, of every kind there is.
std::vector<std::string> linesWithSecrets()
{
    return {
        R"({"email": "ann@example.com", "password": "s3cr3t-Wert!"})",
        R"({"Password":"s3cr3t-Wert!","Username":"ann@example.com"})",
        "password: s3cr3t-Wert!",
        "New password = s3cr3t-Wert!",
        R"({"refresh_token": "s3cr3t-Wert!"})",
        R"({"AuthenticationResult":{"AccessToken":"s3cr3t-Wert!","ExpiresIn":3600}})",
        R"({"IdToken" : "s3cr3t-Wert!"})",
        R"({"RefreshToken" : "s3cr3t-Wert!"})",
        R"({"login":"a@b.c","token":"s3cr3t-Wert!","endpoint":"e"})",
        R"({"access_token":"s3cr3t-Wert!","input_format":"step"})",
        R"({"ConfirmationCode": "s3cr3t-Wert!"})",
        "https://app.example.com/auth?email=a%40b.c&refresh-token=s3cr3t-Wert!",
        "quorvix://auth?email=a%40b.c&refresh-token=s3cr3t-Wert!",
        "Quorvix -url QUORVIX://s3cr3t-Wert!",
        "Authorization: s3cr3t-Wert!",
        "authorization: Basic s3cr3t-Wert!",
        R"({"Authorization", "Bearer s3cr3t-Wert!"})",
        "Proxy-Authorization: Negotiate s3cr3t-Wert!",
        "Set-Cookie: session=s3cr3t-Wert!; Secure",
        "PUT https://storage.example.com/in.zip?X-Amz-Expires=60&X-Amz-Signature=s3cr3t-Wert!",
        "PUT https://storage.example.com/in.zip?X-Amz-Security-Token=s3cr3t-Wert!",
        R"({"client_secret": "s3cr3t-Wert!"})",
        signInBody("s3cr3t-Wert!"),
        "sent " + quoted(signInBody("s3cr3t-Wert!")),
    };
}

/// What the log file of this program has in it.
std::string logText()
{
    spdlog::default_logger_raw()->flush();
    return VX::Test::readFile(getUserStateDir() / "log/VXMeshTests.log");
}

TEST(Redactor, LeavesALineWithoutASecretAlone)
{
    for (const char* const line :
         {"", "STEP loader: 3 parts", "signInToken: POST account.example.com: 200 after 3 ms",
          "resendConfirmationCode: POST 127.0.0.1: 200", "Telemetry: 12->Sign In",
          "Auth error: \"User already exists\"", "Password did not conform with policy: Password not long enough",
          "Sign in error: \"Refresh Token has expired\", retrying (2 left)", "Credentials file: email is invalid",
          R"({"code": 200, "text": "ok"})", "Failed to set SSL backend for cURL: error code 0x1", "Quorvix: a line"})
        EXPECT_EQ(redact(line), std::nullopt) << line;
}

TEST(Redactor, TakesOutEveryKindOfSecret)
{
    for (const std::string& line : linesWithSecrets())
    {
        EXPECT_THAT(redacted(line), Not(HasSubstr("Wert"))) << line;
        EXPECT_THAT(redacted(line), HasSubstr("[redacted]")) << line;
    }
}

TEST(Redactor, LeavesWhatStandsAroundASecret)
{
    EXPECT_EQ(redacted(R"({"email": "a@b.c", "password": "x", "n": 1})"),
              R"({"email": "a@b.c", "password": "[redacted]", "n": 1})");
    EXPECT_EQ(redacted("GET /a?token=x&page=2 took 3 ms"), "GET /a?token=[redacted]&page=2 took 3 ms");
    EXPECT_EQ(redacted("A Bearer abcdefgh.ijk, accepted"), "A Bearer [redacted], accepted");
    EXPECT_EQ(redacted("opens \"quorvix://auth?x=1\" now"), "opens \"quorvix:[redacted]\" now");
    EXPECT_EQ(redacted(R"({"token": 12, "n": 1})"), R"({"token": [redacted], "n": 1})");
}

TEST(Redactor, TakesEverySecretOfALine)
{
    EXPECT_EQ(redacted(R"({"token":"a","password":"b"})"), R"({"token":"[redacted]","password":"[redacted]"})");
}

TEST(Redactor, TakesASecretWithQuotesAndBackslashesWhole)
{
    for (const std::string secret : {R"(a"b)", R"(a\)", R"(a\"b)", R"(\\"")", R"(", "x": "y)"})
    {
        const std::string inner = R"({"password": )" + quoted(secret) + R"(, "n": 1})";
        EXPECT_EQ(redacted(inner), R"({"password": "[redacted]", "n": 1})") << secret;
        const std::string outer = "sent " + quoted(inner) + " today";
        EXPECT_EQ(redacted(outer), R"(sent "{\"password\": \"[redacted]\", \"n\": 1}" today)") << secret;
    }
}

TEST(Redactor, TakesAnUnfinishedValueToItsEnd)
{
    EXPECT_EQ(redacted(R"({"password": "abc)"), R"({"password": "[redacted])");
}

TEST(Redactor, TakesAPasswordOfSeveralWordsToTheEndOfTheLine)
{
    EXPECT_EQ(redacted("Password: correct horse\nnext line"), "Password: [redacted]\nnext line");
}

TEST(Redactor, TakesRequestsOfTheIdentityServiceWhole)
{
    EXPECT_EQ(redacted("signInEmail sends " + signInBody("x") + "."), "signInEmail sends [redacted]\n.");
}

TEST(Redactor, TakesWebTokensWhereverTheyStand)
{
    EXPECT_EQ(redacted("got eyJhbGciOiJIUzI1NiJ9.eyJzdWIiOiIxIn0.c2ln for it"), "got [redacted] for it");
}

TEST(Redactor, TakesVerificationCodes)
{
    EXPECT_EQ(redacted("the code 123456 came"), "the code [redacted] came");
    EXPECT_EQ(redacted("Your code is: 123456."), "Your code is: [redacted].");
    EXPECT_EQ(redacted(R"({"code": "123456"})"), R"({"code": "[redacted]"})");
    EXPECT_EQ(redacted("code 1234567"), "code 1234567");
}

TEST(Redactor, KeepsSecretsFromEverySinkOfTheLogAtEveryLevel)
{
    const VX::Test::TempConfig temp;
    const VX::Test::LogCapture log;
    for (const auto level :
         {spdlog::level::debug, spdlog::level::info, spdlog::level::warn, spdlog::level::err, spdlog::level::critical})
        for (const std::string& line : linesWithSecrets())
            spdlog::log(level, "{}", line);
    EXPECT_FALSE(log.contains("Wert"));
    EXPECT_TRUE(log.contains("[redacted]"));
    EXPECT_THAT(logText(), testing::AllOf(Not(HasSubstr("Wert")), HasSubstr("[redacted]")));
}

} // namespace

} // namespace VX
