#pragma once

#include "tests/support/Processes.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace VX::Test
{

/// The real program, quorvix-backend, in a process of its own, serving on a socket that is handed to it. It is killed
/// at the latest at the end of the scope.
class BackendProcess
{
public:
    /// Starts it with "serve", the data folder, the socket and `more`; its log is added to `log`.
    BackendProcess(const std::filesystem::path& data, const std::filesystem::path& log,
                   const std::vector<std::string>& more);
    ~BackendProcess();

    BackendProcess(const BackendProcess&) = delete;
    BackendProcess& operator=(const BackendProcess&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    [[nodiscard]] int id() const { return id_; }

    /// Sends SIGTERM and waits. @return the exit code; -1 where it was killed by a signal
    int terminate();

    /// Sends SIGKILL and waits.
    void killNow();

private:
    int id_ = -1; ///< -1 once it has ended
    std::uint16_t port_ = 0;
};

/// Runs the program with these arguments until it ends.
/// @param input  the file that is its standard input
/// @return its exit code; -1 where it was killed by a signal
int runBackend(const std::vector<std::string>& arguments, const std::filesystem::path& log,
               const std::filesystem::path& input = "/dev/null");

/// Starts a shell that starts the program, which is to end with it, and waits for it. Its own number is the result, the
/// program's number is written to `numberFile`.
int startShellOfBackend(const std::vector<std::string>& arguments, const std::filesystem::path& numberFile);

} // namespace VX::Test
