#pragma once

#include "telemetry/LineFilter.h"

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
    enum class Command
    {
        Help,
        Serve,
        UserAdd,
        UserList,
        UserRemove,
        UserReset,
        Stats,
        Logs
    };

    Command command = Command::Serve;
    std::filesystem::path dataFolder;
    std::filesystem::path configFile; ///< empty: none
    std::uint16_t port = 0;           ///< 0: the system chooses
    int listenFd = -1;                ///< a socket to take over; -1: none
    int parent = 0;                   ///< the process that started this one, to end with; 0: none
    std::string address;              ///< of the account to add, remove or reset
    LineFilter lines;                 ///< which log lines to print
    bool asJson = false;              ///< how

    /// Reads the arguments behind the program's name: a command and its options, or "--help".
    /// @return `Say what to do: "serve" starts the service.`, `Say what to do with users: "add", "list", "remove" or
    ///         "reset".`, `"ARGUMENT" is not known.`, `"OPTION" needs a value.`, `"OPTION" needs a whole number from A
    ///         to B.`, `"OPTION" needs a level: LEVELS.`, `"OPTION" needs a time in UTC: 2025-01-31 or
    ///         2025-01-31T09:15:02.`, `"OPTION" is missing.`, `"--port" or "--listen-fd" is missing.` or `The e-mail
    ///         address is missing.`
    [[nodiscard]] static tl::expected<CommandArguments, std::string> parse(const std::vector<std::string>& arguments);
};

/// What "--help" prints.
[[nodiscard]] std::string commandHelp();

} // namespace VX
