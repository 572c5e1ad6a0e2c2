#include "BackendProcess.h"
#include "tests/backend/support/BackendTestSupport.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/PrivateRoot.h"
#include "tests/support/Processes.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempDir.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <json/writer.h>

#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <thread>

namespace VX::Test
{

namespace
{

class BackendSystemTest : public ::testing::Test
{
public:
    BackendSystemTest()
    {
        settings["converter"] = fakeConverter().string();
        settings["leaseSeconds"] = 1;
        settings["statusHoldMilliseconds"] = 100;
    }

    [[nodiscard]] std::vector<std::string> configArguments() const
    {
        const std::string text = Json::writeString(Json::StreamWriterBuilder(), settings);
        return {"--config", folder.write("config.json", text).string()};
    }

    [[nodiscard]] std::unique_ptr<BackendProcess> start(std::vector<std::string> more = {}) const
    {
        const auto config = configArguments();
        more.insert(more.end(), config.begin(), config.end());
        return std::make_unique<BackendProcess>(data, log, more);
    }

    [[nodiscard]] static Client client(const std::unique_ptr<BackendProcess>& backend)
    {
        return Client(backend->port());
    }

    /// Queues a job and waits until its converter runs for the `count`th time.
    static std::string startJob(const std::unique_ptr<BackendProcess>& backend, const std::string& command)
    {
        std::string id = client(backend).upload(command);
        EXPECT_EQ(client(backend).convert(id).status, 200);
        return id;
    }

    [[nodiscard]] bool waitForRuns(std::size_t count) const
    {
        return waitUntil([&] { return readLines(runs).size() == count; });
    }

    TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
    const std::filesystem::path log = folder.path() / "log";
    const std::filesystem::path runs = folder.path() / "runs";
    const EnvironmentVariable runsVariable{"FAKE_CONVERTER_LOG", runs.string()};
    Json::Value settings;
};

TEST_F(BackendSystemTest, convertsAFile)
{
    const auto backend = start();
    EXPECT_EQ(client(backend).run("succeed a part"), "converted a part");
}

TEST_F(BackendSystemTest, endsWellOnSigterm)
{
    const auto backend = start();
    EXPECT_EQ(client(backend).send("GET", "/healthz").status, 200);
    EXPECT_EQ(backend->terminate(), 0);
}

TEST_F(BackendSystemTest, takesItsConversionsWithItOnSigterm)
{
    auto backend = start();
    const auto go = folder.path() / "go";
    const std::string id = startJob(backend, "wait " + go.string());
    ASSERT_TRUE(waitForRuns(1));
    const auto converters = childrenOf(backend->id());
    ASSERT_EQ(converters.size(), 1U);
    EXPECT_EQ(backend->terminate(), 0);
    EXPECT_FALSE(isRunning(converters.front()));

    folder.write("go", "");
    backend = start();
    EXPECT_EQ(client(backend).waitForEnd(id).json()["result"]["state"], "finished");
}

TEST_F(BackendSystemTest, takesItsConversionsWithItWhenItIsKilled)
{
    auto backend = start();
    startJob(backend, "wait /never");
    ASSERT_TRUE(waitForRuns(1));
    const auto converters = childrenOf(backend->id());
    ASSERT_EQ(converters.size(), 1U);
    backend->killNow();
    EXPECT_TRUE(waitUntil([&] { return !isRunning(converters.front()); }));
}

TEST_F(BackendSystemTest, runsAJobAgainAfterItWasKilled)
{
    auto backend = start();
    const auto go = folder.path() / "go";
    const std::string id = startJob(backend, "wait " + go.string());
    ASSERT_TRUE(waitForRuns(1));
    backend->killNow();

    backend = start();
    ASSERT_TRUE(waitForRuns(2));
    folder.write("go", "");
    EXPECT_EQ(client(backend).waitForEnd(id).json()["result"]["state"], "finished");
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::is_empty(data / "work"); }));
}

TEST_F(BackendSystemTest, failsAJobDuringWhichItWasKilledTwice)
{
    auto backend = start();
    const std::string id = startJob(backend, "wait /never");
    ASSERT_TRUE(waitForRuns(1));
    backend->killNow();
    backend = start();
    ASSERT_TRUE(waitForRuns(2));
    backend->killNow();

    backend = start();
    EXPECT_EQ(client(backend).waitForEnd(id).errorMessage(),
              "The conversion was interrupted twice. Try again; if that does not help, the file may be damaged.");
    EXPECT_EQ(readLines(runs).size(), 2U);
}

TEST_F(BackendSystemTest, failsAJobWhoseConverterIsKilledTwice)
{
    const auto backend = start();
    const std::string id = startJob(backend, "wait /never");
    for (std::size_t run = 1; run <= 2; ++run)
    {
        ASSERT_TRUE(waitForRuns(run));
        for (const int converter : childrenOf(backend->id()))
            killProcess(converter);
    }
    EXPECT_EQ(client(backend).waitForEnd(id).errorMessage(),
              "The converter stopped unexpectedly. The file may be damaged: export it again from the program that "
              "wrote it.");
}

TEST_F(BackendSystemTest, sharesItsDataFolderWithAnother)
{
    constexpr std::size_t allJobs = 100;
    const std::unique_ptr<BackendProcess> backends[] = {start(), start()};
    std::vector<std::string> results(allJobs);
    startThreads(10,
                 [&](std::size_t c)
                 {
                     // Each client stays with one of the two; the jobs are done by both.
                     for (std::size_t i = c; i < allJobs; i += 10)
                         results[i] = client(backends[c % 2]).run(fmt::format("succeed {}", i));
                 })
        .clear();

    for (std::size_t i = 0; i < allJobs; ++i)
        EXPECT_EQ(results[i], fmt::format("converted {}", i));
    auto done = readLines(runs);
    EXPECT_EQ(done.size(), allJobs);
    EXPECT_EQ(std::set<std::string>(done.begin(), done.end()).size(), done.size()) << "no job is done twice";
}

TEST_F(BackendSystemTest, finishesTheJobsThatAnotherLeft)
{
    auto first = start();
    const auto second = start();
    const auto go = folder.path() / "go";
    const std::string id = startJob(first, "wait " + go.string());
    ASSERT_TRUE(waitForRuns(1));
    if (childrenOf(first->id()).empty())
        GTEST_FAIL() << "the process that was asked starts the job";
    first->killNow();
    folder.write("go", "");
    EXPECT_EQ(client(second).waitForEnd(id).json()["result"]["state"], "finished");
}

TEST_F(BackendSystemTest, endsWithItsParentIfToldTo)
{
    const auto numberFile = folder.path() / "number";
    auto arguments = configArguments();
    arguments.insert(arguments.begin(), {"serve", "--data", data.string(), "--port", "0"});
    const int shell = startShellOfBackend(arguments, numberFile);
    ASSERT_TRUE(waitUntil([&] { return readLines(numberFile).size() == 1 && exists(data / "service.sqlite"); }));
    const int backend = std::stoi(readLines(numberFile).front());
    EXPECT_TRUE(isRunning(backend));
    killProcess(shell);
    EXPECT_TRUE(waitUntil([&] { return !isRunning(backend); }));
}

TEST_F(BackendSystemTest, doesNotStartWhenItsParentHasEndedAlready)
{
    EXPECT_EQ(runBackend({"serve", "--port", "0", "--data", data.string(), "--exit-with-parent", "1"}, log), 1);
    EXPECT_EQ(readFile(log), "The service cannot be started: No such process.\n");
}

TEST_F(BackendSystemTest, outlivesTheThreadThatStartedIt)
{
    std::unique_ptr<BackendProcess> backend;
    std::thread([&] { backend = start({"--exit-with-parent", std::to_string(VX::Test::ownProcess())}); }).join();
    EXPECT_EQ(client(backend).run("succeed x"), "converted x");
    EXPECT_EQ(backend->terminate(), 0);
}

TEST_F(BackendSystemTest, tellsWhatIsWrongWithItsArguments)
{
    EXPECT_EQ(runBackend({"serve", "--port", "0"}, log), 2);
    EXPECT_NE(readFile(log).find("\"--data\" is missing.\n\nUsage: quorvix-backend serve"), std::string::npos);
}

TEST_F(BackendSystemTest, tellsWhyItCannotStart)
{
    const auto config = folder.write("wrong.json", R"({"worker":1})");
    EXPECT_EQ(runBackend({"serve", "--port", "0", "--data", data.string(), "--config", config.string()}, log), 1);
    EXPECT_EQ(readFile(log),
              "The configuration file \"wrong.json\" cannot be used: \"worker\" is not a known setting.\n");
}

TEST_F(BackendSystemTest, helps)
{
    EXPECT_EQ(runBackend({"--help"}, log), 0);
    EXPECT_TRUE(readFile(log).starts_with("Usage: quorvix-backend serve"));
}

class BackendDiskFullTest : public BackendSystemTest
{
public:
    static constexpr std::size_t diskSize = 2U << 20U;

    void SetUp() override
    {
        if (!enterPrivateRoot("none", QX_TEST_OUTPUT_DIR "/private-root"))
            GTEST_SKIP() << "no private root folder is to be had here";
        std::filesystem::create_directory(data);
        // NOLINTNEXTLINE(modernize-make-unique): a scope cannot be moved
        disk.reset(new MountScope(MountScope::makeSmall(data, diskSize)));
        ASSERT_TRUE(disk->isActive());
    }

    std::unique_ptr<MountScope> disk;

    /// Text that compression makes about half as long.
    static std::string digits(std::size_t size)
    {
        std::string text(size, '0');
        std::minstd_rand random;
        for (char& c : text)
            c = static_cast<char>('0' + random() % 10);
        return text;
    }

    static constexpr const char* fullText =
        "The disk of the conversion service is full. Free some space and try again.";
};

TEST_F(BackendDiskFullTest, endsAnUploadWith507)
{
    const auto backend = start();
    const auto context = client(backend).post("/converter/v2/request", converterBody()).json()["result"];
    const auto answer = client(backend).send("PUT", context["url"].asString(), std::string(2 * diskSize, 'x'));
    EXPECT_EQ(answer.status, 507);
    EXPECT_EQ(answer.errorMessage(), fullText);
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::is_empty(data / "blobs" / "incoming"); }));
    EXPECT_EQ(client(backend).run("succeed x"), "converted x");
}

TEST_F(BackendDiskFullTest, endsAConversionThatHasNoRoomForItsInput)
{
    const auto backend = start();
    EXPECT_EQ(client(backend).run("succeed " + digits(3U << 20U)),
              "error: Cannot unpack \"upload.zip\": Cannot write \"input\": no space left on device.");
    EXPECT_EQ(client(backend).run("succeed x"), "converted x");
}

TEST_F(BackendDiskFullTest, refusesRequestsUntilThereIsRoomAgain)
{
    const auto backend = start();
    EXPECT_EQ(client(backend).run("succeed x"), "converted x");
    {
        std::ofstream filler(data / "filler", std::ios::binary);
        while (filler << std::string(512, 'x') << std::flush)
            continue;
    }
    ClientAnswer answer;
    EXPECT_TRUE(waitUntil(
        [&]
        {
            answer = client(backend).post("/converter/v2/request", converterBody());
            return answer.status != 200;
        }));
    EXPECT_EQ(answer.status, 507);
    EXPECT_EQ(answer.errorMessage(), fullText);
    std::filesystem::remove(data / "filler");
    EXPECT_EQ(client(backend).run("succeed y"), "converted y");
}

TEST_F(BackendSystemTest, keepsItsFilesPrivate)
{
    const auto backend = start();
    EXPECT_EQ(client(backend).run("succeed x"), "converted x");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(data))
        EXPECT_EQ(entry.status().permissions() & ~std::filesystem::perms::owner_all, std::filesystem::perms::none)
            << entry.path();
}

TEST_F(BackendSystemTest, logsNoLinksAndNoIdentifiers)
{
    const auto backend = start();
    const std::string id = client(backend).upload("succeed x");
    EXPECT_EQ(client(backend).convert(id).status, 200);
    EXPECT_EQ(client(backend).waitForEnd(id).status, 200);
    EXPECT_EQ(backend->terminate(), 0);
    const std::string text = readFile(log);
    EXPECT_EQ(text.find("signature="), std::string::npos) << text;
    EXPECT_EQ(text.find(id), std::string::npos) << text;
    EXPECT_NE(text.find("finished after"), std::string::npos) << text;
}

} // namespace

} // namespace VX::Test
