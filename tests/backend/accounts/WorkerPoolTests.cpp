#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <backend/accounts/WorkerPool.h>

#include <atomic>
#include <future>

namespace VX::Test
{

namespace
{

TEST(WorkerPool, runsEveryTask)
{
    WorkerPool pool(2, 100);
    std::atomic<int> done = 0;
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(pool.run([&] { ++done; }));
    EXPECT_TRUE(waitUntil([&] { return done == 100; }));
}

TEST(WorkerPool, refusesWhatWouldWaitBeyondItsQueue)
{
    std::promise<void> release;
    std::promise<void> started;
    WorkerPool pool(1, 2);
    ASSERT_TRUE(pool.run(
        [&]
        {
            started.set_value();
            release.get_future().wait();
        }));
    started.get_future().wait();
    EXPECT_TRUE(pool.run([] {}));
    EXPECT_TRUE(pool.run([] {}));
    EXPECT_FALSE(pool.run([] {}));
    release.set_value();
}

TEST(WorkerPool, dropsWhatWaitsAtItsEnd)
{
    std::atomic<int> done = 0;
    std::promise<void> release;
    std::promise<void> started;
    {
        WorkerPool pool(1, 2);
        ASSERT_TRUE(pool.run(
            [&]
            {
                started.set_value();
                release.get_future().wait();
                ++done;
            }));
        started.get_future().wait();
        ASSERT_TRUE(pool.run([&] { ++done; }));
        // Let go of once the queue has been dropped, which lets go of its tasks.
        const std::shared_ptr<void> onDrop(nullptr, [&](void*) { release.set_value(); });
        ASSERT_TRUE(pool.run([onDrop] {}));
    }
    EXPECT_EQ(done, 1);
}

} // namespace

} // namespace VX::Test
