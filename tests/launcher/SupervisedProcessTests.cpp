#include "launcher/SupervisedProcess.h"

#include "tests/support/Processes.h"
#include "tests/support/RawSocket.h"
#include "tests/support/TempDir.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <csignal>
#include <future>
#include <sstream>
#include <utility>

namespace VX
{

namespace
{

/// Processes of the shell, whose numbers a test finds in a file.
class SupervisedProcessTest : public testing::Test
{
protected:
    /// A process that writes its number and does what `script` says.
    [[nodiscard]] SupervisedProcess::Command shell_(const std::string& script) const
    {
        SupervisedProcess::Command command;
        command.executable = "/bin/sh";
        command.arguments = {"-c", "echo $$ >>\"$0\"; " + script, numbers_.string()};
        command.logFile = log_;
        return command;
    }

    [[nodiscard]] static std::string forever_() { return "exec sleep 1000"; }

    [[nodiscard]] std::vector<int> started_() const
    {
        std::istringstream stream(VX::Test::readFile(numbers_));
        std::vector<int> ids;
        for (int id = 0; stream >> id;)
            ids.push_back(id);
        return ids;
    }

    [[nodiscard]] bool waitForStarts_(std::size_t count) const
    {
        return VX::Test::waitUntil([&] { return started_().size() >= count; });
    }

    [[nodiscard]] std::string logText_() const { return VX::Test::readFile(log_); }

    /// The first reason that a process which does what `script` says gives for its end.
    [[nodiscard]] std::string reasonOf_(SupervisedProcess::Command command) const
    {
        std::promise<std::string> first;
        bool isFirst = true;
        command.ended = [&](const std::string& reason)
        {
            if (std::exchange(isFirst, false))
                first.set_value(reason);
        };
        const SupervisedProcess process(std::move(command));
        return first.get_future().get();
    }

    const VX::Test::TempDir folder_;
    const std::filesystem::path numbers_ = folder_.path() / "numbers";
    const std::filesystem::path log_ = folder_.path() / "log";
};

TEST_F(SupervisedProcessTest, IsStopped)
{
    {
        const SupervisedProcess process(shell_(forever_()));
        ASSERT_TRUE(waitForStarts_(1));
        EXPECT_TRUE(VX::Test::isRunning(started_().front()));
    }
    EXPECT_FALSE(VX::Test::isRunning(started_().front()));
}

TEST_F(SupervisedProcessTest, IsAskedToEndFirst)
{
    {
        const SupervisedProcess process(
            shell_("trap 'echo asked >&2; exit' TERM; echo ready >&2; while :; do sleep 0.01; done"));
        ASSERT_TRUE(VX::Test::waitUntil([&] { return logText_() == "ready\n"; }));
    }
    EXPECT_EQ(logText_(), "ready\nasked\n");
}

TEST_F(SupervisedProcessTest, IsKilledWhereItDoesNotEnd)
{
    {
        const SupervisedProcess process(shell_("trap '' TERM; echo ready >&2; while :; do sleep 0.01; done"));
        ASSERT_TRUE(VX::Test::waitUntil([&] { return logText_() == "ready\n"; }));
    }
    EXPECT_FALSE(VX::Test::isRunning(started_().front()));
}

TEST_F(SupervisedProcessTest, IsStartedAgainWhenItWasKilled)
{
    const SupervisedProcess process(shell_(forever_()));
    ASSERT_TRUE(waitForStarts_(1));
    ::kill(started_().front(), SIGKILL);
    ASSERT_TRUE(waitForStarts_(2));
    EXPECT_TRUE(VX::Test::isRunning(started_()[1]));
}

TEST_F(SupervisedProcessTest, IsStartedAgainWhenItEnded)
{
    const SupervisedProcess process(shell_("exit 0"));
    EXPECT_TRUE(waitForStarts_(3));
}

TEST_F(SupervisedProcessTest, IsNotStartedAgainWhenItHasFinished)
{
    auto command = shell_("exit 0");
    command.mayFinish = true;
    {
        const SupervisedProcess process(std::move(command));
        ASSERT_TRUE(waitForStarts_(1));
        ASSERT_TRUE(VX::Test::waitUntil([&] { return !VX::Test::isRunning(started_().front()); }));
    }
    EXPECT_EQ(started_().size(), 1U);
}

TEST_F(SupervisedProcessTest, IsStartedAgainWhenItFailedBeforeItHadFinished)
{
    auto command = shell_("exit 1");
    command.mayFinish = true;
    const SupervisedProcess process(std::move(command));
    EXPECT_TRUE(waitForStarts_(3));
}

TEST_F(SupervisedProcessTest, IsNotStartedAgainWhenItWasStopped)
{
    {
        const SupervisedProcess process(shell_(forever_()));
        ASSERT_TRUE(waitForStarts_(1));
    }
    EXPECT_EQ(started_().size(), 1U);
}

TEST_F(SupervisedProcessTest, GetsTheDescriptorAsTheThird)
{
    const VX::Test::RawListener listener;
    auto command = shell_("readlink /proc/self/fd/3 >&2; " + forever_());
    command.inheritedFd = listener.socket();
    const SupervisedProcess process(command);
    EXPECT_TRUE(VX::Test::waitUntil([&] { return logText_().starts_with("socket:"); })) << logText_();
}

TEST_F(SupervisedProcessTest, AppendsItsErrorOutputToAPrivateLog)
{
    const SupervisedProcess process(shell_("echo line >&2; kill -KILL $$"));
    EXPECT_TRUE(VX::Test::waitUntil([&] { return logText_().starts_with("line\nline\n"); }));
    EXPECT_EQ(VX::Test::modeOf(log_), 0600U);
}

TEST_F(SupervisedProcessTest, TellsWhatItWroteLastWhereItGaveUp)
{
    EXPECT_EQ(reasonOf_(shell_("echo start >&2; echo 'The disk is full.' >&2; exit 1")), "The disk is full.");
}

TEST_F(SupervisedProcessTest, TellsItAlsoWhereTheLogTakesNoMore)
{
    auto command = shell_("echo 'The disk is full.' >&2; exit 1");
    command.logFile = "/dev/full";
    EXPECT_EQ(reasonOf_(command), "The disk is full.");
}

TEST_F(SupervisedProcessTest, TellsTheStatusOfOneThatWroteNothing)
{
    EXPECT_EQ(reasonOf_(shell_("exit 1")), "It ended with status 1.");
    EXPECT_EQ(reasonOf_(shell_("echo Usage >&2; exit 2")), "It ended with status 2.");
}

TEST_F(SupervisedProcessTest, TellsNothingOfOneThatWasKilled)
{
    EXPECT_EQ(reasonOf_(shell_("echo working >&2; kill -KILL $$")), "");
}

TEST_F(SupervisedProcessTest, TellsWhyItCannotBeStarted)
{
    SupervisedProcess::Command command;
    command.executable = folder_.path() / "missing";
    EXPECT_EQ(reasonOf_(command), "Cannot start \"missing\": no such file or directory.");
}

TEST_F(SupervisedProcessTest, TellsNothingOfAStop)
{
    bool told = false;
    auto command = shell_(forever_());
    command.ended = [&](const std::string&) { told = true; };
    {
        const SupervisedProcess process(command);
        ASSERT_TRUE(waitForStarts_(1));
    }
    EXPECT_FALSE(told);
}

} // namespace

} // namespace VX
