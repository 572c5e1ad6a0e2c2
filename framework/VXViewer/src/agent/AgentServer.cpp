#include "AgentServer.h"

#include "AgentChip.h"
#include "AgentSettings.h"
#include "ResourceNews.h"

#include <VXMcp/Mcp.h>
#include <VXMesh/Config.h>
#include <VXViewer/AgentInstance.h>
#include <VXViewer/AgentTools.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* portOption = "-mcpPort";
constexpr const char* tokenKey = "mcpToken";

/// The port that the arguments name, 0 where they name none; nothing where what they name is no port.
std::optional<std::uint16_t> portOf(const std::vector<std::string>& arguments)
{
    const auto option = std::ranges::find(arguments, portOption);
    if (option == arguments.end())
        return 0;
    if (std::next(option) == arguments.end())
        return std::nullopt;
    const std::string& text = *std::next(option);
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        return std::nullopt;
    return port;
}

/// Calls wait for the loop, which turns no more. What they have posted is dropped, also what cancelled work posts yet:
/// each of them answers by that.
void stopWithoutLoop()
{
    constexpr auto step = std::chrono::milliseconds(2);
    CommandLoop::clear();
    const auto stopped = std::async(std::launch::async, [] { Mcp::getDefaultServer().stop(); });
    while (stopped.wait_for(step) != std::future_status::ready)
        CommandLoop::clear();
}

} // namespace

AgentServer::AgentServer() = default;

AgentServer::~AgentServer() = default;

AgentServer& AgentServer::instance()
{
    static AgentServer server;
    return server;
}

tl::expected<void, std::string> AgentServer::begin(Viewer& viewer)
{
    const auto port = portOf(viewer.commandLineArguments());
    if (!port)
        return tl::unexpected(fmt::format("{} needs a number from 1 to 65535.", portOption));
    port_ = *port;
    registerAgentTools(viewer, Mcp::getDefaultServer());
    ViewerSettingsPlugin::instance()->addComboSettings(ViewerSettingsPlugin::TabType::Application,
                                                       std::make_shared<AgentSettings>());
    news_ = std::make_unique<ResourceNews>(viewer, Mcp::getDefaultServer());
    statusConnection_ = Mcp::getDefaultServer().onStatusChanged(AgentChip::refresh);
    offered_ = true;
    return start_();
}

bool AgentServer::isPortNamed(const Viewer& viewer)
{
    return std::ranges::find(viewer.commandLineArguments(), portOption) != viewer.commandLineArguments().end();
}

bool AgentServer::end()
{
    if (!std::exchange(offered_, false))
        return false;
    statusConnection_.disconnect();
    news_.reset();
    withdrawAgentInstance();
    stopWithoutLoop();
    // They use the viewer.
    Mcp::getDefaultServer().clear();
    return true;
}

bool AgentServer::isOn() const
{
    return Mcp::getDefaultServer().isRunning();
}

tl::expected<void, std::string> AgentServer::setOn(bool on)
{
    if (on)
        return isOn() ? tl::expected<void, std::string>() : start_();
    withdrawAgentInstance();
    Mcp::getDefaultServer().stop();
    return {};
}

tl::expected<void, std::string> AgentServer::start_()
{
    Mcp::Server::Settings settings;
    if (port_ != 0)
        settings.port = port_;
    settings.portFixed = port_ != 0;
    const Json::Value token = Config::instance().getJson(tokenKey, Json::Value(""));
    if (token.isString())
        settings.bearerToken = token.asString();
    Mcp::Server& server = Mcp::getDefaultServer();
    if (auto started = server.start(settings); !started)
        return tl::unexpected(port_ == 0
                                  ? std::move(started.error())
                                  : fmt::format("{}. Name another port with {}, or leave it out for the next one "
                                                "that is free.",
                                                started.error(), portOption));
    // Agents that know the address find it anyway.
    if (const auto announced = announceAgentInstance(server.port()); !announced)
        spdlog::warn("Other programs will not find the server for agents by themselves: {}", announced.error());
    spdlog::info("Agents are served on port {}.", server.port());
    return {};
}

} // namespace VX
