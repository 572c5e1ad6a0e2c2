#include "framework/VXViewer/src/BackgroundTasks.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace VX
{

TEST(BackgroundTasksTests, RunsEachFunctionOnce)
{
    BackgroundTasks tasks(3);
    std::atomic<int> runs = 0;
    std::promise<void> done;
    for (int i = 0; i < 20; ++i)
    {
        tasks.start(
            [&]
            {
                if (++runs == 20)
                    done.set_value();
            });
    }
    done.get_future().wait();
    EXPECT_EQ(runs, 20);
}

TEST(BackgroundTasksTests, RunsNoMoreAtOnceThanItMay)
{
    BackgroundTasks tasks(2);
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::atomic<int> left = 12;
    std::promise<void> done;
    for (int i = 0; i < 12; ++i)
    {
        tasks.start(
            [&]
            {
                most = std::max(most.load(), ++running);
                std::this_thread::yield();
                --running;
                if (--left == 0)
                    done.set_value();
            });
    }
    done.get_future().wait();
    EXPECT_LE(most, 2);
}

TEST(BackgroundTasksTests, StopForgetsWhatHasNotBegunAndWaitsForWhatHas)
{
    BackgroundTasks tasks(1);
    std::promise<void> begun;
    std::promise<void> release;
    std::atomic<bool> firstEnded = false;
    std::atomic<bool> secondRan = false;
    tasks.start(
        [&]
        {
            begun.set_value();
            release.get_future().wait();
            firstEnded = true;
        });
    tasks.start([&] { secondRan = true; });
    begun.get_future().wait();
    std::thread releaser([&] { release.set_value(); });
    tasks.stop();
    releaser.join();
    EXPECT_TRUE(firstEnded);
}

TEST(BackgroundTasksTests, WorksAgainAfterAStop)
{
    BackgroundTasks tasks(1);
    tasks.stop();
    std::promise<void> ran;
    tasks.start([&] { ran.set_value(); });
    ran.get_future().wait();
}

} // namespace VX
