#include "launcher/ParentWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <thread>
#include <utility>

namespace VX
{

class ParentWatch::Impl
{
public:
    Impl(int parent, std::function<void()> ended)
        : ended_(std::move(ended))
        , stopEvent_(::eventfd(0, EFD_CLOEXEC))
        // The header that declares the system's own function cannot be used from C++ with Debian 12's library.
        , process_(static_cast<int>(::syscall(SYS_pidfd_open, parent, 0)))
        // Looked at once the number stands for one process for good: it may have been given to another before.
        , isParent_(process_ >= 0 && ::getppid() == parent)
        , thread_([this] { watch_(); })
    {
    }

    ~Impl()
    {
        const std::uint64_t one = 1;
        static_cast<void>(!::write(stopEvent_, &one, sizeof one));
        thread_.join();
        if (process_ >= 0)
            ::close(process_);
        ::close(stopEvent_);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    void watch_() const
    {
        std::array<pollfd, 2> entries{{{stopEvent_, POLLIN, 0}, {process_, POLLIN, 0}}};
        while (isParent_ && ::poll(entries.data(), entries.size(), -1) < 0)
        {
        }
        if (entries[0].revents == 0)
            ended_();
    }

    const std::function<void()> ended_;
    const int stopEvent_;
    const int process_;
    const bool isParent_;
    std::thread thread_;
};

ParentWatch::ParentWatch(int parent, std::function<void()> ended)
    : impl_(std::make_unique<Impl>(parent, std::move(ended)))
{
}

ParentWatch::~ParentWatch() = default;

} // namespace VX
