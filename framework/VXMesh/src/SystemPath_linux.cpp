#include "StartLower.h"

#include <VXMesh/SystemFacts.h>
#include <VXMesh/SystemPath.h>

namespace VX
{

tl::expected<std::filesystem::path, std::string> SystemPath::getExecutablePath()
{
    if (auto path = overriddenSystemFacts().executablePath)
        return *path;
    std::error_code error;
    std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        return tl::unexpected("Cannot find the program's own file: " + startLower(error.message()) + '.');
    return path;
}

} // namespace VX
