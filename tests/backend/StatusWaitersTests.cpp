#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/StatusWaiters.h>

#include <atomic>
#include <future>
#include <vector>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

/// The state in an answer; -1 where there is no such job.
using State = int;

class StatusWaitersTest : public ::testing::Test
{
public:
    /// A question for the job "a".
    std::future<State> ask(StatusWaiters& waiters)
    {
        auto promise = std::make_shared<std::promise<State>>();
        waiters.wait("a", [promise](const StatusWaiters::Status& status)
                     { promise->set_value(status && *status ? static_cast<State>((*status)->state) : -1); });
        return promise->get_future();
    }

    static bool isWaiting(const std::future<State>& answer)
    {
        return answer.wait_for(0s) == std::future_status::timeout;
    }

    ClaimedJob startJob()
    {
        EXPECT_TRUE(queue->add("a"));
        EXPECT_TRUE(queue->enqueue("a"));
        return claimJob(*queue);
    }

    static State of(JobState state) { return static_cast<State>(state); }

    TempDir folder;
    std::unique_ptr<JobQueue> queue = JobQueue::open(folder.path() / "jobs.sqlite").value();
    std::unique_ptr<JobQueue> otherProcess = JobQueue::open(folder.path() / "jobs.sqlite").value();
};

TEST_F(StatusWaitersTest, answersAtOnceWhenTheJobHasEnded)
{
    const ClaimedJob job = startJob();
    ASSERT_TRUE(queue->finish(job, "r"));
    StatusWaiters waiters(*queue, 1h);
    EXPECT_FALSE(isWaiting(ask(waiters)));
}

TEST_F(StatusWaitersTest, answersAtOnceWhenThereIsNoSuchJob)
{
    StatusWaiters waiters(*queue, 1h);
    EXPECT_EQ(ask(waiters).get(), -1);
}

TEST_F(StatusWaitersTest, holdsTheAnswerUntilTheJobEnds)
{
    const ClaimedJob job = startJob();
    StatusWaiters waiters(*queue, 1h);
    queue->setListener([&] { waiters.wake(); });
    auto first = ask(waiters);
    auto second = ask(waiters);
    EXPECT_TRUE(isWaiting(first));
    ASSERT_TRUE(queue->fail(job, "No luck."));
    EXPECT_EQ(first.get(), of(JobState::Failed));
    EXPECT_EQ(second.get(), of(JobState::Failed));
}

TEST_F(StatusWaitersTest, seesTheEndOfAJobThatAnotherProcessRan)
{
    const ClaimedJob job = startJob();
    StatusWaiters waiters(*queue, 1h);
    auto answer = ask(waiters);
    ASSERT_TRUE(otherProcess->finish(job, "r"));
    EXPECT_EQ(answer.get(), of(JobState::Finished));
}

TEST_F(StatusWaitersTest, answersWhenTheConversionIsAskedFor)
{
    ASSERT_TRUE(queue->add("a"));
    StatusWaiters waiters(*queue, 1h);
    auto answer = ask(waiters);
    EXPECT_TRUE(isWaiting(answer));
    ASSERT_TRUE(queue->enqueue("a"));
    EXPECT_EQ(answer.get(), of(JobState::Queued));
}

TEST_F(StatusWaitersTest, isNotDisturbedByAWorkerThatTakesTheJob)
{
    ASSERT_TRUE(queue->add("a"));
    ASSERT_TRUE(queue->enqueue("a"));
    StatusWaiters waiters(*queue, 1h);
    queue->setListener([&] { waiters.wake(); });
    auto answer = ask(waiters);
    const ClaimedJob job = claimJob(*queue);
    waiters.wake();
    ASSERT_TRUE(queue->retry(job, "It died.")); // Queued again: still under way.
    ASSERT_TRUE(queue->finish(claimJob(*queue), "r"));
    EXPECT_EQ(answer.get(), of(JobState::Finished));
}

TEST_F(StatusWaitersTest, answersWhenTheTimeOfWaitingIsOver)
{
    startJob();
    StatusWaiters waiters(*queue, 20ms);
    EXPECT_EQ(ask(waiters).get(), of(JobState::Running));
}

TEST_F(StatusWaitersTest, answersAboutAJobThatIsForgottenMeanwhile)
{
    ASSERT_TRUE(queue->add("a"));
    StatusWaiters waiters(*queue, 1h);
    auto answer = ask(waiters);
    ASSERT_TRUE(otherProcess->forgetOlderThan(std::chrono::system_clock::now() + 1h));
    EXPECT_EQ(answer.get(), -1);
}

TEST_F(StatusWaitersTest, servesManyAtOnce)
{
    const ClaimedJob job = startJob();
    StatusWaiters waiters(*queue, 1h);
    queue->setListener([&] { waiters.wake(); });
    std::atomic<int> answered = 0;
    for (int i = 0; i < 500; ++i)
        waiters.wait("a", [&](const auto&) { ++answered; });
    ASSERT_TRUE(queue->finish(job, "r"));
    EXPECT_TRUE(waitUntil([&] { return answered == 500; }));
}

TEST_F(StatusWaitersTest, dropsTheQuestionsAtItsEnd)
{
    startJob();
    std::future<State> answer;
    {
        StatusWaiters waiters(*queue, 1h);
        answer = ask(waiters);
    }
    EXPECT_THROW(answer.get(), std::future_error);
}

} // namespace

} // namespace VX::Test
