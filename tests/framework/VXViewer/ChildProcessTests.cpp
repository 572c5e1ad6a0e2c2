#include "framework/VXViewer/src/dialog/ChildProcess.h"

#include <gtest/gtest.h>

namespace VX
{

TEST(ChildProcessTests, ReadsWhatAProgramWritesAndHowItEnds)
{
    auto process = ChildProcess::start("/bin/sh", {"-c", "printf 'a\\0b\\0'; exit 3"});
    ASSERT_TRUE(process) << process.error();
    const ChildProcess::Result result = (*process)->wait();
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, std::string("a\0b\0", 4));
}

TEST(ChildProcessTests, HandsArgumentsOverAsTheyAre)
{
    auto process = ChildProcess::start("/usr/bin/printf", {"%s", "$HOME `id` \"x\""});
    ASSERT_TRUE(process) << process.error();
    EXPECT_EQ((*process)->wait().output, "$HOME `id` \"x\"");
}

TEST(ChildProcessTests, SaysWhyAProgramCannotBeStarted)
{
    const auto process = ChildProcess::start("/nonexistent/program", {});
    ASSERT_FALSE(process);
    EXPECT_EQ(process.error(), "No such file or directory");
}

TEST(ChildProcessTests, EndsTheProgramThatIsStillRunning)
{
    auto process = ChildProcess::start("/bin/sleep", {"1000"});
    ASSERT_TRUE(process) << process.error();
    (*process)->terminate();
    EXPECT_EQ((*process)->wait().exitCode, -1);
}

} // namespace VX
