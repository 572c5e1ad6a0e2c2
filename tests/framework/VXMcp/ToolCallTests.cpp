#include "McpFixture.h"

#include <VXMesh/Json.h>

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <stdexcept>

namespace VX::Test
{

namespace
{

using ToolCallTests = McpFixture;
using Mcp::ToolCall;
using Mcp::ToolResult;
using testing::HasSubstr;

Json::Value call(const char* tool, Json::Value arguments = Json::objectValue)
{
    Json::Value out = object("name", tool);
    out["arguments"] = std::move(arguments);
    return out;
}

Json::Value withProgress(Json::Value params)
{
    params["_meta"]["progressToken"] = "token";
    return params;
}

} // namespace

TEST(ToolCall, CallsBackAtOnceWhereItIsCancelledAlready)
{
    ToolCall call(Json::objectValue);
    call.cancel();
    bool isCalled = false;
    call.onCanceled([&] { isCalled = true; });
    EXPECT_TRUE(isCalled);
}

TEST(ToolCall, CallsBackOnce)
{
    ToolCall call(Json::objectValue);
    int calls = 0;
    call.onCanceled([&] { ++calls; });
    call.cancel();
    call.cancel();
    EXPECT_EQ(calls, 1);
}

TEST(ToolCall, ReportsOnlyProgressThatIsOne)
{
    std::vector<double> values;
    ToolCall call(Json::objectValue, [&](double value, double, const std::string&) { values.push_back(value); });
    for (const double value : {0.0, 1.0, 1.0, 0.5, 2.0})
        call.progress(value, 2);
    EXPECT_THAT(values, testing::ElementsAre(0, 1, 2));
}

TEST_F(ToolCallTests, DecimalNumbersAreWrittenAsTheyWereMeant)
{
    addTool("numbers", [](ToolCall&) { return ToolResult::of(object("a", 0.1)); });
    EXPECT_THAT(modern("tools/call", call("numbers")).body, HasSubstr(R"("structuredContent":{"a":0.1})"));
}

TEST_F(ToolCallTests, AStructuredResultIsSentAsTextToo)
{
    addTool("echo", [](ToolCall& one) { return ToolResult::of(one.arguments()); });
    const auto answer = modern("tools/call", call("echo", object("a", 1)));
    EXPECT_EQ(answer.json["result"]["structuredContent"]["a"], 1);
    EXPECT_EQ(answer.text(), R"({"a":1})");
    EXPECT_EQ(answer.json["result"]["resultType"], "complete");
    EXPECT_FALSE(answer.json["result"].isMember("isError"));
}

TEST_F(ToolCallTests, AFailureLeavesTheStructureOut)
{
    addTool("fail",
            [](ToolCall&)
            {
                ToolResult out = ToolResult::error("The object is gone: list the scene again.");
                out.structured = object("a", 1);
                return out;
            });
    const auto answer = modern("tools/call", call("fail"));
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.json["result"]["isError"].asBool());
    EXPECT_EQ(answer.text(), "The object is gone: list the scene again.");
    EXPECT_FALSE(answer.json["result"].isMember("structuredContent"));
}

TEST_F(ToolCallTests, BytesAreSentInBase64)
{
    addTool(
        "picture", [](ToolCall&) -> ToolResult
        { return {.content = {{.type = Mcp::Content::Type::Image, .mimeType = "image/png", .data = {"\0\xFF", 2}}}}; });
    const Json::Value content = modern("tools/call", call("picture")).json["result"]["content"][0];
    EXPECT_EQ(content["type"], "image");
    EXPECT_EQ(content["data"], "AP8=");
}

TEST_F(ToolCallTests, AnUnknownToolIsAnErrorOfTheProtocol)
{
    EXPECT_EQ(modern("tools/call", call("nonsense")).error(), -32602);
    EXPECT_EQ(legacy("tools/call", call("nonsense")).error(), -32602);
}

TEST_F(ToolCallTests, ArgumentsThatDoNotFitAreToldToTheAgent)
{
    std::atomic<int> runs = 0;
    addTool(
        "strict",
        [&](ToolCall&)
        {
            ++runs;
            return ToolResult{};
        },
        *deserializeJsonValue(R"({"type": "object", "properties": {"n": {"type": "integer"}}, "required": ["n"]})"));
    const auto answer = modern("tools/call", call("strict"));
    EXPECT_TRUE(answer.json["result"]["isError"].asBool());
    EXPECT_EQ(answer.text(), "The argument \"n\" is missing.");
    EXPECT_EQ(modern("tools/call", call("strict", "text")).error(), -32602);
    EXPECT_EQ(runs, 0);
}

TEST_F(ToolCallTests, TheValidatorIsAskedBeforeTheToolIsLookedUp)
{
    server.setToolValidator([](const std::string& name) -> tl::expected<void, std::string>
                            { return tl::unexpected("Not now: " + name); });
    for (const auto& answer : {modern("tools/call", call("nonsense")), legacy("tools/call", call("nonsense"))})
    {
        EXPECT_EQ(answer.status, 200);
        EXPECT_TRUE(answer.json["result"]["isError"].asBool());
        EXPECT_EQ(answer.text(), "Not now: nonsense");
    }
}

TEST_F(ToolCallTests, TheValidatorSeesTheNameBehindAnAlias)
{
    addTool("viewer.shutdown", [](ToolCall&) { return ToolResult::of(object("down", true)); });
    server.addAlias("viewer_shutdown", "viewer.shutdown");
    std::string seen;
    server.setToolValidator(
        [&](const std::string& name) -> tl::expected<void, std::string>
        {
            seen = name;
            return {};
        });
    EXPECT_EQ(modern("tools/call", call("viewer_shutdown")).text(), R"({"down":true})");
    EXPECT_EQ(seen, "viewer.shutdown");
}

TEST_F(ToolCallTests, TheListStaysTheSameWhateverTheValidatorSays)
{
    addTool("echo", [](ToolCall&) { return ToolResult{}; });
    server.setToolValidator([](const std::string&) -> tl::expected<void, std::string>
                            { return tl::unexpected(std::string("No")); });
    EXPECT_EQ(modern("tools/list", Json::objectValue).json["result"]["tools"].size(), 1U);
}

TEST_F(ToolCallTests, AToolThatThrowsHasFailed)
{
    addTool("throw", [](ToolCall&) -> ToolResult { throw std::runtime_error("no memory"); });
    const auto answer = modern("tools/call", call("throw"));
    EXPECT_TRUE(answer.json["result"]["isError"].asBool());
    EXPECT_THAT(answer.text(), HasSubstr("no memory"));
}

TEST_F(ToolCallTests, AToolThatDropsItsAnswerHasFailed)
{
    server.addTool({.name = "drop", .run = [](const auto&, const auto&) {}});
    EXPECT_TRUE(modern("tools/call", call("drop")).json["result"]["isError"].asBool());
}

TEST_F(ToolCallTests, OnlyTheFirstAnswerCounts)
{
    server.addTool({.name = "twice",
                    .run = [](const auto&, const Mcp::Tool::Answer& answer)
                    {
                        answer(ToolResult::of(object("n", 1)));
                        answer(ToolResult::of(object("n", 2)));
                    }});
    EXPECT_EQ(modern("tools/call", call("twice")).text(), R"({"n":1})");
}

TEST_F(ToolCallTests, ProgressFlowsAheadOfTheResultWhereItIsAskedFor)
{
    addTool("work",
            [](ToolCall& one)
            {
                one.progress(1, 4, "Reading");
                one.progress(4, 4);
                return ToolResult::of(object("done", true));
            });
    auto socket = connect();
    socket.send(modernBytes("tools/call", withProgress(call("work"))));
    const std::string head = socket.receiveUntil("\r\n\r\n");
    EXPECT_THAT(head, HasSubstr("Content-Type: text/event-stream\r\n"));
    EXPECT_THAT(head, HasSubstr("X-Accel-Buffering: no\r\n"));
    const Json::Value first = nextEvent(socket);
    EXPECT_EQ(first["method"], "notifications/progress");
    EXPECT_EQ(first["params"]["progressToken"], "token");
    EXPECT_EQ(first["params"]["progress"], 1.0);
    EXPECT_EQ(first["params"]["total"], 4.0);
    EXPECT_EQ(first["params"]["message"], "Reading");
    EXPECT_EQ(nextEvent(socket)["params"]["progress"], 4.0);
    EXPECT_TRUE(nextEvent(socket)["result"]["structuredContent"]["done"].asBool());
}

TEST_F(ToolCallTests, WithoutATokenOrAStreamTheAnswerIsPlain)
{
    addTool("work",
            [](ToolCall& one)
            {
                one.progress(1, 4);
                return ToolResult::of(object("done", true));
            });
    EXPECT_THAT(modern("tools/call", call("work")).head, HasSubstr("application/json"));
    EXPECT_THAT(modern("tools/call", withProgress(call("work")), {{"Accept", "application/json"}}).head,
                HasSubstr("application/json"));
}

TEST_F(ToolCallTests, TheConnectionServesTheNextCallAfterAStream)
{
    addTool("work",
            [](ToolCall& one)
            {
                one.progress(1, 4);
                return ToolResult::of(object("done", true));
            });
    auto socket = connect();
    for (int i = 0; i < 3; ++i)
    {
        socket.send(modernBytes("tools/call", withProgress(call("work"))));
        EXPECT_TRUE(nextEvent(socket).isMember("method"));
        EXPECT_TRUE(nextEvent(socket).isMember("result"));
        socket.receiveUntil("\r\n0\r\n\r\n");
    }
}

TEST_F(ToolCallTests, ToCloseTheStreamIsToCancel)
{
    std::promise<void> cancelled;
    std::promise<void> started;
    server.addTool({.name = "long",
                    .run = [&](const std::shared_ptr<ToolCall>& one, const Mcp::Tool::Answer& answer)
                    {
                        one->onCanceled(
                            [&, answer]
                            {
                                answer(ToolResult::error("cancelled"));
                                cancelled.set_value();
                            });
                        started.set_value();
                    }});
    {
        auto socket = connect();
        socket.send(modernBytes("tools/call", call("long")));
        started.get_future().wait();
    }
    EXPECT_EQ(cancelled.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST_F(ToolCallTests, LogMessagesGoToThoseWhoSayALevel)
{
    addTool("talk",
            [](ToolCall& one)
            {
                one.log("info", "hello");
                return ToolResult{};
            });
    EXPECT_THAT(modern("tools/call", call("talk")).head, HasSubstr("application/json"));
    Json::Value params = call("talk");
    params["_meta"]["io.modelcontextprotocol/logLevel"] = "debug";
    auto socket = connect();
    socket.send(modernBytes("tools/call", params));
    EXPECT_EQ(nextEvent(socket)["params"]["data"], "hello");
}

} // namespace VX::Test
