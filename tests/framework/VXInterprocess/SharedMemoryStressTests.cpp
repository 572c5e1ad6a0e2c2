#include "ActionCounts.h"
#include "ChannelFixture.h"
#include "PeerProcess.h"
#include "Segment.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Test::ActionCounts;
using Test::Listener;
using Test::PeerProcess;

using SharedMemoryStressTest = Test::ChannelFixture;

using Clock = std::chrono::steady_clock;

/// How long each test kills processes: 2 s, or what QX_STRESS_SECONDS says.
std::chrono::seconds stressTime()
{
    const char* text = std::getenv("QX_STRESS_SECONDS"); // NOLINT(concurrency-mt-unsafe): nobody sets it meanwhile
    return std::chrono::seconds(text ? std::atoi(text) : 2);
}

/// Memory that other processes map from its descriptor.
class SharedCounts
{
public:
    SharedCounts()
    {
        if (::ftruncate(descriptor_, sizeof(ActionCounts)) == 0)
            memory_ = ::mmap(nullptr, sizeof(ActionCounts), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_, 0);
        if (memory_ == MAP_FAILED)
            std::abort();
        new (memory_) ActionCounts{};
    }

    ~SharedCounts()
    {
        ::munmap(memory_, sizeof(ActionCounts));
        ::close(descriptor_);
    }

    SharedCounts(const SharedCounts&) = delete;
    SharedCounts& operator=(const SharedCounts&) = delete;

    [[nodiscard]] int descriptor() const { return descriptor_; }

    const ActionCounts* operator->() const { return static_cast<const ActionCounts*>(memory_); }

private:
    const int descriptor_ = ::memfd_create("counts", MFD_CLOEXEC);
    void* memory_ = MAP_FAILED;
};

/// Processes of one role, of which one after the other is killed and replaced.
class Victims
{
public:
    Victims(std::size_t count, std::string role, std::string channel, int input = -1)
        : role_(std::move(role))
        , channel_(std::move(channel))
        , input_(input)
        , processes_(count)
    {
        for (auto& process : processes_)
            start_(process);
    }

    void replaceOne()
    {
        start_(processes_[random_() % processes_.size()]);
        ++killed_;
    }

    /// Waits until each of them has told so many events more.
    void waitForAll(std::size_t events)
    {
        for (auto& process : processes_)
            process->waitForEvents(process->events() + events);
    }

    [[nodiscard]] int killed() const { return killed_; }

private:
    void start_(std::unique_ptr<PeerProcess>& process)
    {
        process.reset();
        process = std::make_unique<PeerProcess>(role_, channel_, input_);
    }

    std::string role_;
    std::string channel_;
    int input_;
    std::vector<std::unique_ptr<PeerProcess>> processes_;
    std::mt19937 random_{1};
    int killed_ = 0;
};

/// A moment that falls anywhere into what the others do.
void letThemRun(std::mt19937& random)
{
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 5'000));
}

} // namespace

TEST_F(SharedMemoryStressTest, LosesAndInventsNoWakeUpWhateverIsKilled)
{
    const SharedCounts counts;
    const auto segment = Segment::open(name_, true);
    const std::uint64_t firstStep = segment->channel().look().step;
    Listener here(name_);
    PeerProcess elsewhere("listen", name_);
    ASSERT_EQ(elsewhere.waitForEvents(1), 1U);
    int killedNotifiers = 0;
    {
        Victims listeners(2, "listen", name_);
        Victims notifiers(3, "flood", name_, counts.descriptor());
        std::mt19937 random{2};
        for (const auto end = Clock::now() + stressTime(); Clock::now() < end; letThemRun(random))
        {
            listeners.replaceOne();
            letThemRun(random);
            notifiers.replaceOne();
        }
        killedNotifiers = notifiers.killed() + 3;
    }
    // All that could notify is dead: each step that is counted now must reach those that have listened all the time.
    const std::uint64_t steps = segment->channel().look().step - firstStep;
    here.waitForCallbacks(steps);
    EXPECT_EQ(elsewhere.waitForEvents(1 + steps), 1 + steps);
    EXPECT_GE(steps, counts->returned);
    EXPECT_LE(steps, counts->started);
    EXPECT_LE(counts->started - counts->returned, static_cast<std::uint64_t>(killedNotifiers));
    here.memory().notify([] {});
    here.waitForCallbacks(steps + 1);
    EXPECT_EQ(elsewhere.waitForEvents(2 + steps), 2 + steps);
    here.stop();
    EXPECT_EQ(here.callbacks(), steps + 1);
    RecordProperty("steps", static_cast<int>(steps));
    RecordProperty("killedNotifiers", killedNotifiers);
}

TEST_F(SharedMemoryStressTest, OpensAndClosesWhileOthersDie)
{
    {
        Victims victims(3, "churn", name_);
        std::mt19937 random{3};
        for (const auto end = Clock::now() + stressTime(); Clock::now() < end; letThemRun(random))
        {
            victims.replaceOne();
            // One that has opened another channel than its partner waits for ever.
            victims.waitForAll(3);
        }
        RecordProperty("killed", victims.killed());
    }
    Listener listener(name_);
    SharedMemory(name_, false).notify([] {});
    listener.waitForCallbacks(1);
}

} // namespace VX
