#include "BackendProcess.h"
#include "tests/support/RawSocket.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace VX::Test
{

namespace
{

constexpr int handedSocket = 10;

/// The letter of the process's state and the number of its parent; a zero where there is no such process.
std::pair<char, int> stateOf(int id)
{
    std::ifstream stream(fmt::format("/proc/{}/stat", id));
    std::string line;
    std::getline(stream, line);
    const auto name = line.rfind(") ");
    if (name == std::string::npos)
        return {};
    return {line[name + 2], std::atoi(line.c_str() + name + 4)};
}

int spawn(const std::filesystem::path& program, const std::vector<std::string>& arguments,
          const std::filesystem::path& log, int socket = -1)
{
    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    if (socket >= 0)
        posix_spawn_file_actions_adddup2(&actions, socket, handedSocket);
    pid_t id = -1;
    if (posix_spawn(&id, program.c_str(), &actions, nullptr, pointers.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&actions);
    return id;
}

int waitFor(int id)
{
    int status = 0;
    waitpid(id, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::filesystem::path backendProgram()
{
    return std::filesystem::path(QX_BIN_DIR) / "quorvix-backend";
}

} // namespace

BackendProcess::BackendProcess(const std::filesystem::path& data, const std::filesystem::path& log,
                               const std::vector<std::string>& more)
{
    const RawListener listener;
    std::vector<std::string> arguments{"serve", "--data", data.string(), "--listen-fd", std::to_string(handedSocket)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    id_ = spawn(backendProgram(), arguments, log, listener.socket());
    port_ = listener.port();
}

BackendProcess::~BackendProcess()
{
    if (id_ > 0)
        killNow();
}

int BackendProcess::terminate()
{
    kill(id_, SIGTERM);
    return waitFor(std::exchange(id_, -1));
}

void BackendProcess::killNow()
{
    kill(id_, SIGKILL);
    waitFor(std::exchange(id_, -1));
}

int runBackend(const std::vector<std::string>& arguments, const std::filesystem::path& log)
{
    return waitFor(spawn(backendProgram(), arguments, log));
}

int startShellOfBackend(const std::vector<std::string>& arguments, const std::filesystem::path& numberFile)
{
    std::vector<std::string> shell{"-c", "\"$@\" 2>/dev/null & echo $!; wait", "sh", backendProgram().string()};
    shell.insert(shell.end(), arguments.begin(), arguments.end());
    return spawn("/bin/sh", shell, numberFile);
}

void killProcess(int id)
{
    kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
}

std::vector<int> childrenOf(int parent)
{
    std::vector<int> children;
    for (const auto& entry : std::filesystem::directory_iterator("/proc"))
    {
        const int id = std::atoi(entry.path().filename().c_str());
        if (id > 0 && stateOf(id).second == parent && isRunning(id))
            children.push_back(id);
    }
    return children;
}

bool isRunning(int id)
{
    const char state = stateOf(id).first;
    return state != 0 && state != 'Z' && state != 'X';
}

} // namespace VX::Test
