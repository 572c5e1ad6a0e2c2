#include "McpFixture.h"

#include <gmock/gmock.h>

#include <future>

namespace VX::Test
{

namespace
{

using LegacySessionTests = McpFixture;
using testing::HasSubstr;

Json::Value beginning(const char* version)
{
    return object("protocolVersion", version);
}

} // namespace

TEST_F(LegacySessionTests, BeginsWithInitialize)
{
    server.setInfo("tested", "1.2", "Read this.");
    const auto answer = legacy("initialize", beginning("2025-11-25"));
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.head, HasSubstr("Mcp-Session-Id: "));
    EXPECT_EQ(answer.json["result"]["protocolVersion"], "2025-11-25");
    EXPECT_EQ(answer.json["result"]["serverInfo"]["version"], "1.2");
    EXPECT_EQ(answer.json["result"]["instructions"], "Read this.");
    EXPECT_FALSE(answer.json["result"].isMember("resultType"));
}

TEST_F(LegacySessionTests, AgreesOnAVersionThatBothSpeak)
{
    EXPECT_EQ(legacy("initialize", beginning("2025-06-18")).json["result"]["protocolVersion"], "2025-06-18");
    EXPECT_EQ(legacy("initialize", beginning("2024-01-01")).json["result"]["protocolVersion"], "2025-11-25");
    EXPECT_EQ(legacy("initialize").error(), -32602);
}

TEST_F(LegacySessionTests, AnInitializeAfterADiscoverIsTaken)
{
    const auto answer =
        send("POST", {{"Content-Type", "application/json"}, {"MCP-Protocol-Version", "2026-07-28"}},
             R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-11-25"}})");
    EXPECT_EQ(answer.json["result"]["protocolVersion"], "2025-11-25");
}

TEST_F(LegacySessionTests, PingIsAnsweredEmpty)
{
    EXPECT_EQ(legacy("ping", Json::objectValue, initialize()).json["result"], Json::Value(Json::objectValue));
}

TEST_F(LegacySessionTests, TheSessionMayBeLeftOut)
{
    EXPECT_EQ(legacy("tools/list").status, 200);
}

TEST_F(LegacySessionTests, EndsWithDelete)
{
    const std::string session = initialize();
    EXPECT_EQ(legacy("tools/list", Json::objectValue, session).status, 200);
    EXPECT_EQ(send("DELETE", {{"Mcp-Session-Id", session}}).status, 204);
    EXPECT_EQ(legacy("tools/list", Json::objectValue, session).status, 404);
    EXPECT_EQ(send("DELETE", {{"Mcp-Session-Id", session}}).status, 404);
    EXPECT_EQ(send("GET", {{"Mcp-Session-Id", session}, {"Accept", "text/event-stream"}}).status, 404);
}

TEST_F(LegacySessionTests, ABadVersionHeaderIsRefused)
{
    const auto answer = send("POST", {{"Content-Type", "application/json"}, {"MCP-Protocol-Version", "1999-01-01"}},
                             R"({"jsonrpc":"2.0","id":1,"method":"tools/list"})");
    EXPECT_EQ(answer.status, 400);
}

TEST_F(LegacySessionTests, AnUnknownMethodIsAnErrorOfTheProtocol)
{
    const auto answer = legacy("server/nonsense");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.error(), -32601);
}

TEST_F(LegacySessionTests, NotificationsAndAnswersAreAcceptedWithoutABody)
{
    const auto answer = legacy("notifications/initialized", Json::objectValue, initialize());
    EXPECT_EQ(answer.status, 202);
    EXPECT_EQ(answer.body, "");
    EXPECT_EQ(
        send("POST", {{"Content-Type", "application/json"}}, R"({"jsonrpc":"2.0","id":"unknown","result":{}})").status,
        202);
}

TEST_F(LegacySessionTests, ACancelledNotificationCancels)
{
    std::promise<std::shared_ptr<Mcp::ToolCall>> started;
    server.addTool({.name = "long",
                    .run = [&](std::shared_ptr<Mcp::ToolCall> call, const Mcp::Tool::Answer& answer)
                    {
                        call->onCanceled([answer] { answer(Mcp::ToolResult::error("cancelled")); });
                        started.set_value(std::move(call));
                    }});
    const std::string session = initialize();
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "long"), session, 42));
    const auto call = started.get_future().get();
    legacy("notifications/cancelled", object("requestId", 42));
    EXPECT_FALSE(call->isCanceled()) << "cancelled from outside the session";
    legacy("notifications/cancelled", object("requestId", 42), session);
    EXPECT_TRUE(call->isCanceled());
    EXPECT_THAT(socket.receiveAnswer(), HasSubstr("cancelled"));
}

TEST_F(LegacySessionTests, ToLeaveIsNotToCancel)
{
    std::promise<std::shared_ptr<Mcp::ToolCall>> started;
    std::promise<Mcp::Tool::Answer> answer;
    server.addTool({.name = "long",
                    .run = [&](std::shared_ptr<Mcp::ToolCall> call, Mcp::Tool::Answer give)
                    {
                        answer.set_value(std::move(give));
                        started.set_value(std::move(call));
                    }});
    {
        auto socket = connect();
        socket.send(legacyBytes("tools/call", object("name", "long"), initialize(), 42));
        started.get_future().wait();
    }
    legacy("ping");
    answer.get_future().get()(Mcp::ToolResult::of(object("done", true)));
    EXPECT_FALSE(server.status().lastCalls.front().failed);
}

TEST_F(LegacySessionTests, LogMessagesComeFromTheWantedLevelOn)
{
    addTool("talk",
            [](Mcp::ToolCall& call)
            {
                call.log("info", "quiet");
                call.log("error", "loud");
                return Mcp::ToolResult{};
            });
    const std::string session = initialize();
    EXPECT_EQ(legacy("logging/setLevel", object("level", "nonsense"), session).error(), -32602);
    legacy("logging/setLevel", object("level", "warning"), session);
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "talk"), session));
    const Json::Value event = nextEvent(socket);
    EXPECT_EQ(event["method"], "notifications/message");
    EXPECT_EQ(event["params"]["data"], "loud");
    EXPECT_TRUE(nextEvent(socket).isMember("result"));
}

} // namespace VX::Test
