#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/BlobStore.h>
#include <backend/Housekeeping.h>
#include <backend/JobQueue.h>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class HousekeepingTest : public ::testing::Test
{
public:
    void makeOld(const std::filesystem::path& file)
    {
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - 48h);
    }

    TempDir folder;
    std::atomic<std::chrono::system_clock::time_point> now{std::chrono::system_clock::now() - 48h};
    std::unique_ptr<JobQueue> queue =
        JobQueue::open(folder.path() / "jobs.sqlite", {.lease = 10s, .now = [this] { return now.load(); }}).value();
    const BlobStore blobs = BlobStore::open(folder.path() / "blobs").value();
    const std::filesystem::path work = folder.path() / "work";
};

TEST_F(HousekeepingTest, removesJobsAndFilesAfterTheirTime)
{
    ASSERT_TRUE(queue->add("old"));
    now = std::chrono::system_clock::now();
    ASSERT_TRUE(queue->add("new"));
    for (const char* name : {"blobs/uploads/old", "blobs/results/old", "blobs/uploads/new"})
        folder.write(name, "x");
    makeOld(blobs.path("uploads/old"));
    makeOld(blobs.path("results/old"));

    const Housekeeping housekeeping(*queue, blobs, work, 24h, 10s);
    EXPECT_TRUE(waitUntil([&] { return !blobs.size("uploads/old") && !blobs.size("results/old"); }));
    EXPECT_TRUE(waitUntil([&] { return !queue->status("old").value(); }));
    EXPECT_TRUE(blobs.size("uploads/new"));
    EXPECT_TRUE(queue->status("new").value());
}

TEST_F(HousekeepingTest, removesTheWorkOfDeadWorkersOnly)
{
    now = std::chrono::system_clock::now();
    ASSERT_TRUE(queue->add("a"));
    ASSERT_TRUE(queue->enqueue("a"));
    const ClaimedJob live = claimJob(*queue);
    folder.write("work/dead/input", "x");
    folder.write("work/" + live.leaseToken + "/input", "x");

    const Housekeeping housekeeping(*queue, blobs, work, 24h, 10s);
    EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(work / "dead"); }));
    EXPECT_TRUE(std::filesystem::exists(work / live.leaseToken / "input"));
}

TEST_F(HousekeepingTest, removesTheWorkOfAServiceThatWasKilledJustBefore)
{
    now = std::chrono::system_clock::now();
    ASSERT_TRUE(queue->add("a"));
    ASSERT_TRUE(queue->enqueue("a"));
    const ClaimedJob dead = claimJob(*queue);
    folder.write("work/" + dead.leaseToken + "/input", "x");

    const Housekeeping housekeeping(*queue, blobs, work, 24h, 50ms);
    now = now.load() + 10s;
    EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(work / dead.leaseToken); }));
}

TEST_F(HousekeepingTest, endsAtOnce)
{
    const Housekeeping housekeeping(*queue, blobs, work, 24h, 10s);
}

} // namespace

} // namespace VX::Test
