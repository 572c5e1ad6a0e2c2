#pragma once

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace VX
{

/// A descriptor that becomes readable when the process has ended; -1, with errno set, where there is none.
/// The header that declares the system's own function cannot be used from C++ with Debian 12's library.
inline int openProcessDescriptor(pid_t process)
{
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

} // namespace VX
