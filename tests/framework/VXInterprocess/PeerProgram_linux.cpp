#include "PeerProgram.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

namespace VX::Test
{

int startPeer(const std::string& role, const std::string& channel, int input, int output)
{
    std::array<std::string, 3> texts{QX_TEST_PEER, role, channel};
    const std::array<char*, 4> arguments{texts[0].data(), texts[1].data(), texts[2].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (input >= 0)
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    if (output >= 0)
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t id = -1;
    if (::posix_spawn(&id, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&actions);
    return id;
}

void killPeer(int id)
{
    ::kill(id, SIGKILL);
    // A traced one tells once more that it stops.
    int status = 0;
    while (::waitpid(id, &status, 0) == id && !WIFSIGNALED(status) && !WIFEXITED(status))
    {
    }
}

} // namespace VX::Test
