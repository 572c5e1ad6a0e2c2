#include "McpFixture.h"
#include "Secrets.h"

#include <gmock/gmock.h>

namespace VX::Test
{

namespace
{

using Mcp::Inquiry;
using Mcp::ToolCall;
using Mcp::ToolResult;

/// A tool that asks for a name and greets.
class InquiryTests : public McpFixture
{
public:
    void SetUp() override
    {
        McpFixture::SetUp();
        addTool("greet",
                [](ToolCall& call) -> ToolResult
                {
                    if (call.inputResponses().isObject())
                        return {.content = {{.text = "Hello " + call.inputResponses()["who"]["name"].asString() +
                                                     call.requestState()}}};
                    Inquiry inquiry{.state = "!"};
                    inquiry.requests["who"] = object("method", "elicitation/create");
                    return {.inquiry = std::move(inquiry)};
                });
    }

    static Json::Value greet(Json::Value capabilities)
    {
        Json::Value out = object("name", "greet");
        out["_meta"]["io.modelcontextprotocol/clientCapabilities"] = std::move(capabilities);
        return out;
    }

    static Json::Value canElicit() { return object("elicitation", Json::objectValue); }
};

} // namespace

TEST(StateSeal, OpensWhatItHasClosed)
{
    const Mcp::StateSeal seal;
    EXPECT_EQ(seal.open("a", seal.close("a", "state")), "state");
}

TEST(StateSeal, RefusesWhatIsOfAnotherPurposeOrChanged)
{
    const Mcp::StateSeal seal;
    std::string closed = seal.close("a", "state");
    EXPECT_FALSE(seal.open("b", closed));
    EXPECT_FALSE(Mcp::StateSeal().open("a", closed));
    closed[closed.size() - 5] = closed[closed.size() - 5] == 'A' ? 'B' : 'A';
    EXPECT_FALSE(seal.open("a", closed));
    EXPECT_FALSE(seal.open("a", "nonsense"));
    EXPECT_FALSE(seal.open("a", ""));
}

TEST_F(InquiryTests, AModernClientRepeatsItsCallWithTheAnswers)
{
    const Json::Value asked = modern("tools/call", greet(canElicit())).json["result"];
    EXPECT_EQ(asked["resultType"], "input_required");
    EXPECT_EQ(asked["inputRequests"]["who"]["method"], "elicitation/create");

    Json::Value again = greet(canElicit());
    again["requestState"] = asked["requestState"];
    again["inputResponses"]["who"]["name"] = "Ada";
    EXPECT_EQ(modern("tools/call", again).text(), "Hello Ada!");
}

TEST_F(InquiryTests, AStateThatWasChangedIsRefused)
{
    Json::Value again = greet(canElicit());
    again["requestState"] = "AAAA";
    again["inputResponses"]["who"]["name"] = "Ada";
    EXPECT_EQ(modern("tools/call", again).error(), -32602);
}

TEST_F(InquiryTests, ResponsesThatAreNoneAreRefused)
{
    for (const Json::Value& responses : {Json::Value(), Json::Value(1), object("who", 12)})
    {
        Json::Value again = greet(canElicit());
        again["inputResponses"] = responses;
        EXPECT_EQ(modern("tools/call", again).error(), -32602);
    }
}

TEST_F(InquiryTests, AClientThatCannotAnswerIsToldWhatItLacks)
{
    const auto answer = modern("tools/call", greet(Json::objectValue));
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.error(), -32021);
    EXPECT_TRUE(answer.json["error"]["data"]["requiredCapabilities"].isMember("elicitation"));
}

TEST_F(InquiryTests, AnOlderClientIsAskedOnTheStreamOfItsCall)
{
    const std::string session = initialize(canElicit());
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "greet"), session));
    const Json::Value question = nextEvent(socket);
    EXPECT_EQ(question["method"], "elicitation/create");

    const std::string id = question["id"].asString();
    const std::string body = R"({"jsonrpc":"2.0","id":")" + id + R"(","result":{"name":"Ada"}})";
    EXPECT_EQ(send("POST", {{"Content-Type", "application/json"}, {"Mcp-Session-Id", session}}, body).status, 202);
    EXPECT_EQ(nextEvent(socket)["result"]["content"][0]["text"], "Hello Ada!");
}

TEST_F(InquiryTests, AnAnswerFromAnotherSessionDoesNotCount)
{
    const std::string session = initialize(canElicit());
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "greet"), session));
    const std::string id = nextEvent(socket)["id"].asString();
    const auto answer = [&](const std::string& from, const char* name)
    {
        send("POST", {{"Content-Type", "application/json"}, {"Mcp-Session-Id", from}},
             R"({"jsonrpc":"2.0","id":")" + id + R"(","result":{"name":")" + name + R"("}})");
    };
    answer(initialize(canElicit()), "Eve");
    answer(session, "Ada");
    EXPECT_EQ(nextEvent(socket)["result"]["content"][0]["text"], "Hello Ada!");
}

TEST_F(InquiryTests, ARefusalOfTheClientFailsTheCall)
{
    const std::string session = initialize(canElicit());
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "greet"), session));
    const std::string id = nextEvent(socket)["id"].asString();
    send("POST", {{"Content-Type", "application/json"}, {"Mcp-Session-Id", session}},
         R"({"jsonrpc":"2.0","id":")" + id + R"(","error":{"code":-1,"message":"no user"}})");
    const Json::Value result = nextEvent(socket)["result"];
    EXPECT_TRUE(result["isError"].asBool());
    EXPECT_THAT(result["content"][0]["text"].asString(), testing::HasSubstr("no user"));
}

TEST_F(InquiryTests, AnOlderClientThatCannotAnswerGetsAFailure)
{
    const auto answer = legacy("tools/call", object("name", "greet"), initialize());
    EXPECT_TRUE(answer.json["result"]["isError"].asBool());
}

} // namespace VX::Test
