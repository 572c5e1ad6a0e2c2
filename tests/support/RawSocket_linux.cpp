#include "RawSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

namespace VX::Test
{

namespace
{

constexpr int deadlineMs = 30'000;

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// What `call` gives back, which a signal does not end.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

bool waitFor(int socket, short events)
{
    pollfd entry{.fd = socket, .events = events, .revents = 0};
    return uninterrupted([&] { return ::poll(&entry, 1, deadlineMs); }) == 1;
}

} // namespace

RawSocket RawSocket::connect(std::uint16_t port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = loopback(port);
    if (socket < 0)
        return RawSocket(-1);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        return RawSocket(socket);
    ::close(socket);
    return RawSocket(-1);
}

RawSocket::~RawSocket()
{
    if (socket_ >= 0)
        ::close(socket_);
}

RawSocket::RawSocket(RawSocket&& other) noexcept
    : socket_(std::exchange(other.socket_, -1))
    , received_(std::move(other.received_))
{
}

RawSocket& RawSocket::operator=(RawSocket&& other) noexcept
{
    std::swap(socket_, other.socket_);
    std::swap(received_, other.received_);
    return *this;
}

bool RawSocket::send(std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t sent = uninterrupted([&] { return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool RawSocket::receiveMore_()
{
    std::array<char, 64U << 10U> buffer{};
    if (!waitFor(socket_, POLLIN))
        return false;
    const ssize_t got = uninterrupted([&] { return ::recv(socket_, buffer.data(), buffer.size(), 0); });
    if (got <= 0)
        return false;
    received_.append(buffer.data(), static_cast<std::size_t>(got));
    return true;
}

std::string RawSocket::receiveUntil(std::string_view text)
{
    std::size_t searched = 0;
    for (;;)
    {
        const auto found = received_.find(text, searched);
        if (found != std::string::npos)
        {
            std::string out = received_.substr(0, found + text.size());
            received_.erase(0, out.size());
            return out;
        }
        searched = received_.size() - std::min(received_.size(), text.size());
        if (!receiveMore_())
            return std::exchange(received_, {});
    }
}

std::string RawSocket::receiveAll()
{
    while (receiveMore_())
    {
    }
    return std::exchange(received_, {});
}

std::string RawSocket::receiveAnswer()
{
    std::string answer = receiveUntil("\r\n\r\n");
    constexpr std::string_view field = "Content-Length: ";
    const auto found = answer.find(field);
    if (found == std::string::npos)
        return answer;
    const auto length = std::strtoull(answer.c_str() + found + field.size(), nullptr, 10);
    while (received_.size() < length && receiveMore_())
    {
    }
    answer += received_.substr(0, length);
    received_.erase(0, length);
    return answer;
}

void RawSocket::finishSending()
{
    ::shutdown(socket_, SHUT_WR);
}

void RawSocket::reset()
{
    const linger now{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
    ::close(std::exchange(socket_, -1));
}

RawListener::RawListener()
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    auto address = loopback(0);
    socklen_t size = sizeof(address);
    if (socket_ < 0 || ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        ::listen(socket_, 16) != 0 || ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        std::abort();
    port_ = ntohs(address.sin_port);
}

RawListener::~RawListener()
{
    if (socket_ >= 0)
        ::close(socket_);
}

int RawListener::release()
{
    return std::exchange(socket_, -1);
}

RawSocket RawListener::accept()
{
    return RawSocket(waitFor(socket_, POLLIN) ? ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC) : -1);
}

} // namespace VX::Test
