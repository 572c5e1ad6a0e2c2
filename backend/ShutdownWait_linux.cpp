#include "ProcessDescriptor_linux.h"
#include "ShutdownWait.h"

#include <fmt/format.h>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::string startError(int code)
{
    return fmt::format("The service cannot be started: {}.", std::generic_category().message(code));
}

} // namespace

tl::expected<ShutdownWait, std::string> ShutdownWait::create(int parent)
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&set, signal);
    if (const int error = pthread_sigmask(SIG_BLOCK, &set, nullptr); error != 0)
        return tl::unexpected(startError(error));
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, nullptr);
    sigaction(SIGXFSZ, &ignore, nullptr);

    ShutdownWait wait;
    wait.signals_ = signalfd(-1, &set, SFD_CLOEXEC);
    if (wait.signals_ < 0)
        return tl::unexpected(startError(errno));
    if (parent == 0)
        return wait;

    // A signal on the parent's death would come when the thread ends that started us, not only with the whole process.
    wait.parent_ = openProcessDescriptor(parent);
    if (wait.parent_ < 0 || getppid() != parent)
        return tl::unexpected(startError(wait.parent_ < 0 ? errno : ESRCH));
    return wait;
}

ShutdownWait::ShutdownWait(ShutdownWait&& other) noexcept
    : signals_(std::exchange(other.signals_, -1))
    , parent_(std::exchange(other.parent_, -1))
{
}

ShutdownWait::~ShutdownWait()
{
    for (const int descriptor : {signals_, parent_})
        if (descriptor >= 0)
            close(descriptor);
}

void ShutdownWait::wait()
{
    std::array<pollfd, 2> events{pollfd{.fd = signals_, .events = POLLIN, .revents = 0},
                                 pollfd{.fd = parent_, .events = POLLIN, .revents = 0}};
    while (poll(events.data(), events.size(), -1) <= 0)
        continue;
}

} // namespace VX
