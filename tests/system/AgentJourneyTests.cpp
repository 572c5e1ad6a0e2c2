#include "agent/AllowedFolders.h"
#include "tests/support/Processes.h"
#include "tests/support/WaitUntil.h"
#include "tests/system/AgentClient.h"
#include "tests/system/ProgramRun.h"

#include <VXMesh/UserFolders.h>
#include <VXViewer/AgentInstance.h>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <set>
#include <string>

namespace VX::Test
{

namespace
{

using testing::HasSubstr;

constexpr const char* signedOut =
    "Quorvix is signed out \u2014 MCP tools are disabled. Ask the user to sign in, then retry.";

/// What an agent does with the program as it is shipped.
class AgentJourney : public testing::Test
{
protected:
    AgentJourney() { AllowedFolders::setSettings({program_.folder().path()}); }

    /// Copies the sample to where agents may read it.
    [[nodiscard]] std::string sample_() const
    {
        return program_.folder()
            .write("bearing-block.step", readFile(QX_SOURCE_DIR "/samples/bearing-block.step"))
            .string();
    }

    [[nodiscard]] std::string withPath_(const std::string& path) const { return R"({"path": ")" + path + "\"}"; }

    /// A bridge whose input does not end, and which starts a program.
    [[nodiscard]] RunningProgram bridge_(const std::string& arguments) const
    {
        const std::string input = "\"" + (program_.folder().path() / "input").string() + "\"";
        const auto script = program_.folder().write(
            "bridge.sh", "mkfifo " + input + "; exec 3<>" + input +
                             "; exec \"" QX_BIN_DIR "/Quorvix\" -mcpStdio -hidden " + arguments + " <&3\n");
        return RunningProgram("/bin/sh", {script.string()}, program_.folder().path());
    }

    ProgramRun program_;
    std::vector<std::string> lines_; ///< that a bridge wrote
};

TEST_F(AgentJourney, SignedOutOnlyThePictureAndTheEndAreAllowed)
{
    RunningProgram running = program_.start({"-hidden", "-creds", "missing.json"});
    ASSERT_TRUE(AgentClient::waitForServer());
    AgentClient agent;
    const Json::Value tools = agent.request("tools/list", Json::Value(Json::objectValue))["result"]["tools"];
    ASSERT_GT(tools.size(), 20U);
    for (const Json::Value& tool : tools)
    {
        const std::string name = tool["name"].asString();
        if (name == "viewer.shutdown" || name == "viewer.captureScreenshot")
            continue;
        EXPECT_EQ(agent.refusal(name), signedOut) << name;
    }
    const Json::Value picture = agent.call("viewer_captureScreenshot", R"({"maxSize": 100})");
    EXPECT_EQ(picture["content"][0]["type"].asString(), "image");
    EXPECT_TRUE(agent.use("viewer.shutdown")["closing"].asBool());
    EXPECT_EQ(running.wait().status, 0);
    EXPECT_TRUE(findAgentInstances().empty());
}

TEST_F(AgentJourney, WorksOnAPartFromAStepFile)
{
    RunningProgram running = program_.start({"-hidden"});
    ASSERT_TRUE(AgentClient::waitForServer());
    AgentClient agent;
    ASSERT_TRUE(waitUntil([&] { return !agent.call("viewer.getStatus")["isError"].asBool(); }));

    const Json::Value loaded = agent.use("scene.loadFile", withPath_(sample_()));
    EXPECT_FALSE(loaded["objects"].empty());
    std::set<std::string> pictures;
    Json::Value top;
    for (const char* view : {"front", "right", "isometric", "top"})
    {
        const Json::Value taken = agent.call("viewer.captureScreenshot", fmt::format(R"({{"view": "{}"}})", view));
        pictures.insert(taken["content"][0]["data"].asString());
        top = taken["structuredContent"];
    }
    EXPECT_EQ(pictures.size(), 4U);

    const Json::Value meshes = agent.use("scene.list", R"({"sortBy": "size", "type": "ObjectMesh"})");
    const Json::Value largest = meshes["objects"][0];
    const std::string id = largest["id"].asString();
    EXPECT_GT(agent.use("scene.getObject", R"({"id": )" + id + "}")["area"].asDouble(), 0);

    // The round top of the upright.
    Json::Value middle;
    middle["x"] = top["width"].asInt() / 2;
    middle["y"] = top["height"].asInt() / 2;
    middle["picture"] = top;
    const Json::Value hit = agent.use("select.pick", middle.toStyledString());
    EXPECT_EQ(hit["object"]["id"], largest["id"]);
    Json::Value start;
    start["id"] = largest["id"];
    start["face"] = hit["element"];
    const Json::Value region = agent.use("select.primitive", start.toStyledString());
    start["angleTolerance"] = 1;
    EXPECT_GT(region["found"].asInt(), agent.use("select.primitive", start.toStyledString())["found"].asInt());
    agent.use("history.undo");
    EXPECT_EQ(agent.use("select.delete")["deletedFaces"], region["selectedFaces"]);
    const std::string triangles = "triangles";
    EXPECT_LT(agent.use("scene.getObject", R"({"id": )" + id + "}")[triangles].asInt(), largest[triangles].asInt());
    agent.use("history.undo");
    EXPECT_EQ(agent.use("scene.getObject", R"({"id": )" + id + "}")[triangles], largest[triangles]);

    agent.use("scene.rename", R"({"name": "Housing", "id": )" + id + "}");
    EXPECT_THAT(agent.refusal("viewer.shutdown"), HasSubstr("scene.saveFile"));
    const std::filesystem::path saved = program_.folder().path() / "block.vxu";
    agent.use("scene.saveFile", withPath_(saved.string()));
    EXPECT_TRUE(std::filesystem::exists(saved));
    agent.use("viewer.shutdown");
    EXPECT_EQ(running.wait().status, 0);
}

TEST_F(AgentJourney, IsFoundByAFileThatOnlyTheUserCanRead)
{
    const RunningProgram running = program_.start({"-hidden"});
    ASSERT_TRUE(AgentClient::waitForServer());
    const auto file = getUserRuntimeDir() / fmt::format("agents-{}.json", running.id());
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(findAgentInstances().front().process, running.id());
}

TEST_F(AgentJourney, EndsWhereThePortThatTheUserNamedIsTaken)
{
    const RunningProgram first = program_.start({"-hidden"});
    ASSERT_TRUE(AgentClient::waitForServer());
    const std::string port = std::to_string(findAgentInstances().front().port);
    const ProgramRun other;
    const ProgramResult second = other.run({"-hidden", "-mcpPort", port});
    EXPECT_EQ(second.status, 2);
    EXPECT_THAT(second.errors, HasSubstr(port));
}

TEST_F(AgentJourney, ABridgeAnswersAtOnceWhereNoProgramRuns)
{
    McpBridge bridge([] { return std::nullopt; }, [this](const std::string& line) { lines_.push_back(line); }, {});
    bridge.handle(R"({"jsonrpc": "2.0", "id": 7, "method": "tools/list"})");
    bridge.finish(std::chrono::seconds(10));
    ASSERT_EQ(lines_.size(), 1U);
    EXPECT_THAT(lines_.front(), HasSubstr("\"id\":7"));
    EXPECT_THAT(lines_.front(), HasSubstr("Quorvix is not running"));
}

TEST_F(AgentJourney, ABridgeTellsWhatIsNoMessage)
{
    McpBridge bridge([] { return std::nullopt; }, [this](const std::string& line) { lines_.push_back(line); }, {});
    bridge.handle("nothing");
    bridge.handle("[]");
    bridge.handle("");
    ASSERT_EQ(lines_.size(), 2U);
    EXPECT_THAT(lines_[0], HasSubstr("-32700"));
    EXPECT_THAT(lines_[1], HasSubstr("-32600"));
}

TEST_F(AgentJourney, AProgramEndsWithTheBridgeThatStartedItAlsoWhereThatIsKilled)
{
    RunningProgram bridge = bridge_("-creds missing.json");
    ASSERT_TRUE(AgentClient::waitForServer());
    const auto started = static_cast<int>(findAgentInstances().front().process);
    ASSERT_NE(started, bridge.id());
    bridge.send(SIGKILL);
    bridge.wait();
    EXPECT_TRUE(waitUntil([&] { return !isRunning(started); }));
    EXPECT_TRUE(findAgentInstances().empty());
}

TEST_F(AgentJourney, TheFirstCallThroughABridgeFindsTheProgramSignedIn)
{
    const auto script = program_.folder().write(
        "bridge.sh", "printf '%s\\n' '{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":"
                     "\"viewer.getStatus\",\"arguments\":{}}}' | \"" QX_BIN_DIR "/Quorvix\" -mcpStdio -hidden\n");
    const ProgramResult result = RunningProgram("/bin/sh", {script.string()}, program_.folder().path()).wait();
    EXPECT_THAT(result.output, HasSubstr("unsavedChanges"));
}

TEST_F(AgentJourney, ABridgeIsTheProgramItself)
{
    const RunningProgram running = program_.start({"-hidden", "-creds", "missing.json"});
    ASSERT_TRUE(AgentClient::waitForServer());
    const auto script = program_.folder().write(
        "bridge.sh",
        "printf '%s\\n' '{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"initialize\",\"params\":"
        "{\"protocolVersion\":\"2025-11-25\",\"capabilities\":{},\"clientInfo\":{\"name\":\"t\",\"version\":"
        "\"1\"}}}' | \"" QX_BIN_DIR "/Quorvix\" -mcpStdio\n");
    const ProgramResult result = RunningProgram("/bin/sh", {script.string()}, program_.folder().path()).wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("\"protocolVersion\":\"2025-11-25\""));
}

} // namespace

} // namespace VX::Test
