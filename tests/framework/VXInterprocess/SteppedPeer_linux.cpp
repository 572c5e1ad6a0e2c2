#include "PeerProgram.h"
#include "SteppedPeer.h"

#include <sys/ptrace.h>
#include <sys/wait.h>

#include <csignal>

namespace VX::Test
{

namespace
{

bool waitForTracing(int id)
{
    int status = 0;
    return ::waitpid(id, &status, WUNTRACED) == id && WIFSTOPPED(status) &&
           ::ptrace(PTRACE_SETOPTIONS, id, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0;
}

} // namespace

SteppedPeer::SteppedPeer(const std::string& role, const std::string& channel)
    : id_(startPeer(role, channel, -1, -1))
    , traced_(waitForTracing(id_))
{
}

SteppedPeer::~SteppedPeer()
{
    killPeer(id_);
}

bool SteppedPeer::advance(Step step, int count)
{
    for (int i = 0; i < count; ++i)
    {
        ::ptrace(step == Step::Instruction ? PTRACE_SINGLESTEP : PTRACE_SYSCALL, id_, nullptr, nullptr);
        if (!waitForStop_())
            return false;
    }
    return true;
}

bool SteppedPeer::waitForStop_() const
{
    int status = 0;
    return ::waitpid(id_, &status, 0) == id_ && WIFSTOPPED(status) && WSTOPSIG(status) != SIGSTOP;
}

} // namespace VX::Test
