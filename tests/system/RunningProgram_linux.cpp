#include "RunningProgram.h"
#include "tests/support/Processes.h"
#include "tests/support/TempDir.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <utility>

namespace VX::Test
{

RunningProgram::RunningProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                               std::filesystem::path folder)
    : folder_(std::move(folder))
{
    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    const auto output = folder_ / "stdout";
    const auto errors = folder_ / "stderr";
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), flags, 0600);
    if (posix_spawn(&id_, program.c_str(), &actions, nullptr, pointers.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&actions);
}

RunningProgram::RunningProgram(RunningProgram&& other) noexcept
    : folder_(std::move(other.folder_))
    , id_(std::exchange(other.id_, -1))
{
}

RunningProgram::~RunningProgram()
{
    if (id_ > 0)
        killProcess(id_);
}

void RunningProgram::send(int signal) const
{
    ::kill(id_, signal);
}

ProgramResult RunningProgram::wait()
{
    int status = 0;
    ::waitpid(std::exchange(id_, -1), &status, 0);
    return {.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status),
            .output = readFile(folder_ / "stdout"),
            .errors = readFile(folder_ / "stderr")};
}

} // namespace VX::Test
