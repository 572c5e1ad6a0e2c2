#include "support/BackendTestSupport.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/JobQueue.h>
#include <backend/SqliteDatabase.h>

#include <atomic>
#include <set>
#include <vector>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class JobQueueTest : public ::testing::Test
{
public:
    std::unique_ptr<JobQueue> open()
    {
        auto opened = JobQueue::open(file, {.lease = 10s, .maxAttempts = 2, .now = [this] { return now.load(); }});
        EXPECT_TRUE(opened) << opened.error();
        return std::move(*opened);
    }

    void queueJob(const std::string& id)
    {
        ASSERT_TRUE(queue->add(id));
        ASSERT_TRUE(queue->enqueue(id));
        now = now.load() + 1ms; // The order of two jobs is that of their times.
    }

    ClaimedJob claim() { return claimJob(*queue); }

    bool nothingToClaim()
    {
        const auto job = queue->claim();
        return job && !job->has_value();
    }

    JobStatus status(const std::string& id)
    {
        EXPECT_TRUE(knows(id));
        return queue->status(id).value_or(std::nullopt).value_or(JobStatus{});
    }

    bool knows(const std::string& id)
    {
        const auto found = queue->status(id);
        EXPECT_TRUE(found);
        return found && found->has_value();
    }

    JobState state(const std::string& id) { return status(id).state; }

    TempDir folder;
    const std::filesystem::path file = folder.path() / "jobs.sqlite";
    std::atomic<std::chrono::system_clock::time_point> now{std::chrono::system_clock::time_point(100'000h)};
    std::unique_ptr<JobQueue> queue = open();
};

TEST_F(JobQueueTest, takesAJobFromTheRequestToTheResult)
{
    ASSERT_TRUE(queue->add("a"));
    EXPECT_EQ(state("a"), JobState::Requested);
    ASSERT_TRUE(queue->enqueue("a"));
    EXPECT_EQ(state("a"), JobState::Queued);
    const ClaimedJob job = claim();
    EXPECT_EQ(job.id, "a");
    EXPECT_EQ(state("a"), JobState::Running);
    EXPECT_EQ(queue->finish(job, "results/r"), true);
    EXPECT_EQ(state("a"), JobState::Finished);
    EXPECT_EQ(status("a").resultKey, "results/r");
}

TEST_F(JobQueueTest, keepsTheMessageOfAFailure)
{
    queueJob("a");
    EXPECT_EQ(queue->fail(claim(), "No luck."), true);
    EXPECT_EQ(state("a"), JobState::Failed);
    EXPECT_EQ(status("a").message, "No luck.");
}

TEST_F(JobQueueTest, knowsNothingOfOtherJobs)
{
    EXPECT_FALSE(knows("b"));
    EXPECT_TRUE(queue->enqueue("b"));
    EXPECT_TRUE(nothingToClaim());
}

TEST_F(JobQueueTest, claimsAJobOnceAndNotBeforeItIsQueued)
{
    ASSERT_TRUE(queue->add("a"));
    EXPECT_TRUE(nothingToClaim());
    ASSERT_TRUE(queue->enqueue("a"));
    claim();
    EXPECT_TRUE(nothingToClaim());
}

TEST_F(JobQueueTest, queuesAJobOnceOnly)
{
    queueJob("a");
    EXPECT_EQ(queue->finish(claim(), "r"), true);
    ASSERT_TRUE(queue->enqueue("a"));
    EXPECT_EQ(state("a"), JobState::Finished);
}

TEST_F(JobQueueTest, claimsTheJobThatHasWaitedLongest)
{
    for (const char* id : {"c", "a", "b"})
        queueJob(id);
    EXPECT_EQ(claim().id, "c");
    EXPECT_EQ(claim().id, "a");
    EXPECT_EQ(claim().id, "b");
}

TEST_F(JobQueueTest, givesAJobWhoseWorkerDiedToAnother)
{
    queueJob("a");
    const ClaimedJob dead = claim();
    now = now.load() + 9s;
    EXPECT_TRUE(nothingToClaim());
    now = now.load() + 1s;
    const ClaimedJob next = claim();
    EXPECT_EQ(next.id, "a");
    EXPECT_NE(next.leaseToken, dead.leaseToken);
}

TEST_F(JobQueueTest, leavesAJobToAWorkerThatRenewsItsLease)
{
    queueJob("a");
    const ClaimedJob job = claim();
    for (int i = 0; i < 5; ++i)
    {
        now = now.load() + 8s;
        EXPECT_EQ(queue->renew(job), true);
        EXPECT_TRUE(nothingToClaim());
    }
}

TEST_F(JobQueueTest, ignoresAWorkerThatComesTooLate)
{
    queueJob("a");
    const ClaimedJob late = claim();
    now = now.load() + 1min;
    const ClaimedJob next = claim();
    EXPECT_EQ(queue->renew(late), false);
    EXPECT_EQ(queue->finish(late, "late"), false);
    EXPECT_EQ(queue->fail(late, "late"), false);
    EXPECT_EQ(queue->retry(late, "late"), false);
    EXPECT_EQ(queue->giveBack(late), false);
    EXPECT_EQ(state("a"), JobState::Running);
    EXPECT_EQ(queue->finish(next, "r"), true);
    EXPECT_EQ(queue->finish(late, "late"), false);
    EXPECT_EQ(status("a").resultKey, "r");
}

TEST_F(JobQueueTest, failsAJobOnWhichTwoWorkersDied)
{
    queueJob("a");
    for (int i = 0; i < 2; ++i)
    {
        claim();
        now = now.load() + 1min;
    }
    EXPECT_TRUE(nothingToClaim());
    EXPECT_EQ(state("a"), JobState::Failed);
    EXPECT_EQ(status("a").message,
              "The conversion was interrupted twice. Try again; if that does not help, the file may be damaged.");
}

TEST_F(JobQueueTest, goesOnToTheNextJobAfterOneThatDiedTwice)
{
    queueJob("a");
    for (int i = 0; i < 2; ++i)
    {
        claim();
        now = now.load() + 1min;
    }
    queueJob("b");
    EXPECT_EQ(claim().id, "b");
}

TEST_F(JobQueueTest, retriesAJobOnceAndThenFailsIt)
{
    queueJob("a");
    EXPECT_EQ(queue->retry(claim(), "It died."), true);
    EXPECT_EQ(state("a"), JobState::Queued);
    EXPECT_EQ(queue->retry(claim(), "It died again."), true);
    EXPECT_EQ(state("a"), JobState::Failed);
    EXPECT_EQ(status("a").message, "It died again.");
}

TEST_F(JobQueueTest, doesNotCountAnAttemptThatIsGivenBack)
{
    queueJob("a");
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(queue->giveBack(claim()), true);
    EXPECT_EQ(queue->retry(claim(), "It died."), true);
    EXPECT_EQ(state("a"), JobState::Queued);
}

TEST_F(JobQueueTest, freesALeaseFromBeforeTheClockWasSetBack)
{
    queueJob("a");
    claim();
    now = now.load() - 24h;
    EXPECT_EQ(claim().id, "a");
}

TEST_F(JobQueueTest, keepsJobsWhenItIsOpenedAgain)
{
    queueJob("a");
    queueJob("b");
    const ClaimedJob job = claim();
    queue.reset();
    queue = open();
    EXPECT_EQ(state("a"), JobState::Running);
    EXPECT_EQ(claim().id, "b");
    EXPECT_EQ(queue->finish(job, "r"), true);
}

TEST_F(JobQueueTest, tellsOfEachChangeOfState)
{
    std::atomic<int> changes = 0;
    queue->setListener([&] { ++changes; });
    ASSERT_TRUE(queue->add("a"));
    EXPECT_EQ(changes, 0);
    ASSERT_TRUE(queue->enqueue("a"));
    EXPECT_EQ(changes, 1);
    ASSERT_TRUE(queue->enqueue("a"));
    EXPECT_EQ(changes, 1);
    ASSERT_TRUE(queue->retry(claim(), "It died."));
    EXPECT_EQ(changes, 2);
    ASSERT_TRUE(queue->fail(claim(), "No luck."));
    EXPECT_EQ(changes, 3);
}

TEST_F(JobQueueTest, tellsOfAJobThatItGivesUp)
{
    queueJob("a");
    for (int i = 0; i < 2; ++i)
    {
        claim();
        now = now.load() + 1min;
    }
    int changes = 0;
    queue->setListener([&] { ++changes; });
    EXPECT_TRUE(nothingToClaim());
    EXPECT_EQ(changes, 1);
}

TEST_F(JobQueueTest, forgetsOldJobsThatAreNotRunning)
{
    queueJob("running");
    claim();
    queueJob("queued");
    ASSERT_TRUE(queue->add("requested"));
    now = now.load() + 1h;
    ASSERT_TRUE(queue->add("new"));
    ASSERT_TRUE(queue->forgetOlderThan(now.load() - 1min));
    EXPECT_FALSE(knows("queued"));
    EXPECT_FALSE(knows("requested"));
    EXPECT_EQ(state("running"), JobState::Running);
    EXPECT_EQ(state("new"), JobState::Requested);
}

TEST_F(JobQueueTest, knowsTheLeasesThatHold)
{
    queueJob("a");
    claim();
    now = now.load() + 9s;
    queueJob("b");
    const ClaimedJob live = claim();
    now = now.load() + 5s;
    EXPECT_EQ(queue->liveLeases(), std::set{live.leaseToken});
}

TEST_F(JobQueueTest, refusesADatabaseOfANewerVersion)
{
    queue.reset();
    {
        auto database = SqliteDatabase::open(file);
        ASSERT_TRUE(database && database->execute("PRAGMA user_version = 99"));
    }
    const auto opened = JobQueue::open(file);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), "The database was written by a newer version: update this one.");
}

TEST_F(JobQueueTest, handsEachJobToOneOfManyWorkers)
{
    constexpr int count = 60;
    for (int i = 0; i < count; ++i)
        queueJob(std::to_string(i));
    const auto other = open(); // A connection of its own, as another process has.
    std::vector<std::string> claimed[4];
    startThreads(4,
                 [&](std::size_t w)
                 {
                     JobQueue& mine = w % 2 == 0 ? *queue : *other;
                     while (const std::optional<ClaimedJob> job = mine.claim().value_or(std::nullopt))
                         claimed[w].push_back(job->id);
                 })
        .clear();

    std::multiset<std::string> all;
    for (const auto& ids : claimed)
        all.insert(ids.begin(), ids.end());
    EXPECT_EQ(all.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(JobQueueTest, opensANewDatabaseFromSeveralThreadsAtOnce)
{
    const auto fresh = folder.path() / "fresh.sqlite";
    std::atomic<int> opened = 0;
    startThreads(6,
                 [&](int i)
                 {
                     const auto mine = JobQueue::open(fresh);
                     EXPECT_TRUE(mine) << mine.error();
                     if (mine && (*mine)->add(std::to_string(i)))
                         ++opened;
                 })
        .clear();
    EXPECT_EQ(opened, 6);
}

} // namespace

} // namespace VX::Test
