#include <quorvix/setup/Version.h>

#include <VXMesh/SystemPath.h>
#include <VXMesh/Version.h>

#include <algorithm>

namespace VX
{

std::string versionNoSpaces(bool withPrefix)
{
    std::string version = GetVXVersionString();
    std::replace(version.begin(), version.end(), ' ', '-');
    if (!withPrefix)
        return version;
    const auto executable = SystemPath::getExecutablePath();
    if (executable && executable->stem() == "Quorvix")
        return "QX_" + version;
    return version;
}

} // namespace VX
