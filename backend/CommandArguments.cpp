#include "CommandArguments.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <span>

namespace VX
{

namespace
{

tl::expected<int, std::string> parseNumber(const std::string& option, const std::string& text, int to)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > to)
        return tl::unexpected(fmt::format("\"{}\" needs a whole number from 0 to {}.", option, to));
    return number;
}

/// Puts the value of one option in.
tl::expected<void, std::string> setOption(CommandArguments& result, const std::string& option, const std::string& value)
{
    if (option == "--data")
        result.dataFolder = pathFromUtf8(value);
    else if (option == "--config")
        result.configFile = pathFromUtf8(value);
    else
    {
        const bool isPort = option == "--port";
        const auto number = parseNumber(
            option, value, isPort ? std::numeric_limits<std::uint16_t>::max() : std::numeric_limits<int>::max());
        if (!number)
            return tl::unexpected(number.error());
        if (isPort)
            result.port = static_cast<std::uint16_t>(*number);
        else
            result.listenFd = *number;
    }
    return {};
}

bool takesValue(const std::string& option)
{
    return option == "--data" || option == "--config" || option == "--port" || option == "--listen-fd";
}

} // namespace

tl::expected<CommandArguments, std::string> CommandArguments::parse(const std::vector<std::string>& arguments)
{
    CommandArguments result;
    if (!arguments.empty() && arguments.front() == "--help")
    {
        result.help = true;
        return result;
    }
    if (arguments.empty())
        return tl::unexpected(std::string("Say what to do: \"serve\" starts the service."));
    if (arguments.front() != "serve")
        return tl::unexpected(fmt::format("\"{}\" is not known.", arguments.front()));

    bool hasPort = false;
    for (std::size_t i = 1; i < arguments.size(); ++i)
    {
        const std::string& option = arguments[i];
        if (option == "--exit-with-parent")
        {
            result.exitWithParent = true;
            continue;
        }
        if (!takesValue(option))
            return tl::unexpected(fmt::format("\"{}\" is not known.", option));
        if (++i == arguments.size())
            return tl::unexpected(fmt::format("\"{}\" needs a value.", option));
        if (auto set = setOption(result, option, arguments[i]); !set)
            return tl::unexpected(std::move(set.error()));
        hasPort = hasPort || option == "--port" || option == "--listen-fd";
    }
    if (result.dataFolder.empty())
        return tl::unexpected(std::string("\"--data\" is missing."));
    if (!hasPort)
        return tl::unexpected(std::string("\"--port\" or \"--listen-fd\" is missing."));
    return result;
}

std::string commandHelp()
{
    return "Usage: quorvix-backend serve --data DIR (--port N | --listen-fd N) [--config FILE] [--exit-with-parent]\n"
           "\n"
           "  --data DIR          the folder for everything that the service keeps; created where it is missing\n"
           "  --port N            the port on 127.0.0.1; 0 lets the system choose one\n"
           "  --listen-fd N       the number of an open socket to serve on instead, already bound to its port\n"
           "  --config FILE       a JSON file with the service's settings\n"
           "  --exit-with-parent  end when the process that started this one has ended\n";
}

} // namespace VX
