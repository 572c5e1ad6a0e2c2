#include "PeerProcess.h"
#include "PeerProgram.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

namespace VX::Test
{

PeerProcess::PeerProcess(const std::string& role, const std::string& channel, int input)
{
    std::array<int, 2> pipe{-1, -1};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        std::abort();
    id_ = startPeer(role, channel, input, pipe[1]);
    ::close(pipe[1]);
    output_ = pipe[0];
    reader_ = std::thread([this] { read_(); });
}

PeerProcess::~PeerProcess()
{
    kill();
    reader_.join();
    ::close(output_);
}

void PeerProcess::kill()
{
    if (id_ < 0)
        return;
    killPeer(id_);
    id_ = -1;
}

std::size_t PeerProcess::waitForEvents(std::size_t count)
{
    while (true)
    {
        const unsigned before = changes_;
        if (events_ >= count || ended_)
            return events_;
        changes_.wait(before);
    }
}

void PeerProcess::read_()
{
    std::array<char, 4096> buffer{};
    while (!ended_)
    {
        const ssize_t size = ::read(output_, buffer.data(), buffer.size());
        if (size > 0)
            events_ += static_cast<std::size_t>(size);
        else if (size == 0 || errno != EINTR)
            ended_ = true;
        ++changes_;
        changes_.notify_all();
    }
}

} // namespace VX::Test
