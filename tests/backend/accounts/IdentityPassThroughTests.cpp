#include "support/AccountTestSupport.h"
#include "tests/support/HttpRecorder.h"
#include "tests/support/LogCapture.h"

#include <VXMesh/Json.h>

#include <gmock/gmock.h>

#include <thread>

namespace VX::Test
{

namespace
{

using ::testing::HasSubstr;

class IdentityPassThroughTest : public AccountServiceTest
{
public:
    IdentityPassThroughTest()
    {
        config.identityEndpoint = provider.url("/");
        config.identityClientId = "the-client";
        start();
    }

    [[nodiscard]] HttpRequest received() const
    {
        EXPECT_TRUE(provider.waitForRequests(1));
        return provider.requests().front();
    }

    HttpRecorder provider;
};

TEST_F(IdentityPassThroughTest, putsTheClientIdentifierIn)
{
    Json::Value body = passwordSignIn(address, password);
    body["AnalyticsMetadata"]["AnalyticsEndpointId"] = "id";
    body["ClientId"] = "another";
    (void)call("InitiateAuth", body);
    body["ClientId"] = "the-client";
    EXPECT_EQ(deserializeJsonValue(received().body).value(), body);
}

TEST_F(IdentityPassThroughTest, setsTheHeadersThatTheProviderNeeds)
{
    (void)call("InitiateAuth", passwordSignIn(address, password),
               "Content-Type: application/x-www-form-urlencoded\r\nAuthorization: Bearer x\r\n");
    const HttpRequest request = received();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/");
    EXPECT_EQ(request.headers.at("X-Amz-Target"), "AWSCognitoIdentityProviderService.InitiateAuth");
    EXPECT_EQ(request.headers.at("Content-Type"), "application/x-amz-json-1.1");
    EXPECT_FALSE(request.headers.contains("Authorization"));
    EXPECT_FALSE(request.headers.contains("Expect"));
}

TEST_F(IdentityPassThroughTest, passesEveryOperationOn)
{
    const char* operations[] = {
        "InitiateAuth", "SignUp", "ConfirmSignUp", "ForgotPassword", "ConfirmForgotPassword", "ResendConfirmationCode"};
    for (const char* operation : operations)
        EXPECT_EQ(call(operation, userBody(address)).status, 200);
    ASSERT_EQ(provider.requests().size(), std::size(operations));
    for (std::size_t i = 0; i < std::size(operations); ++i)
        EXPECT_THAT(provider.requests()[i].headers.at("X-Amz-Target"), HasSubstr(operations[i]));
}

TEST_F(IdentityPassThroughTest, givesStatusAndBodyBackUntouched)
{
    const std::string odd = "{ \"message\" :\n  \"\\u00e4 as it is\", \"__type\":\"SomeException\" }";
    for (const int status : {200, 400, 500})
    {
        provider.enqueue({.status = status, .body = odd});
        const auto answer = call("SignUp", userBody(address, password));
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.body, odd);
    }
}

TEST_F(IdentityPassThroughTest, followsNoRedirect)
{
    provider.enqueue({.status = 307, .headers = {{"Location", provider.url("/elsewhere")}}});
    EXPECT_EQ(signIn().status, 307);
    EXPECT_EQ(provider.requests().size(), 1U);
}

TEST_F(IdentityPassThroughTest, tellsThatTheProviderCannotBeReached)
{
    const LogCapture log;
    provider.stop();
    const auto answer = signIn();
    EXPECT_EQ(answer.status, 503);
    EXPECT_EQ(answer.json()["__type"].asString(), "ServiceUnavailableException");
    EXPECT_EQ(answer.json()["message"].asString(), "The account service cannot be reached: try again later.");
    EXPECT_TRUE(log.contains("The identity provider cannot be reached: "));
    EXPECT_FALSE(log.contains(password));
}

TEST_F(IdentityPassThroughTest, stopsWhileTheProviderIsSilent)
{
    provider.enqueue({.delay = std::chrono::minutes(10)});
    std::thread waiting([this] { EXPECT_EQ(call("InitiateAuth", passwordSignIn(address, password)).status, 0); });
    EXPECT_TRUE(provider.waitForRequests(1));
    server.reset();
    services.reset();
    waiting.join();
}

TEST_F(IdentityPassThroughTest, refusesWhatIsNoOperation)
{
    EXPECT_EQ(errorOf(call("AdminDeleteUser", userBody(address))),
              "UnknownOperationException: This operation is not known.");
    EXPECT_EQ(errorOf(client().send("POST", "/auth", "[]",
                                    "x-amz-target: AWSCognitoIdentityProviderService.InitiateAuth\r\n")),
              "SerializationException: The request must be a JSON object.");
    EXPECT_TRUE(provider.requests().empty());
}

TEST_F(IdentityPassThroughTest, keepsNothingOfTheAccountsItself)
{
    (void)call("SignUp", userBody(address, password));
    EXPECT_EQ(mailCount(outbox), 0U);
    EXPECT_EQ(services->userOf("any token"), "");
    EXPECT_EQ(services->userOf(""), std::nullopt);
}

} // namespace

} // namespace VX::Test
