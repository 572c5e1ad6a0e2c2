#include "tests/support/TempDir.h"
#include <quorvix/auth/Credentials.h>

#include <VXMesh/Logger.h>
#include <VXViewer/Viewer.h>

#include <spdlog/logger.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string_view>

// What is read is complete, and its address obeys the rule as a regular expression has it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const VX::Test::TempDir folder;
    static const std::regex address(R"([^ @\\/]+@[^ @\\/]+\.\w+)");
    const auto file = folder.write("c.json", std::string_view(reinterpret_cast<const char*>(data), size));
    VX::Logger::instance().getSpdLogger()->set_level(spdlog::level::off);
    VX::getViewerInstance().setCommandLineArguments({"-creds", file.string()});
    const auto credentials = VX::readCredentials();
    if (credentials && (credentials->email.empty() || credentials->password.empty()))
        std::abort();
    const std::string text(reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 200));
    if (VX::isValidEmail(text) != std::regex_match(text, address))
        std::abort();
    return 0;
}
