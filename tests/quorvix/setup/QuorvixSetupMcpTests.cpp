#include "tests/quorvix/support/AccountsFixture.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/setup/QuorvixSetup.h>

#include <VXMcp/Mcp.h>
#include <VXViewer/WebRequest.h>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::HasSubstr;
using ::testing::Not;

/// An agent's calls of the tool "scene.list", which answers "the scene", after the configuration step.
class QuorvixSetupMcpTest : public VX::Test::AccountsFixture
{
protected:
    void SetUp() override
    {
        AccountsFixture::SetUp();
        Mcp::Tool tool;
        tool.name = toolName_;
        tool.inputSchema["type"] = "object";
        tool.run = [](const auto&, const auto& answer)
        { answer({.content = {{.type = Mcp::Content::Type::Text, .text = "the scene"}}}); };
        server_.addTool(std::move(tool));
        ASSERT_TRUE(server_.start({}));
        QuorvixSetup().setupConfiguration(&session_.viewer());
    }

    void TearDown() override
    {
        server_.stop();
        server_.setToolValidator({});
        server_.removeTool(toolName_);
        AccountsFixture::TearDown();
    }

    /// What the server answers.
    [[nodiscard]] std::string call_() const
    {
        WebRequests::setTransport(nullptr);
        WebRequest request(server_.status().address);
        request.setMethod(WebRequest::Method::Post);
        request.setAsync(false);
        request.setHeaders({{"Accept", "application/json, text/event-stream"},
                            {"MCP-Protocol-Version", "2026-07-28"},
                            {"Mcp-Method", "tools/call"},
                            {"Mcp-Name", toolName_}});
        request.setBody(fmt::format(R"({{"jsonrpc": "2.0", "id": 1, "method": "tools/call", "params": {{"name": "{}",
            "arguments": {{}}, "_meta": {{"io.modelcontextprotocol/protocolVersion": "2026-07-28",
            "io.modelcontextprotocol/clientInfo": {{"name": "test", "version": "1"}},
            "io.modelcontextprotocol/clientCapabilities": {{}}}}}}}})",
                                    toolName_));
        std::string text;
        request.send([&text](const Json::Value& answer) { text = answer["text"].asString(); });
        WebRequests::setTransport(transport_);
        return text;
    }

    const std::string toolName_ = "scene.list";
    const VX::Test::ViewerSession session_{nullptr};
    Mcp::Server& server_ = Mcp::getDefaultServer();
};

TEST_F(QuorvixSetupMcpTest, keepsToolsFromAgentsWhileNobodyIsSignedIn)
{
    const std::string answer = call_();
    EXPECT_THAT(answer, HasSubstr("MCP tools are disabled. Ask the user to sign in, then retry."));
    EXPECT_THAT(answer, Not(HasSubstr("the scene")));
}

TEST_F(QuorvixSetupMcpTest, letsAgentsUseToolsOnceAUserIsSignedIn)
{
    UserInfo::setAccessToken("token");
    UserInfo::setEmail("ann@example.com");
    EXPECT_THAT(call_(), HasSubstr("the scene"));
}

} // namespace

} // namespace VX
