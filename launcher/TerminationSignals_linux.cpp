#include "launcher/TerminationSignals.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <thread>
#include <utility>

namespace VX
{

namespace
{

constexpr std::array handledSignals{SIGINT, SIGTERM, SIGHUP};

/// What the signal handler can reach: an event counter, -1 without a listener.
std::atomic<int>& eventOfSignals()
{
    static std::atomic<int> event = -1;
    return event;
}

void endAtSignals()
{
    for (const int signal : handledSignals)
        ::signal(signal, SIG_DFL);
}

void addTo(int event)
{
    const std::uint64_t one = 1;
    static_cast<void>(!::write(event, &one, sizeof one));
}

extern "C" void noteSignal(int)
{
    const int savedError = errno;
    // The next one, of whatever kind, ends the process.
    endAtSignals();
    addTo(eventOfSignals());
    errno = savedError;
}

extern "C" void passOver(int) {}

} // namespace

class TerminationSignals::Impl
{
public:
    explicit Impl(std::function<void()> requestEnd)
        : requestEnd_(std::move(requestEnd))
        , event_(::eventfd(0, EFD_CLOEXEC))
    {
        eventOfSignals() = event_;
        struct sigaction action{};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        for (const int signal : handledSignals)
            ::sigaction(signal, &action, nullptr);
        // Handled instead of ignored: programs that this one starts would ignore it too.
        action.sa_handler = passOver;
        ::sigaction(SIGPIPE, &action, nullptr);
        thread_ = std::thread([this] { listen_(); });
    }

    ~Impl()
    {
        endAtSignals();
        ending_ = true;
        addTo(event_);
        thread_.join();
        eventOfSignals() = -1;
        ::close(event_);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    void listen_()
    {
        std::uint64_t count = 0;
        while (::read(event_, &count, sizeof count) < 0 && errno == EINTR)
        {
        }
        if (!ending_)
            requestEnd_();
    }

    const std::function<void()> requestEnd_;
    const int event_;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

TerminationSignals::TerminationSignals(std::function<void()> requestEnd)
    : impl_(std::make_unique<Impl>(std::move(requestEnd)))
{
}

TerminationSignals::~TerminationSignals() = default;

} // namespace VX
