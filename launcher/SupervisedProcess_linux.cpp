#include "launcher/SupervisedProcess.h"

#include <VXMesh/FileError.h>

#include <fmt/format.h>
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
#include <array>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

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
/// Of what the process writes, so much is remembered to tell why it ended.
constexpr std::size_t keptBytes = 4096;

bool waitReadable(int fd, std::chrono::milliseconds timeout)
{
    pollfd entry{fd, POLLIN, 0};
    return poll(&entry, 1, static_cast<int>(timeout.count())) > 0;
}

/// What a process writes to its standard error, passed on to its log. Through a pipe the reason for its end is known
/// also where a full disk takes no more lines.
class ErrorOutput
{
public:
    explicit ErrorOutput(const std::filesystem::path& logFile)
    {
        // Not waited for on this side alone: the process may have more to say than the pipe holds.
        if (pipe2(pipe_.data(), O_CLOEXEC) == 0)
            fcntl(pipe_[0], F_SETFL, O_NONBLOCK);
        if (!logFile.empty())
            log_ = ::open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR);
    }

    ~ErrorOutput()
    {
        closeWriteEnd();
        for (const int fd : {pipe_[0], log_})
            if (fd >= 0)
                close(fd);
    }

    ErrorOutput(const ErrorOutput&) = delete;
    ErrorOutput& operator=(const ErrorOutput&) = delete;

    [[nodiscard]] int readEnd() const { return pipe_[0]; }

    [[nodiscard]] int writeEnd() const { return pipe_[1]; }

    void closeWriteEnd()
    {
        if (pipe_[1] >= 0)
            close(std::exchange(pipe_[1], -1));
    }

    /// Passes on what there is. @return false at its end
    bool passOn()
    {
        std::array<char, 4096> buffer;
        ssize_t count = 0;
        while ((count = read(pipe_[0], buffer.data(), buffer.size())) > 0)
        {
            const auto bytes = static_cast<std::size_t>(count);
            static_cast<void>(!::write(log_ >= 0 ? log_ : STDERR_FILENO, buffer.data(), bytes));
            kept_.append(buffer.data(), bytes);
            if (kept_.size() > keptBytes)
                kept_.erase(0, kept_.size() - keptBytes);
        }
        return count < 0;
    }

    [[nodiscard]] std::string lastLine() const
    {
        const auto end = kept_.find_last_not_of('\n');
        if (end == std::string::npos)
            return {};
        const auto begin = kept_.rfind('\n', end);
        return kept_.substr(begin == std::string::npos ? 0 : begin + 1, end - begin);
    }

private:
    std::array<int, 2> pipe_{-1, -1};
    int log_ = -1;
    std::string kept_;
};

/// Why a process ended, in a sentence; empty where it did not end by itself.
std::string reasonOf(int status, const ErrorOutput& output)
{
    if (!WIFEXITED(status))
        return {};
    // Only then the last line is for the user.
    auto sentence = WEXITSTATUS(status) == 1 ? output.lastLine() : std::string();
    return sentence.empty() ? fmt::format("It ended with status {}.", WEXITSTATUS(status)) : sentence;
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
            if (Clock::now() - started > healthyLife)
                pause = 0ms;
            // One that fails again and again is not worth a line each time.
            spdlog::log(pause == 0ms ? spdlog::level::info : spdlog::level::debug,
                        "The local services ended unexpectedly and are started again");
            const auto wait = pause;
            pause = std::min(longestPause, std::max(100ms, pause * 2));
            if (waitReadable(stopEvent_, wait))
                return;
        } while (true);
    }

    /// Starts the process and waits. @return true when it was stopped on request or has finished, false when it is to
    /// be started again
    bool runOnce_()
    {
        ErrorOutput output(command_.logFile);
        pid_t pid = -1;
        if (const int error = spawn_(pid, output.writeEnd()); error != 0)
        {
            reportEnd_(fileErrorText("start", command_.executable, {error, std::generic_category()}));
            return false;
        }
        output.closeWriteEnd();
        const auto process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
        const bool stopped = waitForEnd_(process, output);
        if (stopped)
        {
            kill(pid, SIGTERM);
            if (!waitReadable(process, stopPatience))
                kill(pid, SIGKILL);
        }
        close(process);
        int status = 0;
        waitpid(pid, &status, 0);
        output.passOn();
        if (stopped || (command_.mayFinish && WIFEXITED(status) && WEXITSTATUS(status) == 0))
            return true;
        reportEnd_(reasonOf(status, output));
        return false;
    }

    /// @return whether the process is to be stopped; false where it has ended
    [[nodiscard]] bool waitForEnd_(int process, ErrorOutput& output) const
    {
        std::array<pollfd, 3> entries{{{stopEvent_, POLLIN, 0}, {process, POLLIN, 0}, {output.readEnd(), POLLIN, 0}}};
        while (true)
        {
            if (poll(entries.data(), entries.size(), -1) < 0)
                continue;
            if (entries[2].revents != 0 && !output.passOn())
                entries[2].fd = -1; // poll leaves it out
            if (entries[0].revents != 0)
                return true;
            if (entries[1].revents != 0)
                return false;
        }
    }

    void reportEnd_(const std::string& reason) const
    {
        if (command_.ended)
            command_.ended(reason);
    }

    [[nodiscard]] int spawn_(pid_t& pid, int errorOutput) const
    {
        const auto program = command_.executable.string();
        std::vector<char*> arguments{const_cast<char*>(program.c_str())};
        for (const auto& argument : command_.arguments)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (command_.silent)
        {
            posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
            posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        }
        if (errorOutput >= 0)
            posix_spawn_file_actions_adddup2(&actions, errorOutput, STDERR_FILENO);
        if (command_.inheritedFd >= 0)
            posix_spawn_file_actions_adddup2(&actions, command_.inheritedFd, inheritedFd);
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
