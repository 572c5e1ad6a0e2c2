#include "launcher/McpBridge.h"
#include "launcher/McpInstance.h"
#include "launcher/McpStdio.h"
#include "launcher/SupervisedProcess.h"

#include <VXMesh/Config.h>
#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>

#include <json/value.h>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace VX
{

namespace
{

constexpr auto startLimit = std::chrono::seconds(30);
constexpr auto signInLimit = std::chrono::seconds(10);
constexpr auto finishLimit = std::chrono::seconds(5);
constexpr auto startStep = std::chrono::milliseconds(50);

constexpr const char* statusCall =
    R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"viewer.getStatus","arguments":{},"_meta":{)"
    R"("io.modelcontextprotocol/protocolVersion":"2026-07-28","io.modelcontextprotocol/clientCapabilities":{}}}})";

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(startStep);
    }
    return true;
}

/// Whether tools may be called by now.
bool mayCallTools(const McpBridge::FindPort& findPort, const std::string& token)
{
    bool may = false;
    const auto read = [&](const std::string& line)
    {
        const auto answer = deserializeJsonValue(line);
        may = answer && (*answer)["result"].isObject() && !(*answer)["result"]["isError"].asBool();
    };
    {
        McpBridge bridge(findPort, read, token);
        bridge.handle(statusCall);
        bridge.finish(finishLimit);
    }
    return may;
}

/// Starts a program without a window that ends with what is returned, or with this process.
std::unique_ptr<SupervisedProcess> startHidden(const CommandLine& line)
{
    const auto program = SystemPath::getExecutablePath();
    if (!program)
        return nullptr;
    SupervisedProcess::Command command;
    command.executable = *program;
    command.arguments = {"-hidden", "-exitWithParent", std::to_string(::getpid())};
    command.silent = true;
    command.mayFinish = true; // an agent has closed it
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
    return std::make_unique<SupervisedProcess>(std::move(command));
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
    McpInstance instance(line.mcpPort);
    const auto findPort = [&] { return instance.port(); };
    std::unique_ptr<SupervisedProcess> started;
    if (line.hidden && !findPort())
    {
        started = startHidden(line);
        // It serves before it is signed in, and the first call is not to be refused for that.
        if (waitFor([&] { return findPort().has_value(); }, startLimit))
            waitFor([&] { return mayCallTools(findPort, token()); }, signInLimit);
    }
    McpBridge bridge(findPort, writeLine, token());
    std::string text;
    while (std::getline(std::cin, text))
        bridge.handle(text);
    // A client that only writes a few lines may still read the answers.
    bridge.finish(finishLimit);
    return 0;
}

} // namespace VX
