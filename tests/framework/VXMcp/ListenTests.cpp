#include "McpFixture.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>

namespace VX::Test
{

namespace
{

using ListenTests = McpFixture;

constexpr const char* idKey = "io.modelcontextprotocol/subscriptionId";

Json::Value wanted(const char* flag)
{
    return object("notifications", object(flag, true));
}

} // namespace

TEST_F(ListenTests, SaysFirstWhatItWillTell)
{
    auto socket = connect();
    Json::Value params = wanted("toolsListChanged");
    params["notifications"]["nonsense"] = true;
    params["notifications"]["resourceSubscriptions"].append("x://a");
    socket.send(modernBytes("subscriptions/listen", params));
    const Json::Value first = nextEvent(socket);
    EXPECT_EQ(first["method"], "notifications/subscriptions/acknowledged");
    EXPECT_EQ(first["params"]["_meta"][idKey], 1);
    EXPECT_TRUE(first["params"]["notifications"]["toolsListChanged"].asBool());
    EXPECT_EQ(first["params"]["notifications"]["resourceSubscriptions"][0], "x://a");
    EXPECT_FALSE(first["params"]["notifications"].isMember("nonsense"));
}

TEST_F(ListenTests, TellsOnlyWhatWasAskedFor)
{
    auto socket = connect();
    socket.send(modernBytes("subscriptions/listen", wanted("promptsListChanged")));
    nextEvent(socket);
    addTool("new", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    server.resourceChanged("x://a");
    server.addPrompt({.name = "new"});
    const Json::Value change = nextEvent(socket);
    EXPECT_EQ(change["method"], "notifications/prompts/list_changed");
    EXPECT_EQ(change["params"]["_meta"][idKey], 1);
}

TEST_F(ListenTests, TellsOfTheResourcesThatWereNamed)
{
    auto socket = connect();
    Json::Value params = object("notifications", Json::objectValue);
    params["notifications"]["resourceSubscriptions"].append("x://b");
    socket.send(modernBytes("subscriptions/listen", params));
    nextEvent(socket);
    server.resourceChanged("x://a");
    server.resourceChanged("x://b");
    const Json::Value change = nextEvent(socket);
    EXPECT_EQ(change["method"], "notifications/resources/updated");
    EXPECT_EQ(change["params"]["uri"], "x://b");
}

TEST_F(ListenTests, WithoutAStreamOrAFilterItIsRefused)
{
    EXPECT_EQ(modern("subscriptions/listen", Json::objectValue).error(), -32602);
    EXPECT_EQ(modern("subscriptions/listen", wanted("toolsListChanged"), {{"Accept", "application/json"}}).error(),
              -32602);
}

TEST_F(ListenTests, ASessionListensWithGet)
{
    server.addResource({.uri = "x://a", .mimeType = "text/plain"});
    const std::string session = initialize();
    auto socket = connect();
    socket.send("GET /mcp HTTP/1.1\r\nHost: localhost\r\nAccept: text/event-stream\r\nMcp-Session-Id: " + session +
                "\r\n\r\n");
    EXPECT_THAT(socket.receiveUntil("\r\n\r\n"), testing::HasSubstr("text/event-stream"));
    addTool("new", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    EXPECT_EQ(nextEvent(socket)["method"], "notifications/tools/list_changed");

    server.resourceChanged("x://a");
    legacy("resources/subscribe", object("uri", "x://a"), session);
    server.resourceChanged("x://a");
    EXPECT_EQ(nextEvent(socket)["params"]["uri"], "x://a");
    legacy("resources/unsubscribe", object("uri", "x://a"), session);
    server.resourceChanged("x://a");
    server.addPrompt({.name = "new"});
    EXPECT_EQ(nextEvent(socket)["method"], "notifications/prompts/list_changed");
}

TEST_F(ListenTests, TheStreamEndsWithItsSession)
{
    const std::string session = initialize();
    auto socket = connect();
    socket.send("GET /mcp HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\nAccept: text/event-stream\r\n"
                "Mcp-Session-Id: " +
                session + "\r\n\r\n");
    socket.receiveUntil("\r\n\r\n");
    send("DELETE", {{"Mcp-Session-Id", session}});
    EXPECT_EQ(socket.receiveAll(), "0\r\n\r\n");
}

TEST_F(ListenTests, AListenerThatLeavesFreesItsConnection)
{
    {
        auto socket = connect();
        socket.send(modernBytes("subscriptions/listen", wanted("toolsListChanged")));
        nextEvent(socket);
        EXPECT_EQ(server.status().clients, 1U);
    }
    EXPECT_TRUE(waitUntil([&] { return server.status().clients == 0; }));
}

} // namespace VX::Test
