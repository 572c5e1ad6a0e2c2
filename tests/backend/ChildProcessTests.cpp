#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/ChildProcess.h>
#include <backend/StopEvent.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <thread>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class ChildProcessTest : public ::testing::Test
{
public:
    ChildProcess start(std::string_view command, const ProcessLimits& limits = {})
    {
        const auto input = folder.write("input", command);
        auto process =
            ChildProcess::start(fakeConverter(), {input.string(), (folder.path() / "output").string()}, limits);
        EXPECT_TRUE(process) << process.error();
        return std::move(*process);
    }

    ProcessEnd endOf(std::string_view command, const ProcessLimits& limits = {})
    {
        auto process = start(command, limits);
        return waitForEnd(process);
    }

    [[nodiscard]] ProcessEnd waitForEnd(ChildProcess& process) const
    {
        const auto end = process.wait(std::chrono::steady_clock::now() + 30s, stop);
        EXPECT_TRUE(end);
        return end.value_or(ProcessEnd{});
    }

    [[nodiscard]] std::vector<std::string> output() const { return readLines(folder.path() / "output"); }

    TempDir folder;
    StopEvent stop;
};

TEST_F(ChildProcessTest, tellsTheExitCode)
{
    EXPECT_EQ(endOf("exit 0").exitCode, 0);
    EXPECT_EQ(endOf("exit 7").exitCode, 7);
}

TEST_F(ChildProcessTest, tellsTheSignal)
{
    const auto end = endOf("crash");
    EXPECT_EQ(end.signal, SIGSEGV);
    EXPECT_EQ(end.exitCode, 0);
}

TEST_F(ChildProcessTest, collectsTheErrorOutput)
{
    EXPECT_EQ(endOf("fail No luck.").errorOutput, "reading\n*** noise ***\nNo luck.\n");
}

TEST_F(ChildProcessTest, keepsTheEndOfALongErrorOutput)
{
    const auto end = endOf("fail " + std::string(100'000, 'x') + "end");
    EXPECT_EQ(end.errorOutput.size(), 16U << 10U);
    EXPECT_TRUE(end.errorOutput.ends_with("xend\n"));
}

TEST_F(ChildProcessTest, tellsTheMemoryThatWasUsed)
{
    EXPECT_GT(endOf("exit 0").peakMemory, 100U << 10U);
}

TEST_F(ChildProcessTest, endsWhereTheProgramIsMissing)
{
    auto process = ChildProcess::start(folder.path() / "missing", {}, {});
    ASSERT_TRUE(process);
    EXPECT_EQ(waitForEnd(*process).exitCode, ChildProcess::cannotRun);
}

TEST_F(ChildProcessTest, givesTheProcessNothingOfOurs)
{
    endOf("environment");
    const auto lines = output();
    for (const char* line : {"input /dev/null", "output /dev/null", "term blocked 0", "own group 1", "core 0"})
        EXPECT_TRUE(std::ranges::count(lines, line) == 1) << line << "\n" << ::testing::PrintToString(lines);
    // Its three, that of the folder with their names, and that of the output.
    EXPECT_TRUE(std::ranges::count(lines, "descriptors 4") == 1) << ::testing::PrintToString(lines);
}

TEST_F(ChildProcessTest, unblocksTheSignalsThatItsOwnerBlocks)
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    endOf("environment");
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    EXPECT_TRUE(std::ranges::count(output(), "term blocked 0") == 1);
}

TEST_F(ChildProcessTest, setsTheLimits)
{
    endOf("environment", {.memory = 200U << 20U, .cpuTime = 77s});
    const auto lines = output();
    EXPECT_TRUE(std::ranges::count(lines, "memory 209715200") == 1) << ::testing::PrintToString(lines);
    EXPECT_TRUE(std::ranges::count(lines, "cpu 77") == 1) << ::testing::PrintToString(lines);
}

TEST_F(ChildProcessTest, endsAProcessThatTakesTooMuchMemory)
{
    const auto end = endOf("allocate", {.memory = 200U << 20U});
    EXPECT_EQ(end.signal, SIGABRT);
    EXPECT_NE(end.errorOutput.find("bad_alloc"), std::string::npos);
}

TEST_F(ChildProcessTest, endsAProcessThatTakesTooMuchProcessorTime)
{
    const auto end = endOf("spin", {.cpuTime = 1s});
    EXPECT_TRUE(end.cpuTimeOver);
}

TEST_F(ChildProcessTest, stopsWaitingWhenTheTimeHasCome)
{
    auto process = start("wait /never");
    EXPECT_FALSE(process.wait(std::chrono::steady_clock::now() + 20ms, stop));
    EXPECT_FALSE(process.wait(std::chrono::steady_clock::now() - 1s, stop));
}

TEST_F(ChildProcessTest, stopsWaitingWhenItIsToldTo)
{
    auto process = start("wait /never");
    std::thread other([this] { stop.set(); });
    EXPECT_FALSE(process.wait(std::chrono::steady_clock::now() + 10min, stop));
    other.join();
    EXPECT_TRUE(stop.isSet());
}

TEST_F(ChildProcessTest, canBeWaitedForAgain)
{
    const auto signal = folder.path() / "go";
    auto process = start("wait " + signal.string());
    EXPECT_FALSE(process.wait(std::chrono::steady_clock::now() + 20ms, stop));
    folder.write("go", "");
    EXPECT_EQ(waitForEnd(process).exitCode, 0);
}

TEST_F(ChildProcessTest, killsTheProcessThatIsStillRunningAtItsEnd)
{
    {
        const auto process = start("wait /never");
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD) << "no child is left, not even to be waited for";
}

} // namespace

} // namespace VX::Test
