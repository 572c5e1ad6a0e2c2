#include "CommandArguments.h"
#include "PrivateFiles.h"
#include "Service.h"
#include "ShutdownWait.h"
#include "accounts/UserCommand.h"
#include "telemetry/LogsCommand.h"
#include "telemetry/StatsCommand.h"

#include <fmt/format.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace
{

using Command = VX::CommandArguments::Command;

int usageError(const std::string& message)
{
    fmt::print(stderr, "{}\n\n{}", message, VX::commandHelp());
    return 2;
}

int startError(const std::string& message)
{
    fmt::print(stderr, "{}\n", message);
    return 1;
}

/// Everything goes to standard error: whoever starts the service decides where that leads.
void startLog()
{
    auto logger =
        std::make_shared<spdlog::logger>("quorvix-backend", std::make_shared<spdlog::sinks::stderr_sink_mt>());
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%e %l: %v");
    spdlog::set_default_logger(std::move(logger));
}

tl::expected<VX::ServerConfig, std::string> readConfig(const std::filesystem::path& file)
{
    if (file.empty())
        return VX::defaultServerConfig();
    return VX::loadServerConfig(file);
}

int serve(const VX::CommandArguments& arguments)
{
    auto shutdown = VX::ShutdownWait::create(arguments.parent);
    if (!shutdown)
        return startError(shutdown.error());
    auto config = readConfig(arguments.configFile);
    if (!config)
        return startError(config.error());

    VX::HttpServer::Settings http;
    http.port = arguments.port;
    http.listenFd = arguments.listenFd;
    auto service = VX::Service::start(std::move(*config), arguments.dataFolder, http);
    if (!service)
        return startError(service.error());
    spdlog::info("Serving on http://127.0.0.1:{}", (*service)->port());
    shutdown->wait();
    service->reset();
    spdlog::info("Stopped");
    return 0;
}

/// The output of a command, or its error. @return the exit code
int printed(const tl::expected<std::string, std::string>& output)
{
    if (!output)
        return startError(output.error());
    fmt::print("{}", *output);
    return 0;
}

/// The first line of the standard input.
std::string readLine()
{
    std::string line;
    std::getline(std::cin, line);
    return line;
}

} // namespace

int main(int argc, char** argv)
{
    const auto arguments = VX::CommandArguments::parse({argv + 1, argv + argc});
    if (!arguments)
        return usageError(arguments.error());
    if (arguments->command == Command::Help)
        return printed(VX::commandHelp());

    // What users upload is nobody else's business.
    VX::keepNewFilesPrivate();
    startLog();
    switch (arguments->command)
    {
    case Command::Serve:
        return serve(*arguments);
    case Command::Stats:
        return printed(VX::runStatsCommand(arguments->dataFolder));
    case Command::Logs:
        return printed(VX::runLogsCommand(arguments->dataFolder, arguments->lines, arguments->asJson));
    default:
        return printed(VX::runUserCommand(*arguments, readLine));
    }
}
