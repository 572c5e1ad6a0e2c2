#include <quorvix/setup/Version.h>

#include <VXMesh/Version.h>

#include <cstdio>

#if defined(QX_VERSION_WITH_BLANK)
namespace VX
{

// The program's own definition comes before that of the library.
std::string GetVXVersionString()
{
    return "1.2.3 beta 4";
}

} // namespace VX
#endif

int main()
{
    std::printf("%s %s", VX::versionNoSpaces(false).c_str(), VX::versionNoSpaces(true).c_str());
    return 0;
}
