// A library that the viewer loads in a test; it writes down its calls in the environment.

#include <cstdlib>
#include <string>

namespace
{

void note(const char* what)
{
    const char* before = std::getenv("QX_TEST_EXTENSION_CALLS");
    setenv("QX_TEST_EXTENSION_CALLS", (std::string(before ? before : "") + what).c_str(), 1);
}

} // namespace

extern "C" __attribute__((visibility("default"))) void vxExtensionEntry()
{
    note("entry ");
}

extern "C" __attribute__((visibility("default"))) void vxExtensionExit()
{
    note("exit ");
}
