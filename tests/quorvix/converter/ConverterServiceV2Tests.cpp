#include <quorvix/auth/UserInfo.h>
#include <quorvix/converter/ConverterServiceV2.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/Json.h>

#include <gtest/gtest.h>
#include <json/writer.h>

#include <tests/quorvix/support/RecordingTransport.h>

namespace VX::ConverterService::V2
{

namespace
{

using Test::makeAnswer;
using Test::RecordingTransport;

class ConverterServiceV2Test : public ::testing::Test
{
protected:
    void SetUp() override
    {
        resetDeployment();
        Deployment deployment;
        deployment.converter = "https://converter.example.com/base";
        ASSERT_TRUE(setDeployment(deployment));
    }

    void TearDown() override
    {
        WebRequests::reset();
        UserInfo::setAccessToken({});
        resetDeployment();
    }

    /// What `request` is made of.
    [[nodiscard]] WebRequestData dataOf_(const WebRequest& request) const
    {
        request.send([](const Json::Value&) {});
        return transport_->last().request;
    }

    static Json::Value bodyOf_(const WebRequestData& data) { return deserializeJsonValue(data.body.value()).value(); }

    const std::shared_ptr<RecordingTransport> transport_ = RecordingTransport::install();
};

/// An answer with this body and status 200.
Json::Value withBody(const std::string& text)
{
    return makeAnswer(200, text);
}

/// The error of all three parsers, which treat the envelope alike.
template <typename Result>
std::string errorOf(const Json::Value& answer)
{
    const auto result = Result::parseResponse(answer);
    return result ? "no error" : result.error();
}

template <typename Result>
class ConverterServiceV2Envelope : public ::testing::Test
{
};

using Results = ::testing::Types<RequestConvertContextResult, StartConvertResult, CheckConvertStatusResult>;
TYPED_TEST_SUITE(ConverterServiceV2Envelope, Results, );

/// Everything that is set by default.
void expectNothingElse(const WebRequestData& data)
{
    const WebRequestData defaults;
    EXPECT_TRUE(data.headers.empty());
    EXPECT_TRUE(data.inputPath.empty());
    EXPECT_TRUE(data.outputPath.empty());
    EXPECT_EQ(data.timeout, defaults.timeout);
    EXPECT_TRUE(data.async);
    EXPECT_FALSE(data.uploadProgress);
    EXPECT_FALSE(data.downloadProgress);
}

TEST_F(ConverterServiceV2Test, asksForAConversionWithAPost)
{
    const WebRequestData data = dataOf_(requestConvertContext("step"));
    EXPECT_EQ(data.method, WebRequest::Method::Post);
    EXPECT_EQ(data.url, "https://converter.example.com/base/converter/v2/request");
    EXPECT_EQ(data.logName, "ConverterService");
    EXPECT_TRUE(data.parameters.empty());
    expectNothingElse(data);
    Json::Value body;
    body["input_format"] = "step";
    body["compress_input"] = "zip";
    EXPECT_EQ(bodyOf_(data), body);
}

TEST_F(ConverterServiceV2Test, startsAConversionWithAPost)
{
    const WebRequestData data = dataOf_(startConvert("id 1", "STP", "vxu"));
    EXPECT_EQ(data.method, WebRequest::Method::Post);
    EXPECT_EQ(data.url, "https://converter.example.com/base/converter/v2/convert");
    EXPECT_EQ(data.logName, "ConverterService");
    EXPECT_TRUE(data.parameters.empty());
    expectNothingElse(data);
    Json::Value body;
    body["request_id"] = "id 1";
    body["input_format"] = "STP";
    body["output_format"] = "vxu";
    body["compress_input"] = "zip";
    EXPECT_EQ(bodyOf_(data), body);
}

TEST_F(ConverterServiceV2Test, asksForTheStatusWithAGet)
{
    const WebRequestData data = dataOf_(checkConvertStatus("a+b&c"));
    EXPECT_EQ(data.method, WebRequest::Method::Get);
    EXPECT_EQ(data.url, "https://converter.example.com/base/converter/v2/status");
    EXPECT_EQ(data.logName, "ConverterService");
    EXPECT_EQ(data.parameters, (std::unordered_map<std::string, std::string>{{"request_id", "a+b&c"}}));
    EXPECT_FALSE(data.body);
    expectNothingElse(data);
}

TEST_F(ConverterServiceV2Test, provesTheSignInWhereSomebodyIsSignedIn)
{
    UserInfo::setAccessToken("token \"1\"");
    EXPECT_EQ(bodyOf_(dataOf_(requestConvertContext("step")))["access_token"], "token \"1\"");
    EXPECT_EQ(bodyOf_(dataOf_(startConvert("id", "step", "vxu")))["access_token"], "token \"1\"");
}

TEST_F(ConverterServiceV2Test, sendsNoAccessTokenAfterASignOut)
{
    UserInfo::setAccessToken("token");
    UserInfo::setAccessToken({});
    EXPECT_FALSE(bodyOf_(dataOf_(requestConvertContext("step"))).isMember("access_token"));
    EXPECT_FALSE(bodyOf_(dataOf_(startConvert("id", "step", "vxu"))).isMember("access_token"));
}

TEST_F(ConverterServiceV2Test, sendsAnyTextUnharmed)
{
    const std::string text = "\xC3\xBC \"\\/ \n";
    EXPECT_EQ(bodyOf_(dataOf_(requestConvertContext(text)))["input_format"], text);
}

TYPED_TEST(ConverterServiceV2Envelope, isNotThereWithoutAnAnswer)
{
    Json::Value answer = withBody(R"({"result": {"state": "in_progress", "request_id": "i", "url": "u"}})");
    answer["code"] = 0;
    answer["error"] = "no route";
    EXPECT_EQ(errorOf<TypeParam>(answer), "Connection error");
}

TYPED_TEST(ConverterServiceV2Envelope, countsACodeThatIsNoIntAsNoAnswer)
{
    Json::Value answer = withBody(R"({"result": {"state": "in_progress", "request_id": "i", "url": "u"}})");
    for (const Json::Value& code : {Json::Value("200"), Json::Value(200.5), Json::Value(true), Json::Value(),
                                    Json::Value(Json::objectValue), Json::Value(Json::Int64{1} << 40)})
    {
        answer["code"] = code;
        EXPECT_EQ(errorOf<TypeParam>(answer), "Connection error") << code;
    }
    answer.removeMember("code");
    EXPECT_EQ(errorOf<TypeParam>(answer), "Connection error");
}

TYPED_TEST(ConverterServiceV2Envelope, isNotThereInAnAnswerThatIsNoObject)
{
    for (const Json::Value& answer :
         {Json::Value(), Json::Value("text"), Json::Value(5), Json::Value(Json::arrayValue)})
        EXPECT_EQ(errorOf<TypeParam>(answer), "Connection error") << answer;
}

TYPED_TEST(ConverterServiceV2Envelope, givesTheErrorOfAnAnswerWithoutAText)
{
    Json::Value answer(Json::objectValue);
    answer["code"] = 500;
    EXPECT_EQ(errorOf<TypeParam>(answer), "");
    answer["error"] = "broken";
    EXPECT_EQ(errorOf<TypeParam>(answer), "broken");
    answer["text"] = 5;
    EXPECT_EQ(errorOf<TypeParam>(answer), "broken");
    answer["error"] = Json::Value(Json::arrayValue);
    EXPECT_EQ(errorOf<TypeParam>(answer), "");
}

TYPED_TEST(ConverterServiceV2Envelope, givesWhatTheParserSaysOfATextThatIsNotJson)
{
    for (const char* text : {"", "<html>", "{\"result\":", "{} {}"})
        EXPECT_EQ(errorOf<TypeParam>(withBody(text)), deserializeJsonValue(std::string(text)).error()) << text;
}

TYPED_TEST(ConverterServiceV2Envelope, isAnObject)
{
    for (const char* text : {"null", "[]", "5", "\"text\"", "[{\"result\": {}}]"})
        EXPECT_EQ(errorOf<TypeParam>(withBody(text)), "Invalid response format") << text;
}

TYPED_TEST(ConverterServiceV2Envelope, givesTheMessageOfTheService)
{
    EXPECT_EQ(errorOf<TypeParam>(withBody(R"({"result": null, "error": {"message": "x"}})")), "x");
    EXPECT_EQ(errorOf<TypeParam>(withBody(R"({"error": {"message": "", "code": 5}})")), "");
}

TYPED_TEST(ConverterServiceV2Envelope, holdsAResultOrAMessage)
{
    for (const char* text :
         {R"({"result": null})", "{}", R"({"error": "x"})", R"({"error": {}})", R"({"error": {"message": 5}})",
          R"({"error": {"message": null}})", R"({"error": [{"message": "x"}]})"})
        EXPECT_EQ(errorOf<TypeParam>(withBody(text)), "Invalid response format") << text;
}

TYPED_TEST(ConverterServiceV2Envelope, countsForEveryStatus)
{
    const std::string text = R"({"result": {"state": "in_progress", "request_id": "i", "url": "u"}, "error": null})";
    for (const int code : {200, 302, 404, 500, -1})
        EXPECT_EQ(errorOf<TypeParam>(makeAnswer(code, text)), "no error") << code;
}

TEST(RequestConvertContextResult, holdsTheIdAndTheUrl)
{
    const auto result = RequestConvertContextResult::parseResponse(
        withBody(R"({"result": {"request_id": "id", "url": "https://storage.example.com/x?y=z", "more": 1}})"));
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->requestId, "id");
    EXPECT_EQ(result->url, "https://storage.example.com/x?y=z");
}

TEST(RequestConvertContextResult, isAnObject)
{
    for (const char* text : {R"({"result": "x"})", R"({"result": []})", R"({"result": 5})", R"({"result": false})"})
        EXPECT_EQ(errorOf<RequestConvertContextResult>(withBody(text)), "Invalid response format") << text;
}

TEST(RequestConvertContextResult, needsTheIdBeforeTheUrl)
{
    for (const char* text : {R"({"result": {}})", R"({"result": {"url": "u"}})",
                             R"({"result": {"request_id": 5, "url": "u"}})", R"({"result": {"request_id": null}})"})
        EXPECT_EQ(errorOf<RequestConvertContextResult>(withBody(text)), "\"request_id\" field is missing") << text;
}

TEST(RequestConvertContextResult, needsTheUrl)
{
    for (const char* text : {R"({"result": {"request_id": "i"}})", R"({"result": {"request_id": "i", "url": {}}})"})
        EXPECT_EQ(errorOf<RequestConvertContextResult>(withBody(text)), "\"url\" field is missing") << text;
}

TEST(StartConvertResult, isThereWhateverTheResult)
{
    for (const char* text :
         {R"({"result": {}})", R"({"result": "x"})", R"({"result": []})", R"({"result": 0})", R"({"result": false})"})
        EXPECT_TRUE(StartConvertResult::parseResponse(withBody(text))) << text;
}

TEST(CheckConvertStatusResult, numbersItsStates)
{
    EXPECT_EQ(static_cast<int>(CheckConvertStatusResult::State::NotStarted), 1);
    EXPECT_EQ(static_cast<int>(CheckConvertStatusResult::State::InProgress), 2);
    EXPECT_EQ(static_cast<int>(CheckConvertStatusResult::State::Finished), 3);
}

TEST(CheckConvertStatusResult, needsNoUrlBeforeTheEnd)
{
    using State = CheckConvertStatusResult::State;
    for (const auto& [text, state] : {std::pair("not_started", State::NotStarted), {"in_progress", State::InProgress}})
    {
        const auto result =
            CheckConvertStatusResult::parseResponse(withBody(R"({"result": {"state": ")" + std::string(text) + "\"}}"));
        ASSERT_TRUE(result) << result.error();
        EXPECT_EQ(result->state, state);
        EXPECT_EQ(result->url, std::nullopt);
    }
}

TEST(CheckConvertStatusResult, takesAUrlInAnyState)
{
    const auto result =
        CheckConvertStatusResult::parseResponse(withBody(R"({"result": {"state": "in_progress", "url": "u"}})"));
    EXPECT_EQ(result.value().url, "u");
}

TEST(CheckConvertStatusResult, ignoresAUrlThatIsNoTextBeforeTheEnd)
{
    const auto result =
        CheckConvertStatusResult::parseResponse(withBody(R"({"result": {"state": "in_progress", "url": 5}})"));
    EXPECT_EQ(result.value().url, std::nullopt);
}

TEST(CheckConvertStatusResult, hasTheUrlAtTheEnd)
{
    const auto result =
        CheckConvertStatusResult::parseResponse(withBody(R"({"result": {"state": "finished", "url": "u"}})"));
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->state, CheckConvertStatusResult::State::Finished);
    EXPECT_EQ(result->url, "u");
}

TEST(CheckConvertStatusResult, needsTheUrlAtTheEnd)
{
    for (const char* text :
         {R"({"result": {"state": "finished"}})", R"({"result": {"state": "finished", "url": null}})",
          R"({"result": {"state": "finished", "url": 5}})"})
        EXPECT_EQ(errorOf<CheckConvertStatusResult>(withBody(text)), "\"url\" field is missing") << text;
}

TEST(CheckConvertStatusResult, needsTheState)
{
    for (const char* text : {R"({"result": {}})", R"({"result": {"state": 2}})", R"({"result": {"state": null}})",
                             R"({"result": "finished"})", R"({"result": ["finished"]})", R"({"result": 3})"})
        EXPECT_EQ(errorOf<CheckConvertStatusResult>(withBody(text)), "\"state\" field is missing") << text;
}

TEST(CheckConvertStatusResult, namesAStateThatItDoesNotKnow)
{
    EXPECT_EQ(errorOf<CheckConvertStatusResult>(withBody(R"({"result": {"state": "paused", "url": "u"}})")),
              "Unknown state: paused");
    EXPECT_EQ(errorOf<CheckConvertStatusResult>(withBody(R"({"result": {"state": "Finished"}})")),
              "Unknown state: Finished");
    EXPECT_EQ(errorOf<CheckConvertStatusResult>(withBody(R"({"result": {"state": ""}})")), "Unknown state: ");
}

} // namespace

} // namespace VX::ConverterService::V2
