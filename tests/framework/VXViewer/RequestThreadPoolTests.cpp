#include "framework/VXViewer/src/web/RequestThreadPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <stdexcept>
#include <vector>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

/// Waits until `condition` holds, ten seconds at most.
template <typename Condition>
bool waitUntil(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

} // namespace

TEST(RequestThreadPool, RunsEveryTaskOnce)
{
    std::vector<std::atomic<int>> counts(1000);
    RequestThreadPool pool;
    for (auto& count : counts)
        ASSERT_TRUE(pool.post([&count] { ++count; }));
    pool.finish();
    for (const auto& count : counts)
        EXPECT_EQ(count, 1);
}

TEST(RequestThreadPool, StartsNoThreadWithoutATask)
{
    const RequestThreadPool pool;
    EXPECT_EQ(pool.threadCount(), 0U);
}

TEST(RequestThreadPool, GrowsWhileAllThreadsAreBusy)
{
    std::latch all(5);
    RequestThreadPool pool;
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(pool.post([&] { all.arrive_and_wait(); })); // each waits for the others: none may queue
    pool.finish();
}

TEST(RequestThreadPool, UsesAThreadAgainThatIsIdle)
{
    RequestThreadPool pool;
    constexpr std::size_t count = 50;
    for (std::size_t i = 0; i < count; ++i)
    {
        std::promise<void> done;
        ASSERT_TRUE(pool.post([&] { done.set_value(); }));
        done.get_future().wait();
    }
    // A thread may not be waiting yet when the next task comes, so there can be a few.
    EXPECT_LT(pool.threadCount(), count);
}

TEST(RequestThreadPool, QueuesWhatComesWhenAllThreadsAreBusy)
{
    std::promise<void> leave;
    const auto left = leave.get_future().share();
    std::vector<int> order;
    RequestThreadPool pool({.threads = 1});
    ASSERT_TRUE(pool.post([left] { left.wait(); }));
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(pool.post([&order, i] { order.push_back(i); }));
    EXPECT_EQ(pool.threadCount(), 1U);
    leave.set_value();
    pool.finish();
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(RequestThreadPool, EndsThreadsThatHaveNothingToDo)
{
    RequestThreadPool pool({.idleTime = 1ms});
    for (int i = 0; i < 3; ++i)
    {
        ASSERT_TRUE(pool.post([] {}));
        EXPECT_TRUE(waitUntil([&] { return pool.threadCount() == 0; }));
    }
}

TEST(RequestThreadPool, RunsWhatTasksPostWhileItFinishes)
{
    std::atomic<int> count = 0;
    RequestThreadPool pool;
    std::function<void()> task = [&]
    {
        if (++count == 20)
            return;
        EXPECT_TRUE(pool.post(task));
    };
    ASSERT_TRUE(pool.post(task));
    pool.finish();
    EXPECT_EQ(count, 20);
}

TEST(RequestThreadPool, TakesNothingOnceItHasFinished)
{
    RequestThreadPool pool;
    pool.finish();
    EXPECT_FALSE(pool.post([] { FAIL(); }));
}

TEST(RequestThreadPool, SurvivesATaskThatThrows)
{
    RequestThreadPool pool;
    std::promise<void> done;
    ASSERT_TRUE(pool.post([] { throw std::runtime_error("broken"); }));
    ASSERT_TRUE(pool.post([] { throw 7; }));
    ASSERT_TRUE(pool.post([&] { done.set_value(); }));
    done.get_future().wait();
}

} // namespace VX::Test
