#include "RpcMessage.h"

#include <gtest/gtest.h>

#include <string>

namespace VX::Mcp
{

namespace
{

/// The code of the refusal of `text`; 0 for none.
int codeOf(const char* text)
{
    const auto message = parseRpcMessage(text);
    return message ? 0 : static_cast<int>(message.error().error.code);
}

} // namespace

TEST(RpcMessage, ReadsARequest)
{
    const auto message = parseRpcMessage(R"({"jsonrpc": "2.0", "id": "a", "method": "m", "params": {"x": 1}})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->kind, RpcMessage::Kind::Request);
    EXPECT_EQ(message->id, "a");
    EXPECT_EQ(message->method, "m");
    EXPECT_EQ(message->params["x"], 1);
}

TEST(RpcMessage, WithoutIdItIsANotification)
{
    const auto message = parseRpcMessage(R"({"jsonrpc": "2.0", "method": "m"})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->kind, RpcMessage::Kind::Notification);
    EXPECT_TRUE(message->params.isObject());
}

TEST(RpcMessage, WithoutMethodItIsAResponse)
{
    const auto message = parseRpcMessage(R"({"jsonrpc": "2.0", "id": 7, "error": {"code": 1, "message": "no"}})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->kind, RpcMessage::Kind::Response);
    EXPECT_EQ(message->error["message"], "no");
}

TEST(RpcMessage, RefusesWhatIsNoJson)
{
    for (const char* text : {"", "{", "nonsense", "{} {}"})
        EXPECT_EQ(codeOf(text), -32700) << text;
}

TEST(RpcMessage, RefusesWhatIsNoMessage)
{
    for (const char* text :
         {"1", "null", "[]", R"([{"jsonrpc": "2.0", "id": 1, "method": "m"}])", R"({"id": 1, "method": "m"})",
          R"({"jsonrpc": "1.0", "id": 1, "method": "m"})", R"({"jsonrpc": "2.0", "id": null, "method": "m"})",
          R"({"jsonrpc": "2.0", "id": 1.5, "method": "m"})", R"({"jsonrpc": "2.0", "id": true, "method": "m"})",
          R"({"jsonrpc": "2.0", "id": {}, "method": "m"})", R"({"jsonrpc": "2.0", "id": 1, "method": 2})",
          R"({"jsonrpc": "2.0", "id": 1})", R"({"jsonrpc": "2.0", "id": 1, "result": {}, "error": {}})"})
        EXPECT_EQ(codeOf(text), -32600) << text;
}

TEST(RpcMessage, RefusesParamsThatAreNoObject)
{
    EXPECT_EQ(codeOf(R"({"jsonrpc": "2.0", "id": 1, "method": "m", "params": [1]})"), -32602);
}

TEST(RpcMessage, ARefusalKnowsTheIdWhereThereIsOne)
{
    EXPECT_EQ(parseRpcMessage(R"({"jsonrpc": "1.0", "id": 5, "method": "m"})").error().id, 5);
    EXPECT_TRUE(parseRpcMessage("[]").error().id.isNull());
}

TEST(RpcMessage, AnAnswerWithoutIdLeavesItOut)
{
    EXPECT_FALSE(makeRpcError({}, {.message = "x"}).isMember("id"));
    EXPECT_EQ(makeRpcError(3, {.message = "x"})["id"], 3);
}

} // namespace VX::Mcp
