#include "McpFixture.h"
#include "tests/support/StartThreads.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <vector>

namespace VX::Test
{

namespace
{

using ServerTests = McpFixture;

} // namespace

TEST_F(ServerTests, SaysWhereItIs)
{
    EXPECT_TRUE(server.isRunning());
    EXPECT_EQ(server.status().address, "http://127.0.0.1:" + std::to_string(server.port()) + "/mcp");
    server.stop();
    EXPECT_FALSE(server.isRunning());
    EXPECT_EQ(server.port(), 0);
    EXPECT_FALSE(server.status().running);
    EXPECT_EQ(server.status().address, "");
}

TEST_F(ServerTests, TakesTheNextPortWhereItMay)
{
    Mcp::Server other;
    ASSERT_TRUE(other.start({.port = server.port()}));
    EXPECT_NE(other.port(), server.port());
}

TEST_F(ServerTests, AFixedPortThatIsTakenIsAnError)
{
    Mcp::Server other;
    const auto started = other.start({.port = server.port(), .portFixed = true});
    ASSERT_FALSE(started);
    EXPECT_THAT(started.error(), testing::HasSubstr(std::to_string(server.port())));
    EXPECT_FALSE(other.isRunning());
}

TEST_F(ServerTests, CanBeStartedAgain)
{
    server.stop();
    ASSERT_TRUE(server.start({.port = 0}));
    EXPECT_EQ(legacy("ping").status, 200);
}

TEST_F(ServerTests, KnowsItsLastCallsTheNewestFirst)
{
    addTool("good", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    addTool("bad", [](Mcp::ToolCall&) { return Mcp::ToolResult::error("no"); });
    Json::Value params = object("name", "good");
    params["_meta"]["io.modelcontextprotocol/clientInfo"]["name"] = "agent";
    modern("tools/call", params);
    for (int i = 0; i < 25; ++i)
        legacy("tools/call", object("name", "bad"), initialize());
    modern("tools/call", params);
    const auto calls = server.status().lastCalls;
    ASSERT_EQ(calls.size(), 20U);
    EXPECT_EQ(calls.front().tool, "good");
    EXPECT_EQ(calls.front().client, "agent");
    EXPECT_FALSE(calls.front().failed);
    EXPECT_EQ(calls.back().client, "tester");
    EXPECT_TRUE(calls.back().failed);
}

TEST_F(ServerTests, TellsOfChangesOfItsStatus)
{
    std::atomic<int> changes = 0;
    addTool("good", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    const boost::signals2::scoped_connection connection = server.onStatusChanged([&] { ++changes; });
    legacy("tools/call", object("name", "good"));
    EXPECT_EQ(changes, 1);
    server.stop();
    EXPECT_EQ(changes, 2);
}

TEST_F(ServerTests, ToStopIsToCancel)
{
    std::promise<std::shared_ptr<Mcp::ToolCall>> started;
    Mcp::Tool::Answer late;
    server.addTool({.name = "long",
                    .run = [&](std::shared_ptr<Mcp::ToolCall> call, Mcp::Tool::Answer answer)
                    {
                        late = std::move(answer);
                        started.set_value(std::move(call));
                    }});
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "long"), initialize()));
    const auto call = started.get_future().get();
    server.stop();
    EXPECT_TRUE(call->isCanceled());
    EXPECT_EQ(socket.receiveAll(), "");
    late(Mcp::ToolResult{}); // a tool may notice late
}

TEST_F(ServerTests, TheAnswersOfCancelledCallsArriveBeforeItStops)
{
    std::promise<void> started;
    server.addTool({.name = "long",
                    .run = [&](const std::shared_ptr<Mcp::ToolCall>& call, const Mcp::Tool::Answer& answer)
                    {
                        call->onCanceled([answer] { answer(Mcp::ToolResult::error("closing")); });
                        started.set_value();
                    }});
    auto socket = connect();
    socket.send(legacyBytes("tools/call", object("name", "long"), initialize()));
    started.get_future().wait();
    server.stop();
    EXPECT_THAT(socket.receiveAll(), testing::HasSubstr("closing"));
}

TEST_F(ServerTests, OffersNothingOnceItIsCleared)
{
    addTool("good", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    server.addAlias("well", "good");
    server.addResource({.uri = "x://a"});
    server.addPrompt({.name = "p"});
    server.clear();
    EXPECT_EQ(legacy("tools/call", object("name", "well")).error(), -32602);
    EXPECT_EQ(legacy("resources/list").json["result"]["resources"].size(), 0U);
    EXPECT_EQ(legacy("prompts/list").json["result"]["prompts"].size(), 0U);
}

TEST_F(ServerTests, RemembersTheBeginningOfALongName)
{
    addTool("good", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    Json::Value params = object("name", "good");
    std::string name(99, 'a');
    params["_meta"]["io.modelcontextprotocol/clientInfo"]["name"] = name + "\u00e4bc";
    modern("tools/call", params);
    EXPECT_EQ(server.status().lastCalls.front().client, name);
}

TEST_F(ServerTests, AToolMayAnswerWhenTheServerIsGone)
{
    std::promise<Mcp::Tool::Answer> kept;
    auto gone = std::make_unique<Mcp::Server>();
    gone->addTool(
        {.name = "long", .run = [&](const auto&, Mcp::Tool::Answer answer) { kept.set_value(std::move(answer)); }});
    ASSERT_TRUE(gone->start({.port = 0}));
    auto socket = RawSocket::connect(gone->port());
    socket.send(legacyBytes("tools/call", object("name", "long"), {}));
    auto answer = kept.get_future().get();
    gone.reset();
    answer(Mcp::ToolResult{});
    EXPECT_EQ(socket.receiveAll(), "");
}

TEST_F(ServerTests, ManyClientsAreServedAtOnce)
{
    addTool("echo", [](Mcp::ToolCall& call) { return Mcp::ToolResult::of(call.arguments()); });
    std::atomic<int> right = 0;
    startThreads(16,
                 [&](int i)
                 {
                     for (int n = 0; n < 20; ++n)
                     {
                         Json::Value params = object("name", "echo");
                         params["arguments"]["n"] = i * 100 + n;
                         if (modern("tools/call", params).json["result"]["structuredContent"]["n"] == i * 100 + n)
                             ++right;
                     }
                 })
        .clear();
    EXPECT_EQ(right, 16 * 20);
}

TEST_F(ServerTests, AClientThatStallsHoldsUpNobody)
{
    auto half = connect();
    half.send(
        "POST /mcp HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{");
    addTool("flood",
            [](Mcp::ToolCall& call)
            {
                for (int i = 1; i < 20'000; ++i)
                    call.progress(i, 0, std::string(1000, 'x'));
                return Mcp::ToolResult::of(object("done", true));
            });
    Json::Value params = object("name", "flood");
    params["_meta"]["progressToken"] = 1;
    auto slow = connect();
    slow.send(modernBytes("tools/call", params));
    EXPECT_EQ(legacy("ping").status, 200);
    // It misses reports, and gets the result all the same.
    slow.receiveUntil("\"done\":true");
}

} // namespace VX::Test
