#include "launcher/McpStdio.h"

#include "launcher/McpBridge.h"
#include "launcher/SupervisedProcess.h"

#include <VXMesh/Config.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>
#include <VXViewer/AgentInstance.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace VX
{

namespace
{

constexpr auto startLimit = std::chrono::seconds(30);
constexpr auto finishLimit = std::chrono::seconds(5);
constexpr auto startStep = std::chrono::milliseconds(50);

std::optional<std::uint16_t> portOfRunning()
{
    const std::vector<AgentInstance> instances = findAgentInstances();
    return instances.empty() ? std::nullopt : std::optional(instances.front().port);
}

/// Starts a program without a window that ends with what is returned, and waits until it serves.
std::unique_ptr<SupervisedProcess> startHidden(const CommandLine& line)
{
    const auto program = SystemPath::getExecutablePath();
    if (!program)
        return nullptr;
    SupervisedProcess::Command command;
    command.executable = *program;
    command.arguments = {"-hidden"};
    command.silent = true;
    if (line.mcpPort)
        command.arguments.insert(command.arguments.end(), {"-mcpPort", std::to_string(*line.mcpPort)});
    if (line.deployment)
        command.arguments.insert(command.arguments.end(), {"-deployment", utf8string(*line.deployment)});
    if (line.credentials)
        command.arguments.insert(command.arguments.end(), {"-creds", utf8string(*line.credentials)});
    if (line.noTelemetry)
        command.arguments.emplace_back("-noTelemetry");
    for (const std::filesystem::path& file : line.files)
        command.arguments.push_back(utf8string(file));
    auto process = std::make_unique<SupervisedProcess>(std::move(command));
    const auto end = std::chrono::steady_clock::now() + startLimit;
    while (!portOfRunning() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(startStep);
    return process;
}

void writeLine(const std::string& line)
{
    std::cout << line << '\n' << std::flush;
}

std::string token()
{
    const Json::Value stored = Config::instance().getJson("mcpToken", Json::Value(""));
    return stored.isString() ? stored.asString() : std::string();
}

} // namespace

int runMcpStdio(const CommandLine& line)
{
    std::unique_ptr<SupervisedProcess> started;
    if (line.hidden && !portOfRunning())
        started = startHidden(line);
    McpBridge bridge(portOfRunning, writeLine, token());
    std::string text;
    while (std::getline(std::cin, text))
        bridge.handle(text);
    // A client that only writes a few lines may still read the answers.
    bridge.finish(finishLimit);
    return 0;
}

} // namespace VX
