#include "MachineMemory.h"

#include <unistd.h>

namespace VX
{

std::uint64_t machineMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size) : 0;
}

} // namespace VX
