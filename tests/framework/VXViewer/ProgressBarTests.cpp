#include "tests/support/ui/UiDriver.h"

#include <VXViewer/CommandLoop.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace VX
{

class ProgressBarTests : public testing::Test
{
protected:
    ProgressBarTests() { CommandLoop::clear(); }

    ~ProgressBarTests() override
    {
        ProgressBar::shutdown();
        CommandLoop::clear();
    }

    /// Orders a task that waits until it is released, or until it is to stop.
    void orderWaiting_(const std::string& title, std::atomic<bool>& finished)
    {
        ProgressBar::order(title,
                           [this, &finished](const ProgressCallback& progress) -> ProgressBar::Finish
                           {
                               while (!released_ && progress(0.25F))
                                   std::this_thread::yield();
                               return [&finished] { finished = true; };
                           });
    }

    static bool pumpUntil_(const std::function<bool()>& done)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!done() && std::chrono::steady_clock::now() < end)
        {
            CommandLoop::processCommands();
            std::this_thread::yield();
        }
        return done();
    }

    std::atomic<bool> released_ = false;
};

TEST_F(ProgressBarTests, RunsTheTaskOnAWorkerAndItsResultOnTheUiThread)
{
    bool taskOnUiThread = true;
    bool finishOnUiThread = false;
    bool finished = false;
    ProgressBar::order("Task",
                       [&](const ProgressCallback&) -> ProgressBar::Finish
                       {
                           taskOnUiThread = CommandLoop::isOnUiThread();
                           return [&]
                           {
                               finishOnUiThread = CommandLoop::isOnUiThread();
                               finished = true;
                           };
                       });
    EXPECT_TRUE(ProgressBar::isOrdered());
    EXPECT_TRUE(pumpUntil_([&] { return finished; }));
    EXPECT_FALSE(taskOnUiThread);
    EXPECT_TRUE(finishOnUiThread);
    EXPECT_FALSE(ProgressBar::isOrdered());
}

TEST_F(ProgressBarTests, CompletesAtTheEndWhatIsBeingWritten)
{
    std::promise<void> begun;
    bool written = false;
    ProgressBar::orderWriting("Saving",
                              [&](const ProgressCallback& progress) -> ProgressBar::Finish
                              {
                                  begun.set_value();
                                  // A task to be read is asked to stop before the other is waited for.
                                  while (!released_)
                                      std::this_thread::yield();
                                  written = progress(0.5F);
                                  return {};
                              });
    begun.get_future().wait();
    ProgressBar::order("Opening",
                       [this](const ProgressCallback& progress) -> ProgressBar::Finish
                       {
                           while (progress(0.25F))
                               std::this_thread::yield();
                           released_ = true;
                           return {};
                       });
    ASSERT_TRUE(pumpUntil_([] { return !ProgressBar::tasks().back().waiting; }));
    ProgressBar::shutdown();
    EXPECT_TRUE(written);
    EXPECT_FALSE(ProgressBar::isOrdered());
}

TEST_F(ProgressBarTests, CompletesAtTheEndWhatWaitsToBeWritten)
{
    std::atomic<int> written = 0;
    constexpr int files = 12;
    for (int i = 0; i < files; ++i)
        ProgressBar::orderWriting("Saving",
                                  [&](const ProgressCallback&) -> ProgressBar::Finish
                                  {
                                      ++written;
                                      return {};
                                  });
    ProgressBar::shutdown();
    EXPECT_EQ(written, files);
}

TEST_F(ProgressBarTests, WhatIsWrittenCannotBeCancelledAnyMore)
{
    std::promise<void> complete;
    std::atomic<bool> finished = false;
    bool canceled = false;
    const std::uint64_t id = ProgressBar::orderWriting(
        "Saving",
        [&](const ProgressCallback& progress) -> ProgressBar::Finish
        {
            EXPECT_TRUE(progress(1));
            complete.set_value();
            while (!released_)
                std::this_thread::yield();
            return [&] { finished = true; };
        },
        [&] { canceled = true; });
    complete.get_future().wait();
    ProgressBar::cancel(id);
    EXPECT_TRUE(ProgressBar::isOrdered());
    released_ = true;
    EXPECT_TRUE(pumpUntil_([&] { return finished.load(); }));
    EXPECT_FALSE(canceled);
}

TEST_F(ProgressBarTests, WhatIsCancelledBeforeIsNotWritten)
{
    std::promise<void> begun;
    bool written = true;
    const std::uint64_t id = ProgressBar::orderWriting("Saving",
                                                       [&](const ProgressCallback& progress) -> ProgressBar::Finish
                                                       {
                                                           begun.set_value();
                                                           while (!released_)
                                                               std::this_thread::yield();
                                                           written = progress(1);
                                                           return {};
                                                       });
    begun.get_future().wait();
    ProgressBar::cancel(id);
    released_ = true;
    ProgressBar::shutdown();
    EXPECT_FALSE(written);
}

TEST_F(ProgressBarTests, TellsHowFarATaskIsAndWhatItDoes)
{
    std::atomic<bool> finished = false;
    ProgressBar::order("Task",
                       [&](const ProgressCallback& progress) -> ProgressBar::Finish
                       {
                           ProgressBar::forceSetTaskName("Reading");
                           while (!released_ && progress(0.25F))
                               std::this_thread::yield();
                           return [&] { finished = true; };
                       });
    EXPECT_TRUE(pumpUntil_(
        []
        {
            const auto tasks = ProgressBar::tasks();
            return tasks.size() == 1 && tasks.front().fraction == 0.25F && tasks.front().taskName == "Reading";
        }));
    ProgressBar::resetTaskName();
    EXPECT_EQ(ProgressBar::tasks().front().taskName, "");
    released_ = true;
    EXPECT_TRUE(pumpUntil_([&] { return finished.load(); }));
}

TEST_F(ProgressBarTests, CancelFreesThePanelAtOnceAndDropsTheResult)
{
    std::atomic<bool> workerEnded = false;
    bool finished = false;
    bool canceled = false;
    ProgressBar::order(
        "Task",
        [&](const ProgressCallback& progress) -> ProgressBar::Finish
        {
            while (progress(0.5F))
                std::this_thread::yield();
            workerEnded = true;
            return [&] { finished = true; };
        },
        [&] { canceled = true; });
    ASSERT_TRUE(pumpUntil_([] { return ProgressBar::tasks().front().fraction > 0; }));
    ProgressBar::cancel(ProgressBar::tasks().front().id);
    EXPECT_FALSE(ProgressBar::isOrdered());
    EXPECT_TRUE(canceled);
    EXPECT_TRUE(pumpUntil_([&] { return workerEnded.load(); }));
    ProgressBar::shutdown();
    CommandLoop::processCommands();
    EXPECT_FALSE(finished);
}

TEST_F(ProgressBarTests, RunsSeveralTasksAtOnce)
{
    std::promise<void> secondStarted;
    bool firstFinished = false;
    ProgressBar::order("First",
                       [&](const ProgressCallback&) -> ProgressBar::Finish
                       {
                           secondStarted.get_future().wait();
                           return [&] { firstFinished = true; };
                       });
    ProgressBar::order("Second",
                       [&](const ProgressCallback&) -> ProgressBar::Finish
                       {
                           secondStarted.set_value();
                           return {};
                       });
    EXPECT_TRUE(pumpUntil_([&] { return firstFinished; }));
}

TEST_F(ProgressBarTests, NamesNothingWhileNoTaskRuns)
{
    ProgressBar::forceSetTaskName("Nothing");
    ProgressBar::resetTaskName();
    EXPECT_FALSE(ProgressBar::isOrdered());
    EXPECT_TRUE(ProgressBar::tasks().empty());
}

TEST_F(ProgressBarTests, ShutdownStopsTheWorkersAndRunsNoMoreResults)
{
    std::atomic<bool> finished = false;
    orderWaiting_("Task", finished);
    ProgressBar::shutdown();
    CommandLoop::processCommands();
    EXPECT_FALSE(ProgressBar::isOrdered());
    EXPECT_FALSE(finished);
}

TEST_F(ProgressBarTests, ShowsAPanelThatCancelFrees)
{
    const VX::Test::ViewerSession session(std::make_shared<ImGuiMenu>());
    VX::Test::UiDriver driver(session);
    std::atomic<bool> finished = false;
    orderWaiting_("Opening part.step", finished);
    ASSERT_TRUE(driver.waitFor([&] { return driver.shows("Cancel", "Progress"); }));
    EXPECT_TRUE(driver.waitFor([&] { return driver.shows("25 %", "Progress"); }));
    EXPECT_TRUE(driver.shows("0 s", "Progress") || driver.shows("1 s", "Progress"));
    driver.press("Cancel", "Progress");
    EXPECT_FALSE(driver.shows("Cancel", "Progress"));
    EXPECT_FALSE(finished);
}

TEST_F(ProgressBarTests, ShowsOneRowForEachTask)
{
    const VX::Test::ViewerSession session(std::make_shared<ImGuiMenu>());
    VX::Test::UiDriver driver(session);
    std::atomic<bool> finished = false;
    orderWaiting_("Opening a.step", finished);
    orderWaiting_("Opening b.step", finished);
    ASSERT_TRUE(driver.waitFor([&] { return driver.shows("2 tasks", "Progress"); }));
    EXPECT_EQ(UiTree::instance().find("Cancel", "Progress").size(), 2U);
    released_ = true;
    EXPECT_TRUE(driver.waitFor([&] { return !UiTree::instance().hasWindow("Progress"); }));
}

} // namespace VX
