#include "launcher/SupervisedProcess.h"

#include <spdlog/spdlog.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace VX
{

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int inheritedFd = 3;
constexpr auto stopPatience = 2s;
constexpr auto longestPause = 10000ms;
/// A process that lived so long is no longer counted as failing.
constexpr auto healthyLife = 30s;

bool waitReadable(int fd, std::chrono::milliseconds timeout)
{
    pollfd entry{fd, POLLIN, 0};
    return poll(&entry, 1, static_cast<int>(timeout.count())) > 0;
}

} // namespace

class SupervisedProcess::Impl
{
public:
    explicit Impl(Command command)
        : command_(std::move(command))
        , stopEvent_(eventfd(0, EFD_CLOEXEC))
        // The process ends with the thread that started it, so one thread starts and watches it for good.
        , thread_([this] { supervise_(); })
    {
    }

    ~Impl()
    {
        const std::uint64_t one = 1;
        (void)!write(stopEvent_, &one, sizeof one);
        thread_.join();
        close(stopEvent_);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    void supervise_()
    {
        auto pause = 0ms;
        do
        {
            const auto started = Clock::now();
            if (runOnce_())
                return;
            spdlog::warn("The local services ended unexpectedly and are started again");
            if (Clock::now() - started > healthyLife)
                pause = 0ms;
            const auto wait = pause;
            pause = std::min(longestPause, std::max(100ms, pause * 2));
            if (waitReadable(stopEvent_, wait))
                return;
        } while (true);
    }

    /// Starts the process and waits. @return true when it was stopped on request, false when it ended by itself
    bool runOnce_()
    {
        pid_t pid = -1;
        if (const int error = spawn_(pid); error != 0)
        {
            spdlog::error("Cannot start the local services: errno {}", error);
            return waitReadable(stopEvent_, longestPause);
        }
        const auto process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
        pollfd entries[]{{stopEvent_, POLLIN, 0}, {process, POLLIN, 0}};
        while (poll(entries, 2, -1) < 0)
        {
        }
        const bool stopped = (entries[0].revents & POLLIN) != 0;
        if (stopped)
        {
            kill(pid, SIGTERM);
            if (!waitReadable(process, stopPatience))
                kill(pid, SIGKILL);
        }
        close(process);
        waitpid(pid, nullptr, 0);
        return stopped;
    }

    int spawn_(pid_t& pid)
    {
        const auto program = command_.executable.string();
        std::vector<char*> arguments{const_cast<char*>(program.c_str())};
        for (const auto& argument : command_.arguments)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (command_.inheritedFd >= 0)
            posix_spawn_file_actions_adddup2(&actions, command_.inheritedFd, inheritedFd);
        const auto log = command_.logFile.string();
        if (!log.empty())
            posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                             S_IRUSR | S_IWUSR);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        // A Ctrl+C in the terminal is for the program, which then stops the process in order.
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
        const int error = posix_spawn(&pid, program.c_str(), &actions, &attributes, arguments.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        return error;
    }

    const Command command_;
    const int stopEvent_;
    std::thread thread_;
};

SupervisedProcess::SupervisedProcess(Command command)
    : impl_(std::make_unique<Impl>(std::move(command)))
{
}

SupervisedProcess::~SupervisedProcess() = default;

} // namespace VX
