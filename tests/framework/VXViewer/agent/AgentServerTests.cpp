#include "agent/AgentServer.h"

#include "AgentFixture.h"
#include "tests/support/RawSocket.h"
#include "tests/support/WaitUntil.h"

#include <VXMcp/Mcp.h>
#include <VXMesh/AtomicFile.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/AgentInstance.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <gtest/gtest.h>

#include <functional>
#include <future>

namespace VX
{

using testing::HasSubstr;
using testing::IsEmpty;

class AgentServerTests : public VX::Test::AgentFixture
{
protected:
    void begin_()
    {
        const auto begun = AgentServer::instance().begin(viewer_);
        ASSERT_TRUE(begun) << begun.error();
        driver_.settle();
    }

    ~AgentServerTests() override
    {
        AgentServer::instance().end();
        Mcp::getDefaultServer().setToolValidator({});
    }

    /// A message of the newest revision.
    static std::string request_(const std::string& method, const std::string& name, const std::string& parameters)
    {
        const std::string body = fmt::format(
            R"({{"jsonrpc":"2.0","id":1,"method":"{}","params":{{{}"_meta":{{)"
            R"("io.modelcontextprotocol/protocolVersion":"2026-07-28","io.modelcontextprotocol/clientCapabilities":{{}}}}}}}})",
            method, parameters);
        return fmt::format("POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\nAccept: "
                           "application/json, text/event-stream\r\nMCP-Protocol-Version: 2026-07-28\r\nMcp-Method: "
                           "{}\r\n{}Connection: close\r\nContent-Length: {}\r\n\r\n{}",
                           method, name.empty() ? "" : "Mcp-Name: " + name + "\r\n", body.size(), body);
    }

    static VX::Test::RawSocket send_(const std::string& request)
    {
        auto socket = VX::Test::RawSocket::connect(Mcp::getDefaultServer().port());
        socket.send(request);
        return socket;
    }

    /// What `receive` gives back, while the viewer runs.
    std::string whileRunning_(const std::function<std::string()>& receive)
    {
        auto answer = std::async(std::launch::async, receive);
        EXPECT_TRUE(
            driver_.waitFor([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        return answer.get();
    }

    /// The whole answer to a message of the newest revision, while the viewer runs.
    std::string post_(const std::string& method, const std::string& name, const std::string& parameters)
    {
        const std::string request = request_(method, name, parameters);
        return whileRunning_([&] { return send_(request).receiveAll(); });
    }
};

TEST_F(AgentServerTests, ServesTheViewersTools)
{
    begin_();
    EXPECT_THAT(post_("tools/call", "scene.list", R"("name":"scene.list","arguments":{},)"), HasSubstr("\"total\":3"));
}

TEST_F(AgentServerTests, TakesUnderscoresForTheDotsInNames)
{
    begin_();
    EXPECT_THAT(post_("tools/call", "scene_list", R"("name":"scene_list","arguments":{},)"), HasSubstr("\"total\":3"));
}

TEST_F(AgentServerTests, LetsAgentsReadTheSceneAndTheStatus)
{
    begin_();
    EXPECT_THAT(post_("resources/read", "viewer://scene", R"("uri":"viewer://scene",)"),
                HasSubstr(R"(\"name\":\"B\")"));
    EXPECT_THAT(post_("resources/read", "viewer://status", R"("uri":"viewer://status",)"), HasSubstr("unsavedChanges"));
}

TEST_F(AgentServerTests, LetsNobodyReadWhatHeMayNotAskFor)
{
    begin_();
    Mcp::getDefaultServer().setToolValidator([](const std::string& tool) -> tl::expected<void, std::string>
                                             { return tl::unexpected("No " + tool + " today."); });
    EXPECT_THAT(post_("resources/read", "viewer://scene", R"("uri":"viewer://scene",)"),
                HasSubstr("No scene.list today."));
    EXPECT_THAT(post_("resources/read", "viewer://status", R"("uri":"viewer://status",)"),
                HasSubstr("No viewer.getStatus today."));
}

TEST_F(AgentServerTests, TellsThatTheSceneHasChanged)
{
    begin_();
    VX::Test::RawSocket news =
        send_(request_("subscriptions/listen", "", R"("notifications":{"resourceSubscriptions":["viewer://scene"]},)"));
    news.receiveUntil("subscriptions/acknowledged");
    call_("scene.rename", R"({"name": "Lid", "id": )" + id_(*a_) + "}");
    EXPECT_THAT(whileRunning_([&] { return news.receiveUntil("viewer://scene\"}"); }),
                HasSubstr("notifications/resources/updated"));
}

TEST_F(AgentServerTests, TellsCallsThatWaitAtTheEndThatTheViewerCloses)
{
    begin_();
    VX::Test::RawSocket waiting = send_(request_("tools/call", "scene.list", R"("name":"scene.list","arguments":{},)"));
    ASSERT_TRUE(VX::Test::waitUntil([] { return !CommandLoop::isEmpty(); }));
    EXPECT_TRUE(AgentServer::instance().end());
    EXPECT_THAT(waiting.receiveAll(), HasSubstr("The viewer is closing"));
}

TEST_F(AgentServerTests, LeavesNothingOfTheViewerBehind)
{
    begin_();
    EXPECT_TRUE(AgentServer::instance().end());
    ASSERT_TRUE(Mcp::getDefaultServer().start({.port = 0}));
    EXPECT_THAT(post_("tools/call", "scene.list", R"("name":"scene.list","arguments":{},)"),
                HasSubstr("There is no tool"));
    Mcp::getDefaultServer().stop();
}

TEST_F(AgentServerTests, OffersAPrompt)
{
    begin_();
    EXPECT_THAT(post_("prompts/get", "inspect_scene", R"("name":"inspect_scene","arguments":{"file":"/a/b.stl"},)"),
                HasSubstr("/a/b.stl"));
}

TEST_F(AgentServerTests, IsFoundByTheFileOfThisProcess)
{
    begin_();
    ASSERT_EQ(findAgentInstances().size(), 1U);
    EXPECT_EQ(findAgentInstances().front().port, Mcp::getDefaultServer().port());
    EXPECT_TRUE(AgentServer::instance().end());
    EXPECT_TRUE(findAgentInstances().empty());
}

TEST_F(AgentServerTests, ForgetsFilesOfProcessesThatAreGone)
{
    ASSERT_TRUE(createUserFolder(getUserRuntimeDir()));
    const auto file = getUserRuntimeDir() / "agents-999999999.json";
    ASSERT_TRUE(writeFileAtomically(file, R"({"process": 999999999, "port": 7431})"));
    EXPECT_TRUE(findAgentInstances().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AgentServerTests, TakesTheNextPortUnlessOneIsNamed)
{
    begin_();
    const std::uint16_t port = Mcp::getDefaultServer().port();
    Mcp::Server other;
    ASSERT_TRUE(other.start({.port = port}));
    EXPECT_GT(other.port(), port);
    EXPECT_FALSE(other.start({.port = port, .portFixed = true}));
}

TEST_F(AgentServerTests, RefusesAPortThatIsNone)
{
    for (const char* text : {"0", "65536", "x", ""})
    {
        viewer_.setCommandLineArguments({"-mcpPort", text});
        EXPECT_FALSE(AgentServer::instance().begin(viewer_)) << text;
    }
}

TEST_F(AgentServerTests, ShowsInTheHeaderWhoUsesIt)
{
    begin_();
    post_("tools/call", "scene.list", R"("name":"scene.list","arguments":{},)");
    driver_.press("Agents", "Ribbon Header");
    EXPECT_TRUE(driver_.shows(Mcp::getDefaultServer().status().address, "Agents"));
    EXPECT_TRUE(driver_.shows("scene.list", "Agents"));
}

TEST_F(AgentServerTests, IsSwitchedOffAndOnInTheHeader)
{
    begin_();
    driver_.press("Agents", "Ribbon Header");
    driver_.press("Let agents drive the viewer", "Agents");
    EXPECT_FALSE(Mcp::getDefaultServer().isRunning());
    EXPECT_TRUE(findAgentInstances().empty());
    driver_.press("Let agents drive the viewer", "Agents");
    EXPECT_TRUE(Mcp::getDefaultServer().isRunning());
    EXPECT_EQ(findAgentInstances().size(), 1U);
}

TEST_F(AgentServerTests, ShowsNothingInTheHeaderOfAProgramThatDoesNotServe)
{
    driver_.settle();
    EXPECT_FALSE(driver_.shows("Agents", "Ribbon Header"));
}

TEST_F(AgentServerTests, LetsTheUserChooseTheFolders)
{
    AllowedFolders::setSettings({});
    begin_();
    ViewerSettingsPlugin::instance()->setEnabled(true);
    driver_.settle();
    ASSERT_TRUE(driver_.press("Folder for agents"));
    driver_.type(folder_.path().string());
    driver_.press("Add");
    driver_.settle();
    EXPECT_THAT(AllowedFolders::settings(), testing::ElementsAre(folder_.path()));
    driver_.press("Remove \"" + folder_.path().string() + "\"");
    driver_.settle();
    EXPECT_THAT(AllowedFolders::settings(), IsEmpty());
    ViewerSettingsPlugin::instance()->setEnabled(false);
}

} // namespace VX
