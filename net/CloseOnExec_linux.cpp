#include <fcntl.h>
#include <net/CloseOnExec.h>

namespace VX
{

void setCloseOnExec(int socket)
{
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

} // namespace VX
