#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace VX::Test
{

/// A process of the program sharedMemoryPeer in the role of that name. Killed with SIGKILL at the end of the scope.
class PeerProcess
{
public:
    /// @param input  file descriptor that becomes the standard input, or -1 for none
    PeerProcess(const std::string& role, const std::string& channel, int input = -1);
    ~PeerProcess();

    PeerProcess(const PeerProcess&) = delete;
    PeerProcess& operator=(const PeerProcess&) = delete;

    /// Kills it and waits until it is gone.
    void kill();

    /// Waits until it has told so many events, or has ended. @return how many it has told
    std::size_t waitForEvents(std::size_t count);

    /// How many events it has told so far.
    [[nodiscard]] std::size_t events() const { return events_; }

private:
    void read_();

    int id_ = -1;
    int output_ = -1;
    std::atomic<std::size_t> events_{0};
    std::atomic<bool> ended_{false};
    std::atomic<unsigned> changes_{0};
    std::thread reader_;
};

} // namespace VX::Test
