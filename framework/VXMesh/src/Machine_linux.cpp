#include "Machine.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string_view>

namespace VX::Machine
{

namespace
{

utsname kernel()
{
    utsname names = {};
    ::uname(&names);
    return names;
}

// The value of a `KEY=value` or `KEY="value"` line of os-release(5), empty where there is none.
std::string osReleaseValue(std::string_view key)
{
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"})
    {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);)
        {
            if (!line.starts_with(key) || line.size() <= key.size() || line[key.size()] != '=')
                continue;
            std::string value = line.substr(key.size() + 1);
            std::erase_if(value, [](char c) { return c == '"' || c == '\''; });
            return value;
        }
    }
    return {};
}

} // namespace

std::string osNoSpaces()
{
    std::string name = osReleaseValue("ID");
    if (name.empty())
        name = "linux";
    name += '_';
    name += kernel().machine;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string detailedOsName()
{
    std::string name = osReleaseValue("PRETTY_NAME");
    if (!name.empty())
        return name;
    const utsname names = kernel();
    return std::string(names.sysname) + ' ' + names.release;
}

std::string cpuName()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("model name"))
            if (const auto colon = line.find(": "); colon != std::string::npos)
                return line.substr(colon + 2);
    // Processors other than x86 have no such line.
    return kernel().machine;
}

std::uint64_t memoryBytes()
{
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageSize = ::sysconf(_SC_PAGE_SIZE);
    return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
}

} // namespace VX::Machine
