#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/McpToolGate.h>

#include <unordered_set>

namespace VX
{

tl::expected<void, std::string> checkMcpTool(const std::string& toolName)
{
    if (UserInfo::isUserSet())
        return {};
    static const std::unordered_set<std::string> allowedSignedOut{"viewer.shutdown", "viewer.captureScreenshot"};
    if (allowedSignedOut.contains(toolName))
        return {};
    return tl::unexpected(
        std::string("Quorvix is signed out — MCP tools are disabled. Ask the user to sign in, then retry."));
}

} // namespace VX
