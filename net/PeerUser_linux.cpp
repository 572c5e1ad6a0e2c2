#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <net/PeerUser.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

namespace VX
{

namespace
{

/// An address and a port, both in the order of the network.
using Endpoint = std::pair<std::uint32_t, std::uint16_t>;

/// What a look-up has found: nothing where the socket is gone.
using Owner = std::optional<unsigned>;

std::optional<Endpoint> endpointOf(int socket, int (*name)(int, sockaddr*, socklen_t*))
{
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (name(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0 || address.sin_family != AF_INET)
        return std::nullopt;
    return Endpoint(address.sin_addr.s_addr, address.sin_port);
}

struct Question
{
    nlmsghdr header;
    inet_diag_req_v2 request;
};

Question questionFor(const Endpoint& local, const Endpoint& remote)
{
    Question out{};
    out.header.nlmsg_len = sizeof(out);
    out.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    out.header.nlmsg_flags = NLM_F_REQUEST;
    out.request.sdiag_family = AF_INET;
    out.request.sdiag_protocol = IPPROTO_TCP;
    out.request.idiag_states = ~0U;
    out.request.id.idiag_sport = local.second;
    out.request.id.idiag_dport = remote.second;
    out.request.id.idiag_src[0] = local.first;
    out.request.id.idiag_dst[0] = remote.first;
    out.request.id.idiag_cookie[0] = out.request.id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    return out;
}

/// Reads the answer of the kernel to a question; empty where it is none.
std::optional<Owner> readAnswer(const char* bytes, std::size_t size)
{
    nlmsghdr header{};
    if (size < NLMSG_HDRLEN)
        return std::nullopt;
    std::memcpy(&header, bytes, sizeof(header));
    nlmsgerr error{};
    if (header.nlmsg_type == NLMSG_ERROR && size >= NLMSG_HDRLEN + sizeof(error))
    {
        std::memcpy(&error, bytes + NLMSG_HDRLEN, sizeof(error));
        if (error.error == -ENOENT)
            return std::optional<Owner>(std::in_place);
        return std::nullopt;
    }
    inet_diag_msg found{};
    if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY || size < NLMSG_HDRLEN + sizeof(found))
        return std::nullopt;
    std::memcpy(&found, bytes + NLMSG_HDRLEN, sizeof(found));
    return Owner(found.idiag_uid);
}

/// Asks the kernel for one socket; sockets of IPv6 that reach an IPv4 address are found too. Empty where it does not
/// answer such questions, as in some containers.
std::optional<Owner> askKernel(const Endpoint& local, const Endpoint& remote)
{
    const int socket = ::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (socket < 0)
        return std::nullopt;
    const Question question = questionFor(local, remote);
    std::array<char, 4096> answer{};
    ssize_t size = ::send(socket, &question, sizeof(question), 0);
    if (size == static_cast<ssize_t>(sizeof(question)))
        size = ::recv(socket, answer.data(), answer.size(), MSG_DONTWAIT); // it is there when `send` returns
    ::close(socket);
    return size > 0 ? readAnswer(answer.data(), static_cast<std::size_t>(size)) : std::nullopt;
}

/// As the system's table writes it; `prefix` is what precedes the address within an IPv6 socket.
std::string inTable(const Endpoint& endpoint, const char* prefix)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s%08X:%04X", prefix, static_cast<unsigned>(endpoint.first),
                  static_cast<unsigned>(ntohs(endpoint.second)));
    return text.data();
}

/// The owner of the socket from `local` to `remote`.
Owner ownerIn(const char* table, const std::string& local, const std::string& remote)
{
    std::ifstream in(table);
    const std::string text(std::istreambuf_iterator<char>(in), {});
    const std::string key = ' ' + local + ' ' + remote + ' ';
    const auto found = text.find(key);
    if (found == std::string::npos)
        return std::nullopt;
    // Behind the addresses stand the state, the queues, the timer, the retransmissions, and then the user.
    std::istringstream rest(text.substr(found + key.size(), 128));
    std::string skipped;
    unsigned owner = 0;
    rest >> skipped >> skipped >> skipped >> skipped >> owner;
    return rest ? Owner(owner) : std::nullopt;
}

/// Reads the table of all sockets, which takes a hundred times as long.
Owner readTables(const Endpoint& local, const Endpoint& remote)
{
    constexpr const char* mapped = "0000000000000000FFFF0000";
    const auto owner = ownerIn("/proc/net/tcp", inTable(local, ""), inTable(remote, ""));
    return owner ? owner : ownerIn("/proc/net/tcp6", inTable(local, mapped), inTable(remote, mapped));
}

} // namespace

bool isPeerOfThisUser(int socket)
{
    const auto here = endpointOf(socket, ::getsockname);
    const auto there = endpointOf(socket, ::getpeername);
    if (!here || !there)
        return false;
    const auto answer = askKernel(*there, *here);
    const Owner owner = answer ? *answer : readTables(*there, *here);
    return owner && *owner == ::geteuid();
}

} // namespace VX
