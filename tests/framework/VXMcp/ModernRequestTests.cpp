#include "ModernRequest.h"

#include "McpFixture.h"

#include <gmock/gmock.h>

namespace VX::Test
{

namespace
{

using ModernRequestTests = McpFixture;
using testing::HasSubstr;

constexpr const char* versionKey = "io.modelcontextprotocol/protocolVersion";
constexpr const char* capabilitiesKey = "io.modelcontextprotocol/clientCapabilities";

Json::Value meta(const char* key, Json::Value value)
{
    return object("_meta", object(key, std::move(value)));
}

} // namespace

TEST(DecodeHeader, LeavesPlainTextAndDecodesBase64)
{
    EXPECT_EQ(Mcp::decodeHeader("scene.list"), "scene.list");
    EXPECT_EQ(Mcp::decodeHeader("=?base64?w6Q=?="), "\xC3\xA4");
    EXPECT_FALSE(Mcp::decodeHeader("=?base64?!?="));
}

TEST_F(ModernRequestTests, DiscoverSaysWhatTheServerSpeaksAndOffers)
{
    server.setInfo("tested", "1.2", "Read this.");
    const auto answer = modern("server/discover", Json::objectValue);
    const Json::Value& result = answer.json["result"];
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(result["supportedVersions"][0], "2026-07-28");
    EXPECT_EQ(result["instructions"], "Read this.");
    EXPECT_EQ(result["resultType"], "complete");
    EXPECT_EQ(result["cacheScope"], "public");
    EXPECT_GE(result["ttlMs"].asInt(), 0);
    EXPECT_TRUE(result["capabilities"].isMember("tools"));
    EXPECT_EQ(result["_meta"]["io.modelcontextprotocol/serverInfo"]["name"], "tested");
}

TEST_F(ModernRequestTests, WithoutItsMetaItIsRefused)
{
    EXPECT_EQ(modern("server/discover", meta(versionKey, Json::nullValue)).error(), -32602);
    const auto answer = modern("tools/list", meta(capabilitiesKey, Json::nullValue));
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.error(), -32602);
}

TEST_F(ModernRequestTests, TheHeaderAloneMakesItModern)
{
    const auto answer = send("POST", {{"Content-Type", "application/json"}, {"MCP-Protocol-Version", "2026-07-28"}},
                             R"({"jsonrpc":"2.0","id":1,"method":"tools/list","params":{}})");
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.error(), -32602);
}

TEST_F(ModernRequestTests, ADifferentHeaderIsRefused)
{
    for (const Headers& headers :
         {Headers{{"MCP-Protocol-Version", "2025-11-25"}}, Headers{{"MCP-Protocol-Version", ""}},
          Headers{{"Mcp-Method", "tools/call"}}, Headers{{"Mcp-Method", "TOOLS/LIST"}}, Headers{{"Mcp-Method", ""}}})
    {
        const auto answer = modern("tools/list", Json::objectValue, headers);
        EXPECT_EQ(answer.status, 400);
        EXPECT_EQ(answer.error(), -32020);
        EXPECT_EQ(answer.json["id"], 1);
    }
}

TEST_F(ModernRequestTests, TheNameMustBeInItsHeader)
{
    addTool("\xC3\xA4", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    const Json::Value params = object("name", "\xC3\xA4");
    EXPECT_EQ(modern("tools/call", params, {{"Mcp-Name", ""}}).error(), -32020);
    EXPECT_EQ(modern("tools/call", params, {{"Mcp-Name", "a"}}).error(), -32020);
    EXPECT_EQ(modern("tools/call", params, {{"Mcp-Name", "=?base64?!?="}}).error(), -32020);
    EXPECT_EQ(modern("tools/call", params, {{"Mcp-Name", "  =?base64?w6Q=?=  "}}).error(), 0);
}

TEST_F(ModernRequestTests, AnUnknownVersionIsToldTheKnownOnes)
{
    const auto answer = modern("tools/list", meta(versionKey, "1999-01-01"), {{"MCP-Protocol-Version", "1999-01-01"}});
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.error(), -32022);
    EXPECT_EQ(answer.json["error"]["data"]["requested"], "1999-01-01");
    EXPECT_EQ(answer.json["error"]["data"]["supported"][0], "2026-07-28");
}

TEST_F(ModernRequestTests, MethodsOfTheOlderRevisionsAreUnknown)
{
    for (const char* method :
         {"initialize", "ping", "logging/setLevel", "resources/subscribe", "resources/unsubscribe", "nonsense/method"})
    {
        const auto answer = modern(method, Json::objectValue);
        EXPECT_EQ(answer.status, 404) << method;
        EXPECT_EQ(answer.error(), -32601) << method;
    }
}

TEST_F(ModernRequestTests, ANotificationIsAcceptedWithoutABody)
{
    const auto answer = modern("notifications/cancelled", object("requestId", 1));
    EXPECT_EQ(answer.status, 202);
    EXPECT_EQ(answer.body, "");
}

TEST_F(ModernRequestTests, GetAndDeleteAreNotAllowed)
{
    for (const char* method : {"GET", "DELETE", "PUT"})
    {
        const auto answer = send(method, {{"MCP-Protocol-Version", "2026-07-28"}, {"Accept", "text/event-stream"}});
        EXPECT_EQ(answer.status, 405) << method;
        EXPECT_THAT(answer.head, HasSubstr("Allow: "));
    }
}

} // namespace VX::Test
