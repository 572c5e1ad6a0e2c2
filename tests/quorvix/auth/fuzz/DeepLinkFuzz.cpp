#include "tests/support/TempConfig.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/WebAuth.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>

// A link is refused and changes nothing, or stored so that it can be loaded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const VX::Test::TempConfig config;
    const VX::AuthToken before{"ann@example.com", "token", "endpoint"};
    VX::saveAuthToken(before);
    try
    {
        VX::notifyWebAuth("QuorvixDeepLinkFuzz", std::string(reinterpret_cast<const char*>(data), size), "QuorvixTest");
    }
    catch (const std::exception&)
    {
        if (VX::loadAuthToken() != before)
            std::abort();
        return 0;
    }
    if (VX::loadAuthToken().endpoint.size() != 36)
        std::abort();
    return 0;
}
