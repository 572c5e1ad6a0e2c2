#include "Segment.h"

#include "ChannelFixture.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace VX
{

namespace
{

using Test::Listener;
using Test::LogCapture;

using SegmentTest = Test::ChannelFixture;

void leaveBehind(const std::filesystem::path& file, std::size_t size)
{
    std::ofstream(file) << std::string(size, '\xa5');
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

// A notification that reaches a listener: all that a channel has to do.
void expectThatItWorks(const std::string& name)
{
    Listener listener(name);
    SharedMemory(name, false).notify([] {});
    listener.waitForCallbacks(1);
    listener.waitUntilItListens();
    EXPECT_EQ(SharedMemory(name, false).listenerCount(), 1U);
    listener.stop();
    EXPECT_EQ(listener.callbacks(), 1U);
}

TEST_F(SegmentTest, IsBegunAnewWhereItsCreatorDiedBeforeItHadASize)
{
    leaveBehind(file_, 0);
    expectThatItWorks(name_);
}

TEST_F(SegmentTest, IsBegunAnewWhereItWasLeftHalfWritten)
{
    leaveBehind(file_, sizeof(Channel));
    expectThatItWorks(name_);
}

TEST_F(SegmentTest, IsBegunAnewWhereAnotherSizeWasLeft)
{
    leaveBehind(file_, 100'000);
    expectThatItWorks(name_);
}

TEST_F(SegmentTest, IsBegunAnewByOneWhoDoesNotCreateIt)
{
    leaveBehind(file_, sizeof(Channel));
    bool done = false;
    SharedMemory(name_, false).notify([&] { done = true; });
    EXPECT_TRUE(done);
}

TEST_F(SegmentTest, IsMissingWhereNobodyHasCreatedIt)
{
    EXPECT_EQ(Segment::open(name_, false), nullptr);
}

TEST_F(SegmentTest, IsOneForAllThatHaveTheName)
{
    const auto first = Segment::open(name_, true);
    const auto second = Segment::open(name_, true);
    const auto third = Segment::open(name_, false);
    first->channel().notify([] {});
    EXPECT_EQ(second->channel().look().step, first->channel().look().step);
    EXPECT_EQ(third->channel().look().step, first->channel().look().step);
}

TEST_F(SegmentTest, LeavesANewOneOfItsNameAlone)
{
    auto old = Segment::open(name_, true);
    std::filesystem::remove(file_);
    const auto present = Segment::open(name_, true);
    old.reset();
    EXPECT_TRUE(std::filesystem::exists(file_));
}

TEST_F(SegmentTest, ThatOthersMayOpenIsNotUsed)
{
    leaveBehind(file_, sizeof(Channel));
    std::filesystem::permissions(file_, std::filesystem::perms::others_write, std::filesystem::perm_options::add);
    const LogCapture log;
    bool done = false;
    SharedMemory(name_, true).notify([&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_TRUE(log.contains("it is not this user's alone"));
    std::filesystem::remove(file_);
}

TEST_F(SegmentTest, OfAnotherUserIsNotUsed)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can act as another user";
    leaveBehind(file_, sizeof(Channel));
    ASSERT_EQ(::chown(file_.c_str(), 65'534, 65'534), 0);
    EXPECT_THROW(static_cast<void>(Segment::open(name_, true)), std::exception);
    std::filesystem::remove(file_);
}

TEST_F(SegmentTest, IsNotCalledAsThatOfAnotherUser)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can act as another user";
    const auto mine = Segment::open(name_, true);
    const pid_t child = ::fork();
    if (child == 0)
    {
        bool found = true;
        bool created = false;
        if (::setgid(65'534) == 0 && ::setuid(65'534) == 0)
        {
            found = Segment::open(name_, false) != nullptr;
            created = Segment::open(name_, true) != nullptr;
        }
        ::_exit(created && !found ? 7 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 7);
}

TEST_F(SegmentTest, ThatCannotBeHadIsSaidInTheLogAndTheObjectWorksOnItsOwn)
{
    const LogCapture log;
    Listener listener("no/name");
    EXPECT_TRUE(log.contains("The channel to the other instances of the program cannot be opened"));
    listener.memory().notify([] {});
    listener.waitForCallbacks(1);
    listener.waitUntilItListens();
    EXPECT_EQ(listener.memory().listenerCount(), 1U);
}

} // namespace

} // namespace VX
