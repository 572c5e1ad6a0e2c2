#include "ChannelFixture.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace VX
{

namespace
{

using Test::Listener;

using SharedMemoryTest = Test::ChannelFixture;

void doNothing() {}

TEST_F(SharedMemoryTest, CallsBackOnceForEachNotification)
{
    Listener listener(name_);
    SharedMemory other(name_, false);
    for (int i = 0; i < 100; ++i)
        other.notify(doNothing);
    listener.waitForCallbacks(100);
    listener.stop();
    EXPECT_EQ(listener.callbacks(), 100U);
}

TEST_F(SharedMemoryTest, WakesEveryListenerAlsoThatOfTheNotifyingObject)
{
    Listener first(name_);
    Listener second(name_);
    first.memory().notify(doNothing);
    first.waitForCallbacks(1);
    second.waitForCallbacks(1);
}

TEST_F(SharedMemoryTest, RunsTheActionBeforeTheCallback)
{
    SharedMemory owner(name_, true);
    std::atomic<bool> done{false};
    auto doneAtCallback = std::async(std::launch::async,
                                     [&]
                                     {
                                         bool seen = false;
                                         owner.wait(
                                             [&]
                                             {
                                                 seen = done;
                                                 owner.stop();
                                             });
                                         return seen;
                                     });
    SharedMemory(name_, false).notify([&] { done = true; });
    EXPECT_TRUE(doneAtCallback.get());
}

TEST_F(SharedMemoryTest, DeliversWhatWasNotifiedBeforeTheWait)
{
    SharedMemory owner(name_, true);
    for (int i = 0; i < 3; ++i)
        owner.notify(doNothing);
    int callbacks = 0;
    owner.wait(
        [&]
        {
            if (++callbacks == 3)
                owner.stop();
        });
    EXPECT_EQ(callbacks, 3);
}

TEST_F(SharedMemoryTest, DoesNotDeliverWhatWasNotifiedBeforeTheObject)
{
    Listener early(name_);
    early.memory().notify(doNothing);
    early.waitForCallbacks(1);
    Listener late(name_);
    early.memory().notify(doNothing);
    early.waitForCallbacks(2);
    late.waitForCallbacks(1);
    late.stop();
    EXPECT_EQ(late.callbacks(), 1U);
}

TEST_F(SharedMemoryTest, CanNotifyInACallback)
{
    SharedMemory owner(name_, true);
    owner.notify(doNothing);
    int callbacks = 0;
    owner.wait([&] { ++callbacks < 3 ? owner.notify(doNothing) : owner.stop(); });
    EXPECT_EQ(callbacks, 3);
}

TEST_F(SharedMemoryTest, RunsTheActionWhereNobodyListens)
{
    SharedMemory owner(name_, true);
    bool done = false;
    SharedMemory(name_, false).notify([&] { done = true; });
    EXPECT_TRUE(done);
}

TEST_F(SharedMemoryTest, RunsTheActionWhereThereIsNoChannelAndCreatesNone)
{
    SharedMemory other(name_, false);
    bool done = false;
    other.notify([&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(SharedMemoryTest, RunsOneActionAtATime)
{
    SharedMemory owner(name_, true);
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    VX::Test::startThreads(4,
                           [&](int)
                           {
                               SharedMemory other(name_, false);
                               for (int round = 0; round < 200; ++round)
                               {
                                   other.notify(
                                       [&]
                                       {
                                           if (const int now = ++running; now > most)
                                               most = now;
                                           std::this_thread::yield();
                                           --running;
                                       });
                               }
                           })
        .clear();
    EXPECT_EQ(most, 1);
}

TEST_F(SharedMemoryTest, HandsAnExceptionOfTheActionOnAndWakesNobody)
{
    Listener listener(name_);
    SharedMemory other(name_, false);
    EXPECT_THROW(other.notify([] { throw std::invalid_argument("link"); }), std::invalid_argument);
    other.notify(doNothing);
    listener.waitForCallbacks(1);
    listener.stop();
    EXPECT_EQ(listener.callbacks(), 1U);
}

TEST_F(SharedMemoryTest, RefusesToNotifyInsideAnAction)
{
    SharedMemory owner(name_, true);
    SharedMemory other(name_, false);
    EXPECT_THROW(owner.notify([&] { owner.notify(doNothing); }), std::system_error);
    EXPECT_THROW(owner.notify([&] { other.notify(doNothing); }), std::system_error);
    bool done = false;
    other.notify([&] { done = true; });
    EXPECT_TRUE(done);
}

TEST_F(SharedMemoryTest, HandsAnExceptionOfTheCallbackOnAndListensNoMore)
{
    SharedMemory owner(name_, true);
    owner.notify(doNothing);
    EXPECT_THROW(owner.wait([] { throw std::runtime_error("callback"); }), std::runtime_error);
    EXPECT_EQ(owner.listenerCount(), 0U);
}

TEST_F(SharedMemoryTest, DoesNotWaitOnceItWasStopped)
{
    SharedMemory owner(name_, true);
    owner.notify(doNothing);
    owner.stop();
    int callbacks = 0;
    owner.wait([&] { ++callbacks; });
    EXPECT_EQ(callbacks, 0);
}

TEST_F(SharedMemoryTest, StopsOnlyTheObjectThatIsTold)
{
    Listener stays(name_);
    for (int i = 0; i < 300; ++i)
    {
        Listener goes(name_);
        goes.stop();
    }
    EXPECT_EQ(stays.callbacks(), 0U);
    stays.memory().notify(doNothing);
    stays.waitForCallbacks(1);
}

TEST_F(SharedMemoryTest, StopsAlsoOneThatIsAboutToSleep)
{
    for (int i = 0; i < 2000; ++i)
    {
        Listener listener(name_);
        listener.waitUntilItListens();
        listener.stop();
    }
}

TEST_F(SharedMemoryTest, CanBeStoppedWhileAnActionRuns)
{
    Listener listener(name_);
    SharedMemory other(name_, false);
    other.notify([&] { listener.stop(); });
    EXPECT_EQ(listener.callbacks(), 0U);
}

TEST_F(SharedMemoryTest, StopsWhereThereIsNoChannel)
{
    SharedMemory other(name_, false);
    auto waiting = std::async(std::launch::async, [&] { other.wait(doNothing); });
    other.stop();
    waiting.get();
}

TEST_F(SharedMemoryTest, CountsTheListenersOfAllObjects)
{
    SharedMemory other(name_, false);
    EXPECT_EQ(other.listenerCount(), 0U);
    SharedMemory owner(name_, true);
    EXPECT_EQ(owner.listenerCount(), 0U);
    {
        Listener first(name_);
        first.waitUntilItListens();
        EXPECT_EQ(owner.listenerCount(), 1U);
        EXPECT_EQ(first.memory().listenerCount(), 1U);
        Listener second(name_);
        while (second.memory().listenerCount() < 2)
            std::this_thread::yield();
        EXPECT_EQ(owner.listenerCount(), 2U);
        first.stop();
        EXPECT_EQ(owner.listenerCount(), 1U);
    }
    EXPECT_EQ(owner.listenerCount(), 0U);
}

TEST_F(SharedMemoryTest, CountsManyListeners)
{
    SharedMemory owner(name_, true);
    std::vector<std::unique_ptr<Listener>> listeners;
    listeners.reserve(20);
    for (int i = 0; i < 20; ++i)
        listeners.push_back(std::make_unique<Listener>(name_));
    while (owner.listenerCount() < 20)
        std::this_thread::yield();
    for (std::size_t i = 0; i < 20; i += 2)
        listeners[i]->stop();
    EXPECT_EQ(owner.listenerCount(), 10U);
}

TEST_F(SharedMemoryTest, IsReadableAndWritableByItsUserAlone)
{
    const SharedMemory owner(name_, true);
    EXPECT_EQ(VX::Test::modeOf(file_), 0600U);
}

TEST_F(SharedMemoryTest, KeepsTheNameUntilTheLastObjectIsClosed)
{
    std::optional<SharedMemory> first(std::in_place, name_, true);
    std::optional<SharedMemory> second(std::in_place, name_, true);
    std::optional<SharedMemory> third(std::in_place, name_, false);
    first.reset();
    EXPECT_TRUE(std::filesystem::exists(file_));
    second.reset();
    EXPECT_TRUE(std::filesystem::exists(file_));
    third.reset();
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(SharedMemoryTest, ReachesAnOwnerThatCameAfterTheLastOneWent)
{
    std::optional<SharedMemory> before(std::in_place, name_, true);
    SharedMemory other(name_, false);
    before.reset();
    Listener after(name_);
    other.notify(doNothing);
    after.waitForCallbacks(1);
}

} // namespace

} // namespace VX
