#include "support/BackendTestSupport.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/BlobStore.h>
#include <backend/ConversionWorkers.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class ConversionWorkersTest : public ::testing::Test
{
public:
    ConversionWorkersTest() { std::filesystem::create_directory(settings.workFolder); }

    void startWorkers(unsigned count = 1)
    {
        workers.emplace(*queue, blobs, settings);
        queue->setListener([this] { workers->wake(); });
        workers->start(count);
    }

    void addJob(const std::string& id, const std::string& archive)
    {
        folder.write("blobs/" + ConversionRun::uploadKey(id), archive);
        ASSERT_TRUE(queue->add(id));
        ASSERT_TRUE(queue->enqueue(id));
    }

    void addCommand(const std::string& id, const std::string& command) { addJob(id, zipOf({{"input", command}})); }

    JobStatus statusOf(const std::string& id) { return queue->status(id).value().value_or(JobStatus{}); }

    /// "failed: MESSAGE", or what the converter wrote.
    std::string waitForEnd(const std::string& id)
    {
        const auto ended = [&](JobState state) { return state == JobState::Finished || state == JobState::Failed; };
        if (!waitUntil([&] { return ended(statusOf(id).state); }))
            return "not ended";
        const JobStatus status = statusOf(id);
        return status.state == JobState::Failed ? "failed: " + status.message : readFile(blobs.path(status.resultKey));
    }

    std::string resultOf(const std::string& command)
    {
        addCommand("job", command);
        startWorkers();
        return waitForEnd("job");
    }

    [[nodiscard]] std::vector<std::string> runs() const { return readLines(log); }

    [[nodiscard]] std::size_t countRuns(const std::string& command) const
    {
        const auto lines = runs();
        return static_cast<std::size_t>(std::ranges::count(lines, command));
    }

    TempDir folder;
    const std::filesystem::path log = folder.path() / "log";
    const EnvironmentVariable logVariable{"FAKE_CONVERTER_LOG", log.string()};
    std::unique_ptr<JobQueue> queue = JobQueue::open(folder.path() / "jobs.sqlite").value();
    const BlobStore blobs = BlobStore::open(folder.path() / "blobs").value();
    ConversionSettings settings{.converter = fakeConverter(), .workFolder = folder.path() / "work"};
    std::optional<ConversionWorkers> workers;
};

TEST_F(ConversionWorkersTest, convertsAJob)
{
    EXPECT_EQ(resultOf("succeed a part"), "converted a part");
}

TEST_F(ConversionWorkersTest, startsAJobThatIsQueuedWhileItIsIdle)
{
    startWorkers();
    addCommand("job", "succeed later");
    EXPECT_EQ(waitForEnd("job"), "converted later");
}

TEST_F(ConversionWorkersTest, leavesNothingButTheResult)
{
    resultOf("succeed x");
    const auto isEmpty = [&](const char* name) { return std::filesystem::is_empty(folder.path() / name); };
    EXPECT_TRUE(isEmpty("work"));
    EXPECT_TRUE(waitUntil([&] { return isEmpty("blobs/uploads"); }));
    EXPECT_TRUE(isEmpty("blobs/incoming"));
}

TEST_F(ConversionWorkersTest, passesOnTheConvertersSentence)
{
    EXPECT_EQ(resultOf("fail The file holds no shape."), "failed: The file holds no shape.");
    EXPECT_EQ(runs().size(), 1U);
}

TEST_F(ConversionWorkersTest, triesAConversionThatCrashesOnceMore)
{
    EXPECT_EQ(resultOf("crash-once x"), "converted x");
    EXPECT_EQ(runs().size(), 2U);
}

TEST_F(ConversionWorkersTest, givesUpAConversionThatCrashesTwice)
{
    EXPECT_EQ(resultOf("crash"), "failed: The converter stopped unexpectedly. The file may be damaged: export it again "
                                 "from the program that wrote it.");
    EXPECT_EQ(runs().size(), 2U);
}

TEST_F(ConversionWorkersTest, takesAMissingResultForACrash)
{
    EXPECT_EQ(resultOf("nothing"), "failed: The converter stopped unexpectedly. The file may be damaged: export it "
                                   "again from the program that wrote it.");
    EXPECT_EQ(runs().size(), 2U);
}

TEST_F(ConversionWorkersTest, endsAConversionThatTakesTooLong)
{
    settings.limits.time = 1s;
    EXPECT_EQ(resultOf("wait /never"),
              "failed: The conversion took longer than 1 seconds and was stopped. Split the file into smaller ones.");
    EXPECT_EQ(runs().size(), 1U);
}

TEST_F(ConversionWorkersTest, endsAConversionThatTakesTooMuchMemory)
{
    settings.limits.memory = 200U << 20U;
    EXPECT_EQ(resultOf("allocate"),
              "failed: The conversion ran out of memory. Close other programs, or split the file into smaller ones.");
    EXPECT_EQ(runs().size(), 1U);
}

TEST_F(ConversionWorkersTest, saysThatTheConverterIsMissing)
{
    settings.converter = folder.path() / "missing";
    EXPECT_EQ(resultOf("succeed x"), "failed: The converter could not be started. Install the program again.");
}

TEST_F(ConversionWorkersTest, saysThatTheUploadIsDamaged)
{
    addJob("job", "not an archive");
    startWorkers();
    EXPECT_TRUE(waitForEnd("job").starts_with("failed: Cannot unpack \"upload.zip\": ")) << waitForEnd("job");
}

TEST_F(ConversionWorkersTest, saysThatTheUploadIsGone)
{
    ASSERT_TRUE(queue->add("job"));
    ASSERT_TRUE(queue->enqueue("job"));
    startWorkers();
    EXPECT_EQ(waitForEnd("job"), "failed: The uploaded file is not there any more: open the file again.");
}

TEST_F(ConversionWorkersTest, runsAsManyConversionsAtATimeAsItHasWorkers)
{
    const auto go = folder.path() / "go";
    for (const char* id : {"a", "b", "c"})
        addCommand(id, "wait " + go.string());
    startWorkers(2);
    EXPECT_TRUE(waitUntil([&] { return runs().size() == 2; }));
    EXPECT_EQ(statusOf("c").state, JobState::Queued);
    folder.write("go", "");
    for (const char* id : {"a", "b", "c"})
        EXPECT_EQ(waitForEnd(id), "converted " + go.string());
}

TEST_F(ConversionWorkersTest, keepsTheLeaseOfALongConversion)
{
    // Two queues, as of two processes. Their leases are short, so that a job which is not renewed changes hands.
    settings.lease = 1s;
    queue = JobQueue::open(folder.path() / "jobs.sqlite", {.lease = settings.lease}).value();
    auto other = JobQueue::open(folder.path() / "jobs.sqlite", {.lease = settings.lease}).value();
    const auto go = folder.path() / "go";
    addCommand("job", "wait " + go.string());
    startWorkers();
    ASSERT_TRUE(waitUntil([&] { return runs().size() == 1; }));
    const auto until = std::chrono::steady_clock::now() + 3 * settings.lease;
    EXPECT_TRUE(waitUntil(
        [&]
        {
            EXPECT_FALSE(other->claim().value());
            return HasFailure() || std::chrono::steady_clock::now() > until;
        }));
    folder.write("go", "");
    EXPECT_EQ(waitForEnd("job"), "converted " + go.string());
    EXPECT_EQ(runs().size(), 1U);
}

TEST_F(ConversionWorkersTest, leavesAJobAloneThatItHasLost)
{
    settings.lease = 300ms;
    const auto go = folder.path() / "go";
    addCommand("job", "wait " + go.string());
    startWorkers();
    ASSERT_TRUE(waitUntil([&] { return runs().size() == 1; }));
    // Another worker, whose clock is ahead, takes the job over.
    auto other =
        JobQueue::open(folder.path() / "jobs.sqlite", {.now = [] { return std::chrono::system_clock::now() + 4min; }})
            .value();
    const ClaimedJob taken = claimJob(*other);
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::is_empty(settings.workFolder); }));
    EXPECT_EQ(statusOf("job").state, JobState::Running);
    EXPECT_EQ(other->finish(taken, "results/other"), true);
}

TEST_F(ConversionWorkersTest, givesItsJobsBackAtItsEnd)
{
    addCommand("job", "wait /never");
    startWorkers();
    ASSERT_TRUE(waitUntil([&] { return countRuns("wait /never") == 1; }));
    workers.reset();
    EXPECT_EQ(statusOf("job").state, JobState::Queued);
    EXPECT_TRUE(std::filesystem::is_empty(settings.workFolder));
    EXPECT_TRUE(blobs.size(ConversionRun::uploadKey("job")));
}

} // namespace

} // namespace VX::Test
