#include "Futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <system_error>

namespace VX
{

static_assert(std::atomic<std::uint32_t>::is_always_lock_free && sizeof(std::atomic<std::uint32_t>) == 4);

void futexWait(const std::atomic<std::uint32_t>& word, std::uint32_t value)
{
    if (::syscall(SYS_futex, &word, FUTEX_WAIT, value, nullptr, nullptr, 0) != 0 && errno != EAGAIN && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "futex wait");
}

void futexAddAndWake(std::atomic<std::uint32_t>& word, unsigned bit)
{
    // Adding in user space and waking by a second call would leave the others asleep if the process died in between.
    constexpr unsigned operation = FUTEX_OP_ADD | FUTEX_OP_OPARG_SHIFT;
    const unsigned encoded = operation << 28U | (bit & 0xfffU) << 12U;
    if (::syscall(SYS_futex, &word, FUTEX_WAKE_OP, INT_MAX, INT_MAX, &word, encoded) < 0)
        throw std::system_error(errno, std::generic_category(), "futex wake");
}

} // namespace VX
