#include "launcher/LocalServices.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace VX
{

namespace
{

constexpr std::uintmax_t largestLog = 5U << 20U;

/// Where the services' log goes, after an overlong one has made room; empty where there can be none.
std::filesystem::path serviceLog()
{
    const auto folder = getUserStateDir() / "log";
    if (!createUserFolder(folder))
        return {};
    auto file = folder / "services.log";
    std::error_code missing;
    const auto size = std::filesystem::file_size(file, missing);
    if (!missing && size > largestLog)
        std::filesystem::rename(file, folder / "services.1.log", missing);
    return file;
}

bool waitReadable(int socket)
{
    pollfd entry{socket, POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

} // namespace

tl::expected<std::unique_ptr<LocalServices>, std::string> LocalServices::bind()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (socket < 0 || ::bind(socket, generic, size) != 0 || listen(socket, SOMAXCONN) != 0 ||
        getsockname(socket, generic, &size) != 0)
    {
        const int error = errno;
        if (socket >= 0)
            close(socket);
        return tl::unexpected(fmt::format("Cannot open a local port for the conversion service: errno {}.", error));
    }
    return std::unique_ptr<LocalServices>(new LocalServices(socket, ntohs(address.sin_port)));
}

std::filesystem::path LocalServices::program()
{
    return SystemPath::getExecutablePath().value_or(std::filesystem::path()).parent_path() / "quorvix-backend";
}

std::filesystem::path LocalServices::dataFolder()
{
    return getUserDataDir() / "services";
}

LocalServices::LocalServices(int socket, std::uint16_t port)
    : socket_(socket)
    , port_(port)
{
}

LocalServices::~LocalServices()
{
    process_.reset();
    close(socket_);
}

void LocalServices::start()
{
    std::call_once(started_,
                   [this]
                   {
                       process_ = std::make_unique<SupervisedProcess>(
                           SupervisedProcess::Command{program(),
                                                      {"serve", "--listen-fd", "3", "--data", utf8string(dataFolder()),
                                                       "--exit-with-parent", std::to_string(getpid())},
                                                      socket_,
                                                      serviceLog(),
                                                      [this](const std::string& reason) { noteEnd_(reason); }});
                   });
}

std::string LocalServices::failure() const
{
    const MutexLock lock(mutex_);
    return failure_;
}

void LocalServices::noteEnd_(const std::string& reason)
{
    {
        const MutexLock lock(mutex_);
        failure_ = reason.empty()
                       ? reason
                       : fmt::format(fmt::runtime(Locale::translate("The conversion service of this computer cannot be "
                                                                    "started. {}")),
                                     reason);
    }
    if (!reason.empty())
        turnAway_();
}

void LocalServices::turnAway_() const
{
    while (waitReadable(socket_))
    {
        const int connection = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        close(connection);
    }
}

} // namespace VX
