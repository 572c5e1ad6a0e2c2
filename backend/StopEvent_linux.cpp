#include "StopEvent.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <exception>

namespace VX
{

StopEvent::StopEvent()
    : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (descriptor_ < 0)
        std::terminate();
}

StopEvent::~StopEvent()
{
    close(descriptor_);
}

void StopEvent::set()
{
    const std::uint64_t one = 1;
    // It cannot fail before the counter of an event that nobody reads overflows.
    [[maybe_unused]] const auto written = write(descriptor_, &one, sizeof(one));
}

bool StopEvent::isSet() const
{
    pollfd event{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return poll(&event, 1, 0) > 0;
}

} // namespace VX
