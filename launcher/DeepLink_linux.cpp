#include "launcher/DeepLink.h"
#include <quorvix/auth/WebAuth.h>

#include <VXInterprocess/SharedMemory.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <string.h> // NOLINT(modernize-deprecated-headers): for explicit_bzero
#include <unistd.h>

#include <exception>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* applicationName = "Quorvix";
constexpr std::string_view option = "-url";

bool processDeepLink(std::vector<std::string>& arguments)
{
    std::string program = applicationName;
    std::vector<char*> argv{program.data()};
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    return processDeepLinkAuth(static_cast<int>(argv.size()), argv.data(), getDefaultSharedMemoryName(),
                               applicationName);
}

void removeLinks(std::vector<std::string>& arguments)
{
    std::vector<std::string> kept;
    bool marked = false;
    for (std::string& argument : arguments)
    {
        const bool marks = argument == option;
        if (marked && !marks)
            explicit_bzero(argument.data(), argument.size());
        else if (!marks)
            kept.push_back(std::move(argument));
        marked = marks;
    }
    arguments = std::move(kept);
}

} // namespace

tl::expected<DeepLink, std::string> handOverDeepLink(std::vector<std::string>& arguments)
{
    setDefaultSharedMemoryNamePrefix(fmt::format("Quorvix-{}", ::geteuid()));
    try
    {
        if (!processDeepLink(arguments))
            return DeepLink::None;
    }
    catch (const std::exception& error)
    {
        spdlog::debug("A sign-in link was refused: {}", error.what());
        return tl::unexpected<std::string>("The sign-in link cannot be read. Start the sign-in again in the browser.");
    }
    removeLinks(arguments);
    const SharedMemory channel(getDefaultSharedMemoryName(), false);
    return channel.listenerCount() > 0 ? DeepLink::Taken : DeepLink::Stored;
}

void wipeDeepLinks(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
    {
        const std::string_view before = argv[i - 1];
        const std::string_view argument = argv[i];
        if ((before == "-url" || before == "--url") && argument != "-url" && argument != "--url")
            explicit_bzero(argv[i], argument.size());
    }
}

} // namespace VX
