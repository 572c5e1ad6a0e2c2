#include "CommandArguments.h"

#include "telemetry/LogTime.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace VX
{

namespace
{

using Command = CommandArguments::Command;
using Result = tl::expected<void, std::string>;

tl::expected<int, std::string> parseNumber(const std::string& option, const std::string& text, int to)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > to)
        return tl::unexpected(fmt::format("\"{}\" needs a whole number from 0 to {}.", option, to));
    return number;
}

Result setLevel(const std::string& option, const std::string& value, std::string& level)
{
    if (std::ranges::find(logLevels, value) == logLevels.end())
        return tl::unexpected(fmt::format("\"{}\" needs a level: {}.", option, fmt::join(logLevels, ", ")));
    level = value;
    return {};
}

Result setTime(const std::string& option, const std::string& value, std::string& time)
{
    auto full = fullLogTime(value);
    if (!full)
        return tl::unexpected(fmt::format("\"{}\" needs a time in UTC: 2025-01-31 or 2025-01-31T09:15:02.", option));
    time = std::move(*full);
    return {};
}

/// Puts the value of one option in.
Result setOption(CommandArguments& result, const std::string& option, const std::string& value)
{
    if (option == "--data")
        result.dataFolder = pathFromUtf8(value);
    else if (option == "--config")
        result.configFile = pathFromUtf8(value);
    else if (option == "--user")
        result.lines.account = value;
    else if (option == "--level")
        return setLevel(option, value, result.lines.level);
    else if (option == "--since")
        return setTime(option, value, result.lines.since);
    else if (option == "--until")
        return setTime(option, value, result.lines.until);
    else if (option == "--text")
        result.lines.text = value;
    else
    {
        const bool isPort = option == "--port";
        const auto number = parseNumber(
            option, value, isPort ? std::numeric_limits<std::uint16_t>::max() : std::numeric_limits<int>::max());
        if (!number)
            return tl::unexpected(number.error());
        if (isPort)
            result.port = static_cast<std::uint16_t>(*number);
        else if (option == "--listen-fd")
            result.listenFd = *number;
        else if (option == "--limit")
            result.lines.limit = *number;
        else
            result.parent = *number;
    }
    return {};
}

bool takesAddress(Command command)
{
    return command == Command::UserAdd || command == Command::UserRemove || command == Command::UserReset;
}

bool takesPassword(Command command)
{
    return command == Command::UserAdd || command == Command::UserReset;
}

/// The options of a command, each with whether it has a value.
std::map<std::string, bool> optionsOf(Command command)
{
    std::map<std::string, bool> options{{"--data", true}};
    if (command == Command::Serve)
        options.insert({{"--config", true}, {"--port", true}, {"--listen-fd", true}, {"--exit-with-parent", true}});
    if (takesPassword(command))
        options.emplace("--password-stdin", false);
    if (command == Command::Logs)
        options.insert({{"--user", true},
                        {"--level", true},
                        {"--since", true},
                        {"--until", true},
                        {"--text", true},
                        {"--limit", true},
                        {"--json", false}});
    return options;
}

/// Reads the words that say what to do, and takes them off `arguments`.
tl::expected<Command, std::string> readCommand(std::span<const std::string>& arguments)
{
    if (arguments.empty())
        return tl::unexpected(std::string("Say what to do: \"serve\" starts the service."));
    const std::string& first = arguments.front();
    arguments = arguments.subspan(1);
    if (first == "--help")
        return Command::Help;
    if (first == "serve")
        return Command::Serve;
    if (first == "stats")
        return Command::Stats;
    if (first == "logs")
        return Command::Logs;
    if (first != "user")
        return tl::unexpected(fmt::format("\"{}\" is not known.", first));
    static const std::map<std::string, Command> ofUsers{{"add", Command::UserAdd},
                                                        {"list", Command::UserList},
                                                        {"remove", Command::UserRemove},
                                                        {"reset", Command::UserReset}};
    const auto command = arguments.empty() ? ofUsers.end() : ofUsers.find(arguments.front());
    if (command == ofUsers.end())
        return tl::unexpected(std::string("Say what to do with users: \"add\", \"list\", \"remove\" or \"reset\"."));
    arguments = arguments.subspan(1);
    return command->second;
}

/// @return the options that are there
tl::expected<std::set<std::string>, std::string> readOptions(std::span<const std::string> arguments,
                                                             CommandArguments& result)
{
    const auto known = optionsOf(result.command);
    std::set<std::string> seen;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        const auto option = known.find(argument);
        if (option == known.end())
        {
            if (!takesAddress(result.command) || argument.starts_with("--") || !result.address.empty())
                return tl::unexpected(fmt::format("\"{}\" is not known.", argument));
            result.address = argument;
            continue;
        }
        seen.insert(argument);
        if (!option->second)
            continue;
        if (++i == arguments.size())
            return tl::unexpected(fmt::format("\"{}\" needs a value.", argument));
        if (auto set = setOption(result, argument, arguments[i]); !set)
            return tl::unexpected(std::move(set.error()));
    }
    return seen;
}

} // namespace

tl::expected<CommandArguments, std::string> CommandArguments::parse(const std::vector<std::string>& arguments)
{
    std::span<const std::string> rest(arguments);
    const auto command = readCommand(rest);
    if (!command)
        return tl::unexpected(command.error());
    CommandArguments result;
    result.command = *command;
    if (result.command == Command::Help)
        return result;

    const auto seen = readOptions(rest, result);
    if (!seen)
        return tl::unexpected(seen.error());
    result.asJson = seen->contains("--json");
    if (takesAddress(result.command) && result.address.empty())
        return tl::unexpected(std::string("The e-mail address is missing."));
    if (result.dataFolder.empty())
        return tl::unexpected(std::string("\"--data\" is missing."));
    // A password among the arguments could be read by others.
    if (takesPassword(result.command) && !seen->contains("--password-stdin"))
        return tl::unexpected(std::string("\"--password-stdin\" is missing."));
    if (result.command == Command::Serve && !seen->contains("--port") && !seen->contains("--listen-fd"))
        return tl::unexpected(std::string("\"--port\" or \"--listen-fd\" is missing."));
    return result;
}

std::string commandHelp()
{
    return "Usage: quorvix-backend serve --data DIR (--port N | --listen-fd N) [--config FILE] [--exit-with-parent "
           "PID]\n"
           "       quorvix-backend user add EMAIL --password-stdin --data DIR\n"
           "       quorvix-backend user reset EMAIL --password-stdin --data DIR\n"
           "       quorvix-backend user remove EMAIL --data DIR\n"
           "       quorvix-backend user list --data DIR\n"
           "       quorvix-backend stats --data DIR\n"
           "       quorvix-backend logs --data DIR [--user EMAIL] [--level LEVEL] [--since TIME] [--until TIME]\n"
           "                            [--text TEXT] [--limit N] [--json]\n"
           "\n"
           "  --data DIR          the folder for everything that the service keeps; created where it is missing\n"
           "  --port N            the port on 127.0.0.1; 0 lets the system choose one\n"
           "  --listen-fd N       the number of an open socket to serve on instead, already bound to its port\n"
           "  --config FILE       a JSON file with the service's settings\n"
           "  --exit-with-parent  end when the process PID, which started this one, has ended\n"
           "  --password-stdin    read the account's new password from the first line of the standard input\n"
           "  --user EMAIL        only lines of this user\n"
           "  --level LEVEL       only lines of this level and above: trace, debug, info, warning, error, critical\n"
           "  --since TIME        only lines from this time on, in UTC: 2025-01-31 or 2025-01-31T09:15:02\n"
           "  --until TIME        only lines before this time\n"
           "  --text TEXT         only lines with this in their message, in any letter case\n"
           "  --limit N           at most so many of the newest lines; 1000 unless it is given\n"
           "  --json              print each line as a JSON object\n"
           "\n"
           "\"user\" works on the accounts: an added one needs no confirmation, and a reset one is signed out\n"
           "everywhere. \"stats\" prints how often each action was done, by day and version.\n"
           "\"logs\" prints the log lines that applications have sent, in the order of their times.\n";
}

} // namespace VX
