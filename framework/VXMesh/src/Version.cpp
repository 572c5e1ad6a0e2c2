#include <VXMesh/SystemFacts.h>
#include <VXMesh/Version.h>

namespace VX
{

std::string GetVXVersionString()
{
    const auto facts = overriddenSystemFacts();
    return facts.version ? *facts.version : VX_VERSION;
}

} // namespace VX
