#include "ChildProcess.h"
#include "ProcessDescriptor_linux.h"
#include "StopEvent.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t keptErrorBytes = 16U << 10U;

std::string startError(int code)
{
    return fmt::format("The process cannot be started: {}.", std::generic_category().message(code));
}

void closeDescriptor(int& descriptor)
{
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}

/// What the child needs, made before the fork: between fork and exec only system calls are allowed.
struct Launch
{
    const char* program;
    char* const* arguments;
    ProcessLimits limits;
    pid_t parent;
    int nullDevice;
    int errorPipe;
};

void setLimit(__rlimit_resource resource, rlim_t soft, rlim_t hard)
{
    const rlimit limit{.rlim_cur = soft, .rlim_max = hard};
    setrlimit(resource, &limit);
}

void applyLimits(const ProcessLimits& limits)
{
    setLimit(RLIMIT_CORE, 0, 0);
    if (limits.memory > 0)
        setLimit(RLIMIT_DATA, limits.memory, limits.memory);
    const auto seconds = static_cast<rlim_t>(limits.cpuTime.count());
    if (seconds > 0)
        setLimit(RLIMIT_CPU, seconds, seconds + 1); // The first is a signal that tells the reason, the second SIGKILL.
}

/// Where the machine runs out of memory, the system is to end a conversion before anything else of the user's.
void volunteerForMemoryShortage()
{
    constexpr std::array score{'5', '0', '0'};
    const int file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return;
    [[maybe_unused]] const auto written = write(file, score.data(), score.size());
    close(file);
}

[[noreturn]] void runChild(const Launch& launch)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != launch.parent)
        _exit(ChildProcess::cannotRun);

    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    sigaction(SIGPIPE, &standard, nullptr);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);

    dup2(launch.nullDevice, STDIN_FILENO);
    dup2(launch.nullDevice, STDOUT_FILENO);
    dup2(launch.errorPipe, STDERR_FILENO);
    // Libraries open descriptors that an exec would hand on; a client's connection must not live on in a worker.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    volunteerForMemoryShortage();
    applyLimits(launch.limits);
    execv(launch.program, launch.arguments);
    _exit(ChildProcess::cannotRun);
}

} // namespace

tl::expected<ChildProcess, std::string> ChildProcess::start(const std::filesystem::path& program,
                                                            const std::vector<std::string>& arguments,
                                                            const ProcessLimits& limits)
{
    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    std::array<int, 2> pipeEnds{-1, -1};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0)
        return tl::unexpected(startError(errno));
    ChildProcess child;
    child.errorPipe_ = pipeEnds[0];
    fcntl(child.errorPipe_, F_SETFL, O_NONBLOCK);

    int nullDevice = open("/dev/null", O_RDWR | O_CLOEXEC);
    const Launch launch{.program = program.c_str(),
                        .arguments = pointers.data(),
                        .limits = limits,
                        .parent = getpid(),
                        .nullDevice = nullDevice,
                        .errorPipe = pipeEnds[1]};
    const pid_t pid = nullDevice < 0 ? -1 : fork();
    if (pid == 0)
        runChild(launch);
    const int error = errno;
    closeDescriptor(nullDevice);
    closeDescriptor(pipeEnds[1]);
    if (pid < 0)
        return tl::unexpected(startError(error));

    child.pid_ = pid;
    setpgid(pid, pid); // Here too, so that the group exists whichever of the two comes first.
    child.processDescriptor_ = openProcessDescriptor(pid);
    if (child.processDescriptor_ < 0)
        return tl::unexpected(startError(errno));
    return child;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, -1))
    , processDescriptor_(std::exchange(other.processDescriptor_, -1))
    , errorPipe_(std::exchange(other.errorPipe_, -1))
    , errorOutput_(std::move(other.errorOutput_))
{
}

ChildProcess::~ChildProcess()
{
    if (pid_ > 0)
    {
        kill(pid_, SIGKILL); // It may not be in its group yet.
        (void)reap_();
    }
    closeDescriptor(processDescriptor_);
    closeDescriptor(errorPipe_);
}

std::optional<ProcessEnd> ChildProcess::wait(std::chrono::steady_clock::time_point until, const StopEvent& stop)
{
    for (;;)
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        const auto timeout = std::clamp<std::int64_t>(left.count(), 0, 3'600'000);
        std::array<pollfd, 3> events{pollfd{.fd = processDescriptor_, .events = POLLIN, .revents = 0},
                                     pollfd{.fd = stop.descriptor(), .events = POLLIN, .revents = 0},
                                     pollfd{.fd = errorPipe_, .events = POLLIN, .revents = 0}};
        poll(events.data(), events.size(), static_cast<int>(timeout));
        if (events[2].revents != 0)
            readErrors_();
        if (events[0].revents != 0)
            return reap_();
        if (events[1].revents != 0 || std::chrono::steady_clock::now() >= until)
            return std::nullopt;
    }
}

void ChildProcess::readErrors_()
{
    std::array<char, 4096> buffer;
    for (;;)
    {
        const ssize_t count = read(errorPipe_, buffer.data(), buffer.size());
        if (count < 0)
            return;
        if (count == 0)
            return closeDescriptor(errorPipe_); // poll leaves a descriptor of -1 out
        errorOutput_.append(buffer.data(), static_cast<std::size_t>(count));
        if (errorOutput_.size() > keptErrorBytes)
            errorOutput_.erase(0, errorOutput_.size() - keptErrorBytes);
    }
}

ProcessEnd ChildProcess::reap_()
{
    // What it started must not outlive it. Before the wait, because the number may belong to others afterwards.
    kill(-pid_, SIGKILL);
    int status = 0;
    rusage usage{};
    while (wait4(pid_, &status, 0, &usage) < 0 && errno == EINTR)
        continue;
    pid_ = -1;
    if (errorPipe_ >= 0)
        readErrors_();

    ProcessEnd end;
    end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    end.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    end.cpuTimeOver = end.signal == SIGXCPU;
    end.peakMemory = static_cast<std::uint64_t>(usage.ru_maxrss) << 10U;
    end.errorOutput = std::move(errorOutput_);
    return end;
}

} // namespace VX
