#include "launcher/McpBridge.h"

#include "tests/support/RawSocket.h"

#include <VXMcp/Server.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

namespace VX
{

namespace
{

using testing::HasSubstr;
using namespace std::chrono_literals;

constexpr const char* initialize =
    R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-11-25","capabilities":{},)"
    R"("clientInfo":{"name":"tester","version":"1"}}})";

/// A bridge to one of two servers.
class McpBridgeTest : public testing::Test
{
protected:
    McpBridgeTest()
    {
        EXPECT_TRUE(first_.start({.port = 0}));
        EXPECT_TRUE(second_.start({.port = 0}));
        port_ = first_.port();
    }

    /// What comes back for a message.
    std::string answerTo_(const std::string& line)
    {
        last_.clear();
        bridge_.handle(line);
        bridge_.finish(10s);
        return last_;
    }

    Mcp::Server first_;
    Mcp::Server second_;
    std::optional<std::uint16_t> port_;
    std::string last_;
    McpBridge bridge_{[this] { return port_; }, [this](const std::string& line) { last_ = line; }, {}};
};

TEST_F(McpBridgeTest, PassesMessagesOn)
{
    EXPECT_THAT(answerTo_(initialize), HasSubstr(R"("protocolVersion":"2025-11-25")"));
    EXPECT_EQ(answerTo_(R"({"jsonrpc":"2.0","method":"notifications/initialized"})"), "");
    EXPECT_THAT(answerTo_(R"({"jsonrpc":"2.0","id":2,"method":"tools/list"})"), HasSubstr(R"("tools":[])"));
}

TEST_F(McpBridgeTest, BeginsTheSessionAgainWhereAnotherProgramServes)
{
    second_.addTool({.name = "who.calls", .run = [](const auto&, const Mcp::Tool::Answer& answer) { answer({}); }});
    answerTo_(initialize);
    port_ = second_.port();
    EXPECT_THAT(
        answerTo_(R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"who.calls","arguments":{}}})"),
        HasSubstr(R"("id":2,"jsonrpc":"2.0","result")"));
    EXPECT_EQ(second_.status().lastCalls.front().client, "tester");
}

TEST_F(McpBridgeTest, SaysThatNoProgramRuns)
{
    port_ = std::nullopt;
    EXPECT_THAT(answerTo_(R"({"jsonrpc":"2.0","id":2,"method":"ping"})"), HasSubstr("Quorvix is not running"));
}

TEST_F(McpBridgeTest, DoesNotWaitForEverUntilANotificationIsDelivered)
{
    const VX::Test::RawListener silent;
    port_ = silent.port();
    EXPECT_EQ(answerTo_(R"({"jsonrpc":"2.0","method":"notifications/initialized"})"), "");
}

} // namespace

} // namespace VX
