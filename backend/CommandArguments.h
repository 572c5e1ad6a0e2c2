#pragma once

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// What the command line of quorvix-backend asks for.
struct CommandArguments
{
    bool help = false;
    std::filesystem::path dataFolder;
    std::filesystem::path configFile; ///< empty: none
    std::uint16_t port = 0;           ///< 0: the system chooses
    int listenFd = -1;                ///< a socket to take over; -1: none
    bool exitWithParent = false;

    /// Reads the arguments behind the program's name: "serve" and its options, or "--help".
    /// @return `Say what to do: "serve" starts the service.`, `"ARGUMENT" is not known.`, `"OPTION" needs a value.`,
    ///         `"OPTION" needs a whole number from A to B.`, `"--data" is missing.` or `"--port" or "--listen-fd" is
    ///         missing.`
    [[nodiscard]] static tl::expected<CommandArguments, std::string> parse(const std::vector<std::string>& arguments);
};

/// What "--help" prints.
[[nodiscard]] std::string commandHelp();

} // namespace VX
