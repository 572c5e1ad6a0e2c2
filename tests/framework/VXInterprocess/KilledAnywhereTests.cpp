#include "ChannelFixture.h"
#include "Segment.h"
#include "SteppedPeer.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace VX
{

namespace
{

using Test::Listener;
using Test::SteppedPeer;
using Step = Test::SteppedPeer::Step;

/// Processes that are killed after each single step of what they do.
class KilledAnywhereTest : public Test::ChannelFixture
{
protected:
    void SetUp() override
    {
        if (!SteppedPeer("stepOwner", name_).isTraced())
            GTEST_SKIP() << "the system does not allow to trace a process";
    }

    /// Calls `check` after each death, of which the first is before the first step and the last after the last one. Of
    /// many thousand steps, which a sanitizer makes, the later ones are done several at a time.
    template <typename Check>
    void killAfterEachStep_(const std::string& role, Step step, const Check& check)
    {
        bool ended = false;
        for (int steps = 0; !ended; steps += steps < 500 ? 1 : steps / 10)
        {
            {
                SteppedPeer peer(role, name_);
                ended = !peer.advance(step, steps);
            }
            check();
            if (HasFailure())
                FAIL() << "killed after step " << steps;
            ++deaths_;
        }
    }

    int deaths_ = 0;
};

} // namespace

TEST_F(KilledAnywhereTest, NotifyCountsAndWakesOrDoesNeitherAndGivesTheLockBack)
{
    const auto segment = Segment::open(name_, true);
    Listener listener(name_);
    const std::uint64_t first = segment->channel().look().step;
    std::uint64_t before = first;
    bool counted = false;
    killAfterEachStep_("stepNotify", Step::Instruction,
                       [&]
                       {
                           const bool countedNow = segment->channel().look().step == before + 1;
                           EXPECT_TRUE(countedNow || !counted) << "counted at an earlier step already";
                           counted = countedNow;
                           // Nobody else rings meanwhile: without a wake-up this waits for ever.
                           listener.waitForCallbacks(segment->channel().look().step - first);
                           listener.memory().notify([] {});
                           EXPECT_EQ(segment->channel().look().step, before + (counted ? 2 : 1));
                           before = segment->channel().look().step;
                           listener.waitForCallbacks(before - first);
                       });
    listener.stop();
    EXPECT_TRUE(counted);
    EXPECT_EQ(listener.callbacks(), before - first);
    EXPECT_GT(deaths_, 100);
}

TEST_F(KilledAnywhereTest, OpeningAndClosingLeavesNothingThatTheNextCannotUse)
{
    killAfterEachStep_("stepOwner", Step::SystemCall,
                       [&]
                       {
                           EXPECT_EQ(SharedMemory(name_, false).listenerCount(), 0U);
                           Listener listener(name_);
                           SharedMemory(name_, false).notify([] {});
                           listener.waitForCallbacks(1);
                       });
    EXPECT_GT(deaths_, 20);
}

TEST_F(KilledAnywhereTest, OpeningAndClosingLeavesTheOthersTheirChannel)
{
    Listener listener(name_);
    listener.waitUntilItListens();
    std::size_t notified = 0;
    killAfterEachStep_("stepOwner", Step::SystemCall,
                       [&]
                       {
                           SharedMemory other(name_, false);
                           EXPECT_EQ(other.listenerCount(), 1U);
                           const std::size_t before = listener.callbacks();
                           other.notify([] {});
                           listener.waitForCallbacks(before + 1);
                           ++notified;
                       });
    listener.stop();
    EXPECT_GE(listener.callbacks(), notified);
    EXPECT_LE(listener.callbacks(), 2 * notified);
}

} // namespace VX
