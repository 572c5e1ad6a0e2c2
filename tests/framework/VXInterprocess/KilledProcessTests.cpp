#include "ChannelFixture.h"
#include "PeerProcess.h"

#include <gtest/gtest.h>

#include <future>

namespace VX
{

namespace
{

using Test::Listener;
using Test::PeerProcess;

using KilledProcessTest = Test::ChannelFixture;

TEST_F(KilledProcessTest, ThatNotifiedHasWokenTheListener)
{
    Listener listener(name_);
    PeerProcess notifier("notify", name_);
    ASSERT_EQ(notifier.waitForEvents(1), 1U);
    notifier.kill();
    listener.waitForCallbacks(1);
}

TEST_F(KilledProcessTest, ThatListenedInAnotherProcessWasWoken)
{
    SharedMemory owner(name_, true);
    PeerProcess listener("listen", name_);
    ASSERT_EQ(listener.waitForEvents(1), 1U);
    owner.notify([] {});
    EXPECT_EQ(listener.waitForEvents(2), 2U);
}

TEST_F(KilledProcessTest, GivesTheLockBackThatItHadInAnAction)
{
    Listener listener(name_);
    PeerProcess notifier("hold", name_);
    ASSERT_EQ(notifier.waitForEvents(1), 1U);
    notifier.kill();
    listener.memory().notify([] {});
    listener.waitForCallbacks(1);
}

TEST_F(KilledProcessTest, WakesNobodyWhereItsActionHadNotEnded)
{
    Listener listener(name_);
    {
        PeerProcess notifier("hold", name_);
        ASSERT_EQ(notifier.waitForEvents(1), 1U);
    }
    listener.memory().notify([] {});
    listener.waitForCallbacks(1);
    listener.stop();
    EXPECT_EQ(listener.callbacks(), 1U);
}

TEST_F(KilledProcessTest, LetsOneInThatWaitsForItsLock)
{
    const SharedMemory owner(name_, true);
    PeerProcess first("hold", name_);
    ASSERT_EQ(first.waitForEvents(1), 1U);
    PeerProcess second("notify", name_);
    EXPECT_EQ(second.events(), 0U);
    first.kill();
    EXPECT_EQ(second.waitForEvents(1), 1U);
}

TEST_F(KilledProcessTest, IsNotCountedAsAListener)
{
    const SharedMemory owner(name_, true);
    PeerProcess listener("listen", name_);
    while (owner.listenerCount() == 0)
        std::this_thread::yield();
    listener.kill();
    EXPECT_EQ(owner.listenerCount(), 0U);
}

TEST_F(KilledProcessTest, ThatListenedDoesNotKeepOthersFromBeingWoken)
{
    Listener listener(name_);
    PeerProcess stuck("stick", name_);
    ASSERT_EQ(stuck.waitForEvents(1), 1U);
    SharedMemory notifier(name_, false);
    notifier.notify([] {});
    ASSERT_EQ(stuck.waitForEvents(2), 2U);
    stuck.kill();
    notifier.notify([] {});
    listener.waitForCallbacks(2);
}

TEST_F(KilledProcessTest, LeavesANameThatTheNextOneUses)
{
    {
        PeerProcess listener("listen", name_);
        ASSERT_EQ(listener.waitForEvents(1), 1U);
    }
    EXPECT_TRUE(std::filesystem::exists(file_));
    EXPECT_EQ(SharedMemory(name_, false).listenerCount(), 0U);
    Listener listener(name_);
    SharedMemory(name_, false).notify([] {});
    listener.waitForCallbacks(1);
}

TEST_F(KilledProcessTest, LeavesANameThatTheNextOneTakesAwayAlsoIfItOnlyNotifies)
{
    {
        PeerProcess listener("listen", name_);
        ASSERT_EQ(listener.waitForEvents(1), 1U);
    }
    SharedMemory(name_, false).notify([] {});
    EXPECT_FALSE(std::filesystem::exists(file_));
}

} // namespace

} // namespace VX
