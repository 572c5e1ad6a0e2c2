#include "BackendProcess.h"
#include "tests/support/RawSocket.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <utility>

namespace VX::Test
{

namespace
{

constexpr int handedSocket = 10;

int spawn(const std::filesystem::path& program, const std::vector<std::string>& arguments,
          const std::filesystem::path& log, int socket = -1, const std::filesystem::path& input = "/dev/null")
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
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
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

int runBackend(const std::vector<std::string>& arguments, const std::filesystem::path& log,
               const std::filesystem::path& input)
{
    return waitFor(spawn(backendProgram(), arguments, log, -1, input));
}

int startShellOfBackend(const std::vector<std::string>& arguments, const std::filesystem::path& numberFile)
{
    std::vector<std::string> shell{"-c", "\"$@\" --exit-with-parent $$ 2>/dev/null & echo $!; wait", "sh",
                                   backendProgram().string()};
    shell.insert(shell.end(), arguments.begin(), arguments.end());
    return spawn("/bin/sh", shell, numberFile);
}

} // namespace VX::Test
