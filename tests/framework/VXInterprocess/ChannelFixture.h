#pragma once

#include <VXInterprocess/SharedMemory.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

namespace VX::Test
{

/// A channel name that no other test has, and expects that nothing of it is left behind.
class ChannelFixture : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_FALSE(std::filesystem::exists(file_)) << "the name is left behind";
        std::error_code ignored;
        std::filesystem::remove(file_, ignored);
    }

    const std::string name_ = "quorvix-test-" + std::to_string(::getpid());
    /// Where the system shows the segment.
    const std::filesystem::path file_ = "/dev/shm/" + name_ + ".v1." + std::to_string(::geteuid());
};

/// An owner of a channel whose thread waits and counts callbacks.
class Listener
{
public:
    explicit Listener(const std::string& name)
        : memory_(name, true)
        , thread_([this] { listen_(); })
    {
    }

    ~Listener() { stop(); }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    [[nodiscard]] SharedMemory& memory() { return memory_; }

    [[nodiscard]] std::size_t callbacks() const { return callbacks_; }

    void waitForCallbacks(std::size_t count) const
    {
        for (std::size_t now = callbacks_; now < count; now = callbacks_)
            callbacks_.wait(now);
    }

    /// Until others see it as one.
    void waitUntilItListens() const
    {
        while (memory_.listenerCount() == 0)
            std::this_thread::yield();
    }

    void stop()
    {
        memory_.stop();
        if (thread_.joinable())
            thread_.join();
    }

private:
    void listen_()
    {
        memory_.wait(
            [this]
            {
                ++callbacks_;
                callbacks_.notify_all();
            });
    }

    SharedMemory memory_;
    std::atomic<std::size_t> callbacks_{0};
    std::thread thread_;
};

} // namespace VX::Test
