#include <VXViewer/WebRequest.h>

#include <gtest/gtest.h>
#include <json/value.h>

namespace VX::Test
{

namespace
{

Json::Value answer(const Json::Value& code, const Json::Value& text, const Json::Value& error = {})
{
    Json::Value value(Json::objectValue);
    value["code"] = code;
    value["text"] = text;
    if (!error.isNull())
        value["error"] = error;
    return value;
}

/// The error that an answer stands for; "success" for one that is none.
std::string errorOf(const Json::Value& value)
{
    const auto parsed = parseResponse(value);
    return parsed ? "success" : parsed.error();
}

} // namespace

TEST(ParseResponse, GivesTheBodyOfASuccess)
{
    const auto parsed = parseResponse(answer(200, R"({"a": [1, 2]})"));
    ASSERT_TRUE(parsed);
    EXPECT_EQ((*parsed)["a"][1].asInt(), 2);
}

TEST(ParseResponse, AnEmptyBodyOfASuccessIsNull)
{
    const auto parsed = parseResponse(answer(204, ""));
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(parsed->isNull());
}

TEST(ParseResponse, WithoutAnAnswerItGivesTheError)
{
    EXPECT_EQ(errorOf(answer(0, {}, "no route")), "no route");
    EXPECT_EQ(errorOf(answer(0, "{}", "no route")), "no route");
    EXPECT_EQ(errorOf(answer(0, "{}")), "Connection error");
    EXPECT_EQ(errorOf(answer(0, "{}", "")), "Connection error");
}

TEST(ParseResponse, ACodeThatIsNoIntegerCountsAsZero)
{
    EXPECT_EQ(errorOf(answer("200", "{}")), "Connection error");
    EXPECT_EQ(errorOf(answer({}, "{}")), "Connection error");
    EXPECT_EQ(errorOf(answer(1e30, "{}")), "Connection error");
    EXPECT_EQ(errorOf(Json::Value(Json::objectValue)), "Connection error");
}

TEST(ParseResponse, AnAnswerThatIsNoObjectIsNone)
{
    EXPECT_EQ(errorOf(Json::Value()), "Connection error");
    EXPECT_EQ(errorOf("text"), "Connection error");
    EXPECT_EQ(errorOf(Json::Value(Json::arrayValue)), "Connection error");
}

TEST(ParseResponse, ATextThatIsNoStringGivesTheError)
{
    EXPECT_EQ(errorOf(answer(200, 7, "odd")), "odd");
    EXPECT_EQ(errorOf(answer(200, {})), "HTTP 200");
}

TEST(ParseResponse, ASuccessThatIsNotJsonGivesTheParsersText)
{
    EXPECT_TRUE(errorOf(answer(200, "<html>")).starts_with("Invalid JSON: line 1, column 1: "))
        << errorOf(answer(200, "<html>"));
}

TEST(ParseResponse, AFailureThatIsNotJsonGivesTheErrorOrTheStatus)
{
    EXPECT_EQ(errorOf(answer(502, "<html>", "HTTP 502: Bad Gateway")), "HTTP 502: Bad Gateway");
    EXPECT_EQ(errorOf(answer(502, "<html>")), "HTTP 502");
    EXPECT_EQ(errorOf(answer(502, "")), "HTTP 502");
}

TEST(ParseResponse, GivesTheMessageOfTheServiceUnchanged)
{
    EXPECT_EQ(errorOf(answer(400, R"({"__type":"NotAuthorizedException","message":"Refresh Token has expired"})",
                             "HTTP 400: Bad Request")),
              "Refresh Token has expired");
    EXPECT_EQ(errorOf(answer(400, R"({"message":" \u00e4 "})")), " \xC3\xA4 ");
}

TEST(ParseResponse, TakesTheMessageFromWhereTheServicePutIt)
{
    EXPECT_EQ(errorOf(answer(500, R"({"error":"plain"})")), "plain");
    EXPECT_EQ(errorOf(answer(500, R"({"error":{"message":"nested"}})")), "nested");
    EXPECT_EQ(errorOf(answer(500, R"({"message":7,"error":"plain"})")), "plain");
}

TEST(ParseResponse, AFailureWithoutAMessageGivesTheStatus)
{
    for (const char* text : {"{}", "[]", "7", "null", R"("message")", R"({"error":{"message":7}})", R"({"error":[1]})"})
        EXPECT_EQ(errorOf(answer(404, text, "HTTP 404: Not Found")), "HTTP 404") << text;
}

TEST(ParseResponse, TakesBytesThatAreNoUtf8)
{
    const auto parsed = parseResponse(answer(200, "\"\xFF\xFE\""));
    EXPECT_TRUE(!parsed || parsed->isString());
    EXPECT_EQ(errorOf(answer(500, std::string("\xFF\0{", 3))), "HTTP 500");
}

TEST(ParseResponse, TakesJsonThatIsNestedTooDeep)
{
    EXPECT_NE(errorOf(answer(200, std::string(100'000, '['))), "success");
}

} // namespace VX::Test
