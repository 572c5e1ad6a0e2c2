#include "tests/support/TempConfig.h"
#include <quorvix/auth/AuthToken.h>

#include <VXMesh/UserFolders.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

// What can be loaded is the same once it was saved.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const VX::Test::TempConfig config;
    config.folder().write(VX::getUserConfigDir() / "Token/.token",
                          std::string_view(reinterpret_cast<const char*>(data), size));
    const VX::AuthToken token = VX::loadAuthToken();
    VX::saveAuthToken(token);
    const VX::AuthToken again = VX::loadAuthToken();
    VX::saveAuthToken(again);
    // Bytes that are no UTF-8 are replaced by the first of the two.
    if (again != VX::loadAuthToken() || token.token.empty() != again.token.empty())
        std::abort();
    return 0;
}
