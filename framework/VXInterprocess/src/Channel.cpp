#include "Channel.h"

#include "Futex.h"

#include <mutex>

namespace VX
{

namespace
{

// The low bits of the bell are those of the number of steps; the bits above change with each call of `rouse` too, and
// what overflows from below does no harm there.
constexpr unsigned stepBits = 24;
constexpr std::uint64_t stepMask = (1U << stepBits) - 1;

// Shortly before the low bits overflow, so that this is nothing rare.
constexpr std::uint64_t firstStep = stepMask - 20;

} // namespace

Channel::Channel()
    : announced_(firstStep)
    , bell_(static_cast<std::uint32_t>(firstStep))
{
}

void Channel::notify(const std::function<void()>& action)
{
    const std::lock_guard lock(mutex_);
    action();
    announced_ = look().step + 1;
    futexAddAndWake(bell_, 0);
}

Channel::Look Channel::look() const
{
    const std::uint32_t bell = bell_;
    // Read after the bell, so it is ahead of it if anything, by fewer steps than the low bits can count.
    const std::uint64_t announced = announced_;
    return {announced - ((announced - bell) & stepMask), bell};
}

void Channel::sleep(const Look& last) const
{
    futexWait(bell_, last.bell);
}

void Channel::rouse()
{
    futexAddAndWake(bell_, stepBits);
}

} // namespace VX
