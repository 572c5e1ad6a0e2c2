#include "launcher/CommandLine.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <functional>
#include <limits>

namespace VX
{

namespace
{

constexpr int largestSide = 16384;

struct Option
{
    std::string_view name;
    std::string_view value; ///< empty: the option takes none
    std::string_view help;
    std::function<bool(CommandLine&, const std::string&)> apply;
};

bool parseSide(std::string_view text, int& side)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
    return error == std::errc() && end == text.data() + text.size() && side > 0 && side <= largestSide;
}

bool parseSize(CommandLine& line, const std::string& text)
{
    const auto x = text.find('x');
    CommandLine::Size size;
    if (x == std::string::npos || !parseSide(std::string_view(text).substr(0, x), size.width) ||
        !parseSide(std::string_view(text).substr(x + 1), size.height))
        return false;
    line.size = size;
    return true;
}

/// An option that stores its value, a whole number from 1 to `largest`, in `member`.
auto storeNumberIn(std::optional<int> CommandLine::* member, int largest)
{
    return [member, largest](CommandLine& line, const std::string& text)
    {
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size() || number < 1 || number > largest)
            return false;
        line.*member = number;
        return true;
    };
}

/// An option that stores its value as a path or text in `member`.
template <typename T>
auto storeIn(T CommandLine::* member)
{
    return [member](CommandLine& line, const std::string& text)
    {
        if constexpr (std::is_same_v<T, std::optional<std::string>>)
            line.*member = text;
        else
            line.*member = pathFromUtf8(text);
        return !text.empty();
    };
}

auto raise(bool CommandLine::* member)
{
    return [member](CommandLine& line, const std::string&) { return line.*member = true; };
}

const std::vector<Option>& options()
{
    static const std::vector<Option> all{
        {"-hidden", "", "run off-screen, without a window", raise(&CommandLine::hidden)},
        {"-screenshot", "F.png", "open the files, save a picture of the scene, exit",
         storeIn(&CommandLine::screenshot)},
        {"-windowShot", "F.png", "open the files, save a picture of the window, exit",
         storeIn(&CommandLine::windowShot)},
        {"-sceneInfo", "F", "open the files, write the scene tree as JSON (- for standard output), exit",
         storeIn(&CommandLine::sceneInfo)},
        {"-size", "WxH", "size of the window in pixels", parseSize},
        {"-deployment", "F", "file that names the services to use", storeIn(&CommandLine::deployment)},
        {"-uiConfig", "F", "JSON file that reshapes the interface", storeIn(&CommandLine::uiDocument)},
        {"-creds", "F", "file with the e-mail address and the password to sign in with",
         storeIn(&CommandLine::credentials)},
        {"-url", "LINK", "sign-in link of the browser, for the program that runs",
         [](CommandLine&, const std::string& link) { return !link.empty(); }},
        {"-mcpPort", "N", "port for agents (1 to 65535) that must be free; 7431 or the next free one without it",
         storeNumberIn(&CommandLine::mcpPort, std::numeric_limits<std::uint16_t>::max())},
        {"-mcpStdio", "",
         "connect an agent on standard input and output to the running program; with -hidden, start one",
         raise(&CommandLine::mcpStdio)},
        {"-exitWithParent", "PID", "end when the process PID, which started this one, has ended",
         storeNumberIn(&CommandLine::parent, std::numeric_limits<int>::max())},
        {"-noTelemetry", "", "send no usage telemetry", raise(&CommandLine::noTelemetry)},
        {"-version", "", "print the version, exit", raise(&CommandLine::version)},
        {"-help", "", "print this text, exit", raise(&CommandLine::help)},
    };
    return all;
}

} // namespace

std::vector<std::string> normalizeArguments(int argc, const char* const* argv)
{
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    for (auto& argument : arguments)
        if (argument.size() > 2 && argument.starts_with("--"))
            argument.erase(0, 1);
    return arguments;
}

tl::expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine line;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument)
    {
        if (!argument->starts_with('-') || argument->size() == 1)
        {
            line.files.push_back(pathFromUtf8(*argument));
            continue;
        }
        const auto option = std::ranges::find(options(), *argument, &Option::name);
        if (option == options().end())
            return tl::unexpected(fmt::format("Unknown option \"{}\". \"Quorvix -help\" lists them.", *argument));
        if (option->value.empty())
        {
            option->apply(line, {});
            continue;
        }
        if (std::next(argument) == arguments.end())
            return tl::unexpected(
                fmt::format("Option \"{}\" needs a value: {} {}.", *argument, option->name, option->value));
        const auto& value = *++argument;
        if (!option->apply(line, value))
            return tl::unexpected(fmt::format("\"{}\" is not a value for {}: write {} {}.", value, option->name,
                                              option->name, option->value));
    }
    return line;
}

std::string commandLineHelp()
{
    std::string text = "Usage: Quorvix [options] [files]\n\n";
    for (const auto& option : options())
        text += fmt::format("  {:<20}{}\n", fmt::format("{} {}", option.name, option.value), option.help);
    return text + "\nOptions may be written with one dash or two.\n";
}

} // namespace VX
