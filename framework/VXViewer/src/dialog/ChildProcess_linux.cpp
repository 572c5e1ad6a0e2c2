#include "BackgroundTasks.h"
#include "ChildProcess.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/ThreadAnnotations.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::string reasonOf(int error)
{
    return std::generic_category().message(error);
}

/// The form that the system wants; the texts live as long as `program` and `arguments`.
std::vector<char*> argumentArray(const std::string& program, const std::vector<std::string>& arguments)
{
    // The system's interface is older than const; it does not write.
    std::vector<char*> array{const_cast<char*>(program.c_str())}; // NOLINT
    for (const std::string& argument : arguments)
        array.push_back(const_cast<char*>(argument.c_str())); // NOLINT
    array.push_back(nullptr);
    return array;
}

/// What a child gets in place of the parent's standard streams.
class SpawnActions
{
public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }

    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    void silence(int fd) { posix_spawn_file_actions_addopen(&actions_, fd, "/dev/null", O_RDWR, 0); }

    void redirect(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// Signals as a program expects them, and a session of its own for one that is let go.
class SpawnAttributes
{
public:
    explicit SpawnAttributes(bool ownSession)
    {
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes_, &none);
        const int session = ownSession ? POSIX_SPAWN_SETSID : 0;
        posix_spawnattr_setflags(&attributes_, static_cast<short>(POSIX_SPAWN_SETSIGMASK | session));
    }

    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }

    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// Programs that were let go. One that has ended stays in the system's table until it is waited for.
class DetachedChildren
{
public:
    static DetachedChildren& instance()
    {
        static DetachedChildren children;
        return children;
    }

    ~DetachedChildren()
    {
        {
            const MutexLock lock(mutex_);
            ending_ = true;
        }
        changed_.notify_all();
    }

    DetachedChildren(const DetachedChildren&) = delete;
    DetachedChildren& operator=(const DetachedChildren&) = delete;

    void add(pid_t child, const std::function<void()>& onFailure)
    {
        if (onFailure)
            watchers_.start([this, child, onFailure] { watch_(child, onFailure); });
        else
            keep_(child);
    }

private:
    DetachedChildren() = default;

    void keep_(pid_t child)
    {
        const MutexLock lock(mutex_);
        std::erase_if(children_, [](pid_t each) { return waitpid(each, nullptr, WNOHANG) != 0; });
        children_.push_back(child);
    }

    void watch_(pid_t child, const std::function<void()>& onFailure)
    {
        const auto end = std::chrono::steady_clock::now() + watchedTime;
        int status = 0;
        bool hasEnded = false;
        {
            MutexLock lock(mutex_);
            while (!ending_ && !hasEnded && std::chrono::steady_clock::now() < end)
            {
                changed_.wait_for(lock, watchInterval);
                hasEnded = waitpid(child, &status, WNOHANG) == child;
            }
        }
        if (!hasEnded)
            keep_(child);
        else if (status != 0)
            onFailure();
    }

    static constexpr std::chrono::seconds watchedTime{10};
    static constexpr std::chrono::milliseconds watchInterval{50};

    Mutex mutex_;
    std::condition_variable_any changed_;
    std::vector<pid_t> children_ VX_GUARDED_BY(mutex_);
    bool ending_ VX_GUARDED_BY(mutex_) = false;
    /// Last: its end waits for those that use the others.
    BackgroundTasks watchers_{4};
};

} // namespace

tl::expected<void, std::string> startDetached(const std::string& program, const std::vector<std::string>& arguments,
                                              const std::function<void()>& onFailure)
{
    const std::vector<char*> array = argumentArray(program, arguments);
    SpawnActions actions;
    actions.silence(STDIN_FILENO);
    actions.silence(STDOUT_FILENO);
    actions.silence(STDERR_FILENO);
    const SpawnAttributes attributes(true);
    pid_t child = -1;
    const int error = posix_spawnp(&child, program.c_str(), actions.get(), attributes.get(), array.data(), environ);
    if (error != 0)
        return tl::make_unexpected(reasonOf(error));
    DetachedChildren::instance().add(child, onFailure);
    return {};
}

struct ChildProcess::State
{
    State(pid_t child, int outputPipe)
        : pid(child)
        , output(outputPipe)
    {
    }

    Mutex mutex;
    pid_t pid VX_GUARDED_BY(mutex); ///< -1 once it was waited for
    int output;
};

tl::expected<std::unique_ptr<ChildProcess>, std::string> ChildProcess::start(const std::filesystem::path& program,
                                                                             const std::vector<std::string>& arguments)
{
    std::array<int, 2> pipe{-1, -1};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        return tl::make_unexpected(reasonOf(errno));
    const std::string name = utf8string(program);
    const std::vector<char*> array = argumentArray(name, arguments);
    SpawnActions actions;
    actions.silence(STDIN_FILENO);
    actions.redirect(pipe[1], STDOUT_FILENO);
    const SpawnAttributes attributes(false);
    pid_t child = -1;
    const int error = posix_spawn(&child, name.c_str(), actions.get(), attributes.get(), array.data(), environ);
    close(pipe[1]);
    if (error != 0)
    {
        close(pipe[0]);
        return tl::make_unexpected(reasonOf(error));
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::make_unique<State>(child, pipe[0])));
}

ChildProcess::ChildProcess(std::unique_ptr<State> state)
    : state_(std::move(state))
{
}

ChildProcess::~ChildProcess()
{
    terminate();
    static_cast<void>(wait());
    close(state_->output);
}

ChildProcess::Result ChildProcess::wait()
{
    Result result;
    std::array<char, 4096> buffer{};
    while (true)
    {
        const ssize_t size = read(state_->output, buffer.data(), buffer.size());
        if (size > 0)
            result.output.append(buffer.data(), static_cast<std::size_t>(size));
        else if (size == 0 || errno != EINTR)
            break;
    }
    pid_t pid = -1;
    {
        const MutexLock lock(state_->mutex);
        pid = state_->pid;
    }
    if (pid < 0)
        return result;
    // Left as a zombie until `terminate` cannot reach the number any more, which the system may give away then.
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR)
    {
    }
    const MutexLock lock(state_->mutex);
    state_->pid = -1;
    int status = 0;
    if (waitpid(pid, &status, 0) == pid && WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    return result;
}

void ChildProcess::terminate()
{
    const MutexLock lock(state_->mutex);
    if (state_->pid > 0)
        kill(state_->pid, SIGTERM);
}

} // namespace VX
