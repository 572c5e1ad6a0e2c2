#include <net/PeerEnd.h>
#include <sys/socket.h>

#include <cerrno>

namespace VX
{

bool hasPeerEnded(int socket)
{
    char next = 0;
    const ssize_t size = ::recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT);
    return size == 0 || (size < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

} // namespace VX
