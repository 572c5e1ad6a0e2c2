#include "tests/support/HttpRecorder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"
#include <quorvix/auth/Cognito.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/Json.h>
#include <VXMesh/SystemFacts.h>
#include <VXViewer/WebRequests.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::UnorderedElementsAre;
using Operation = std::function<void(Cognito::Callback)>;

/// The account service is a server that records what arrives.
class CognitoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Deployment services;
        services.account = service_.url("/base");
        resetDeployment();
        ASSERT_TRUE(setDeployment(services));
        setSystemInfo_(Json::Value(Json::objectValue));
    }

    void TearDown() override
    {
        WebRequests::reset();
        overrideSystemFacts({});
        resetDeployment();
    }

    static void setSystemInfo_(const Json::Value& info)
    {
        SystemFacts facts;
        facts.version = "1.2.3 beta";
        facts.osNoSpaces = "debian_x86_64";
        facts.systemInfo = info;
        overrideSystemFacts(facts);
    }

    /// Runs `operation`, waits for its answer and returns that.
    static Json::Value answerOf_(const Operation& operation)
    {
        std::promise<Json::Value> answer;
        operation([&answer](const Json::Value& value) { answer.set_value(value); });
        return answer.get_future().get();
    }

    /// What `operation` sends.
    HttpRequest requestOf_(const Operation& operation)
    {
        answerOf_(operation);
        const auto requests = service_.requests();
        return requests.empty() ? HttpRequest{} : requests.back();
    }

    Json::Value bodyOf_(const Operation& operation)
    {
        return deserializeJsonValue(requestOf_(operation).body).value_or(Json::Value());
    }

    /// What the service is told of a computer with this information.
    Json::Value metadataFor_(const std::string& info)
    {
        setSystemInfo_(deserializeJsonValue(info).value());
        return bodyOf_(forget_)["ClientMetadata"];
    }

    static Json::Value parsed_(const std::string& text) { return deserializeJsonValue(text).value(); }

    VX::Test::HttpRecorder service_;
    const Operation forget_ = [](Cognito::Callback done) { Cognito::forget("ann@example.com", std::move(done)); };
};

/// Each operation with what it is called on the wire and its whole body, but for the metadata that all have.
struct Case
{
    const char* name;
    const char* target;
    Operation operation;
    const char* body;
};

std::vector<Case> cases()
{
    const std::string ann = "ann@example.com";
    return {
        {"signInEmail", "InitiateAuth",
         [=](Cognito::Callback done) { Cognito::signInEmail(ann, "pass \"1\" \xC3\xBC", std::move(done)); },
         R"({"AuthFlow": "USER_PASSWORD_AUTH",
             "AuthParameters": {"USERNAME": "ann@example.com", "PASSWORD": "pass \"1\" ü"}})"},
        {"signUp", "SignUp", [=](Cognito::Callback done) { Cognito::signUp(ann, "pass", std::move(done)); },
         R"({"Username": "ann@example.com", "Password": "pass"})"},
        {"confirmSignUp", "ConfirmSignUp",
         [=](Cognito::Callback done) { Cognito::confirmSignUp(ann, "123456", std::move(done)); },
         R"({"Username": "ann@example.com", "ConfirmationCode": "123456"})"},
        {"forget", "ForgotPassword", [=](Cognito::Callback done) { Cognito::forget(ann, std::move(done)); },
         R"({"Username": "ann@example.com"})"},
        {"confirmForget", "ConfirmForgotPassword",
         [=](Cognito::Callback done) { Cognito::confirmForget(ann, "new", "123456", std::move(done)); },
         R"({"Username": "ann@example.com", "Password": "new", "ConfirmationCode": "123456"})"},
        {"resendConfirmationCode", "ResendConfirmationCode", [=](Cognito::Callback done)
         { Cognito::resendConfirmationCode(ann, std::move(done)); }, R"({"Username": "ann@example.com"})"},
    };
}

TEST_F(CognitoTest, sendsTheBodyOfEachOperation)
{
    for (const Case& each : cases())
    {
        Json::Value expected = parsed_(each.body);
        expected["AnalyticsMetadata"]["AnalyticsEndpointId"] = Cognito::getEndpoint("ann@example.com");
        expected["ClientMetadata"]["platform"] = "debian_x86_64";
        expected["ClientMetadata"]["version"] = "1.2.3-beta";
        EXPECT_EQ(requestOf_(each.operation).body, expected.toStyledString()) << each.name;
    }
}

TEST_F(CognitoTest, postsEachOperationToTheAccountService)
{
    for (const Case& each : cases())
    {
        const HttpRequest request = requestOf_(each.operation);
        EXPECT_EQ(request.method, "POST") << each.name;
        EXPECT_EQ(request.path, "/base/auth") << each.name;
        EXPECT_EQ(request.rawQuery, "") << each.name;
    }
}

TEST_F(CognitoTest, tellsTheOperationsApartByTheirOneHeader)
{
    for (const Case& each : cases())
    {
        HttpHeaders headers = requestOf_(each.operation).headers;
        EXPECT_EQ(headers["x-amz-target"], std::string("AWSCognitoIdentityProviderService.") + each.target);
        for (const char* const usual : {"Host", "Accept", "Content-Length", "Content-Type"})
            headers.erase(usual);
        EXPECT_THAT(headers, ElementsAre(Key("x-amz-target"))) << each.name;
    }
}

TEST_F(CognitoTest, isKnownToTheLogByTheNameOfTheOperation)
{
    const VX::Test::LogCapture log;
    for (const Case& each : cases())
        answerOf_(each.operation);
    answerOf_([](Cognito::Callback done) { Cognito::signInToken("refresh", "endpoint", std::move(done)); });
    for (const Case& each : cases())
        EXPECT_TRUE(log.contains(std::string(each.name) + ": POST 127.0.0.1: 200")) << each.name;
    EXPECT_TRUE(log.contains("signInToken: POST 127.0.0.1: 200"));
}

TEST_F(CognitoTest, signsInWithATokenWithoutTheAddress)
{
    const auto operation = [](Cognito::Callback done)
    { Cognito::signInToken("refresh", "an endpoint", std::move(done)); };
    const HttpRequest request = requestOf_(operation);
    EXPECT_EQ(request.headers.at("x-amz-target"), "AWSCognitoIdentityProviderService.InitiateAuth");
    EXPECT_EQ(parsed_(request.body), parsed_(R"({"AuthFlow": "REFRESH_TOKEN_AUTH",
        "AnalyticsMetadata": {"AnalyticsEndpointId": "an endpoint"},
        "AuthParameters": {"REFRESH_TOKEN": "refresh"},
        "ClientMetadata": {"platform": "debian_x86_64", "version": "1.2.3-beta"}})"));
}

TEST_F(CognitoTest, sendsAnEmptyEndpointAsItIs)
{
    const Json::Value body =
        bodyOf_([](Cognito::Callback done) { Cognito::signInToken("refresh", "", std::move(done)); });
    EXPECT_EQ(body["AnalyticsMetadata"], parsed_(R"({"AnalyticsEndpointId": ""})"));
}

TEST_F(CognitoTest, sendsNoEndpointForNobody)
{
    const Json::Value body = bodyOf_([](Cognito::Callback done) { Cognito::forget("", std::move(done)); });
    EXPECT_THAT(body.getMemberNames(), UnorderedElementsAre("ClientMetadata", "Username"));
}

TEST_F(CognitoTest, handsTheAnswerOverAsItIs)
{
    const std::string text = R"({"__type":"NotAuthorizedException","message":"Incorrect username or password."})";
    service_.enqueue({.status = 400, .body = text});
    const Json::Value answer = answerOf_(forget_);
    EXPECT_EQ(answer["code"], 400);
    EXPECT_EQ(answer["text"], text);
}

TEST_F(CognitoTest, handsAMissingAnswerOver)
{
    service_.stop();
    EXPECT_EQ(answerOf_(forget_)["code"], 0);
}

TEST_F(CognitoTest, logsNothingOfWhatItSends)
{
    const VX::Test::TempConfig config;
    const VX::Test::LogCapture log;
    answerOf_([](Cognito::Callback done)
              { Cognito::confirmForget("ann@example.com", "Wert-1", "Wert-2", std::move(done)); });
    answerOf_([](Cognito::Callback done) { Cognito::signInToken("Wert-3", "endpoint", std::move(done)); });
    EXPECT_EQ(log.lines().size(), 2U);
    EXPECT_FALSE(log.contains("Wert"));
    EXPECT_FALSE(log.contains("ann@"));
    EXPECT_FALSE(log.contains("[redacted]"));
}

TEST_F(CognitoTest, tellsAllThatIsKnownOfTheComputerAsText)
{
    EXPECT_EQ(metadataFor_(R"({"OS Version": "Debian 12", "CPU Info": {"CPU": "Some CPU", "Concurrent threads": 8},
                               "Graphics Info": {"OpenGL Renderer": "Some GPU", "OpenGL Version": "4.5"},
                               "Memory Info": {"Physical memory total MB": "16000"},
                               "Window Info": {"Number of monitors": 2, "BiggestMonitor":
                                   {"Width": 1920, "Height": 1080, "ScalingPercent": 150}}})"),
              parsed_(R"({"platform": "debian_x86_64", "version": "1.2.3-beta", "os": "Debian 12",
                          "cpu": "Some CPU / 8", "gpu": "Some GPU", "gl_version": "4.5", "ram": "16000",
                          "width": "1920", "height": "1080", "scaling_percent": "150", "num_monitors": "2"})"));
}

TEST_F(CognitoTest, saysNothingOfMonitorsWithoutTheBiggestOne)
{
    for (const char* const info :
         {R"({"Window Info": {"Number of monitors": 2}})",
          R"({"Window Info": {"Number of monitors": 2, "BiggestMonitor": "none"}})", R"({"Window Info": []})"})
        EXPECT_THAT(metadataFor_(info).getMemberNames(), ElementsAre("platform", "version")) << info;
}

TEST_F(CognitoTest, countsTheMonitorsAlsoWhereTheSizeIsIncomplete)
{
    EXPECT_THAT(metadataFor_(R"({"Window Info": {"Number of monitors": 2,
                                 "BiggestMonitor": {"Width": 1920, "Height": 1080}}})")
                    .getMemberNames(),
                ElementsAre("num_monitors", "platform", "version"));
}

TEST_F(CognitoTest, saysNothingOfAProcessorWithoutAName)
{
    for (const char* const info :
         {R"({"CPU Info": {"Concurrent threads": 8}})", R"({"CPU Info": {"CPU": "", "Concurrent threads": 8}})"})
        EXPECT_FALSE(metadataFor_(info).isMember("cpu")) << info;
}

TEST_F(CognitoTest, leavesOutTheThreadsWhereTheirNumberIsNone)
{
    for (const char* const threads : {"-1", "\"8\"", "1.5", "null"})
        EXPECT_EQ(metadataFor_(std::string(R"({"CPU Info": {"CPU": "Some CPU", "Concurrent threads": )") + threads +
                               "}}")["cpu"],
                  "Some CPU")
            << threads;
}

TEST_F(CognitoTest, leavesOutWhatHasAnotherType)
{
    EXPECT_THAT(metadataFor_(R"({"OS Version": 12, "CPU Info": "Some CPU", "Graphics Info": {"OpenGL Renderer": 1},
                                 "Memory Info": {"Physical memory total MB": 16000}, "Window Info": {"BiggestMonitor":
                                 {"Width": "1920", "Height": 1080, "ScalingPercent": 100}, "Number of monitors": "2"}})")
                    .getMemberNames(),
                ElementsAre("platform", "version"));
    EXPECT_THAT(metadataFor_("[]").getMemberNames(), ElementsAre("platform", "version"));
}

TEST(CognitoEndpoint, isTheNameBasedUuidOfTheAddress)
{
    // As Python's uuid.uuid5(uuid.NAMESPACE_DNS, …) has them.
    EXPECT_EQ(Cognito::getEndpoint("user@example.com"), "b21b5663-c40d-51b7-8d60-c015e3de48e9");
    EXPECT_EQ(Cognito::getEndpoint(""), "4ebd0208-8328-5d69-8c44-ec50939c0967");
}

TEST(CognitoEndpoint, doesNotMindTheLetterCase)
{
    EXPECT_EQ(Cognito::getEndpoint("User@Example.COM"), Cognito::getEndpoint("user@example.com"));
}

TEST(CognitoEndpoint, leavesOtherAlphabetsAlone)
{
    EXPECT_NE(Cognito::getEndpoint("\xC3\x9Cser@example.com"), Cognito::getEndpoint("\xC3\xBCser@example.com"));
}

TEST(CognitoEndpoint, endsAtAZeroByte)
{
    EXPECT_EQ(Cognito::getEndpoint(std::string("user@example.com\0x", 18)), Cognito::getEndpoint("user@example.com"));
}

TEST(CognitoEndpoint, hasVersionAndVariant)
{
    for (const char* const name : {"a", "b", "ann@example.com", "\xC3\xBC@example.com"})
    {
        const std::string endpoint = Cognito::getEndpoint(name);
        ASSERT_EQ(endpoint.size(), 36U) << name;
        EXPECT_EQ(endpoint[14], '5') << name;
        EXPECT_THAT(endpoint[19], ::testing::AnyOf('8', '9', 'a', 'b')) << name;
    }
}

} // namespace

} // namespace VX
