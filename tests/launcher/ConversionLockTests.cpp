#include "launcher/ConversionLock.h"

#include "tests/support/StartThreads.h"

#include <VXMesh/AtomicFile.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <tests/quorvix/converter/OutputDirectory.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <future>
#include <optional>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Test::MountScope;

class ConversionLockTest : public Test::OutputDirectoryTest
{
protected:
    void SetUp() override
    {
        OutputDirectoryTest::SetUp();
        std::filesystem::remove(output_("locked.part.lock"));
    }

    /// A second try for the same right, on a thread of its own.
    struct Waiter
    {
        std::promise<void> hasToWait;
        std::atomic_bool goOn{true};
        std::future<bool> gotIt = std::async(std::launch::async,
                                             [this]
                                             {
                                                 bool reported = false;
                                                 return ConversionLock::acquire("locked.part.stp",
                                                                                [&](float)
                                                                                {
                                                                                    if (!std::exchange(reported, true))
                                                                                        hasToWait.set_value();
                                                                                    return goOn.load();
                                                                                })
                                                     .has_value();
                                             });
    };

    static bool isLocked_(const std::filesystem::path& input)
    {
        return !ConversionLock::acquire(input, [](float) { return false; });
    }

    const std::filesystem::path lockFile_ = output_("locked.part.lock");
};

/// Runs `task` in a process of its own. @return its exit code
template <typename Task>
int inAnotherProcess(const Task& task)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(task());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(ConversionLockTest, isHadAtOnceWhereNobodyHasIt)
{
    int reports = 0;
    EXPECT_TRUE(ConversionLock::acquire("locked.part.step", [&](float) { return ++reports, true; }));
    EXPECT_EQ(reports, 0);
}

TEST_F(ConversionLockTest, isAFileThatEveryUserMayLockAndThatGoesWithIt)
{
    {
        const mode_t before = ::umask(077);
        const auto lock = ConversionLock::acquire("/some/folder/locked.part.step", {});
        ::umask(before);
        ASSERT_TRUE(lock) << lock.error();
        EXPECT_EQ(modeOf_(lockFile_), 0666U);
    }
    EXPECT_FALSE(std::filesystem::exists(lockFile_));
}

TEST_F(ConversionLockTest, isOneForEveryInputOfTheStem)
{
    const auto lock = ConversionLock::acquire("/some/folder/locked.part.step", {});
    EXPECT_TRUE(isLocked_("locked.part.step"));
    EXPECT_TRUE(isLocked_("/another/folder/locked.part.STP"));
    EXPECT_FALSE(isLocked_("locked.part.two.step"));
    EXPECT_FALSE(isLocked_("locked.step"));
}

TEST_F(ConversionLockTest, isWaitedForUntilItIsFree)
{
    auto lock = std::optional(ConversionLock::acquire("locked.part.step", {}));
    Waiter waiter;
    waiter.hasToWait.get_future().wait();
    lock.reset();
    EXPECT_TRUE(waiter.gotIt.get());
}

TEST_F(ConversionLockTest, isNotWaitedForAfterACancel)
{
    const auto lock = ConversionLock::acquire("locked.part.step", {});
    const auto second = ConversionLock::acquire("locked.part.step", [](float fraction) { return fraction > 0; });
    EXPECT_EQ(second.error(), "Operation was canceled");
}

TEST_F(ConversionLockTest, staysWithItsOwnerWhenAnotherGivesUp)
{
    const auto lock = ConversionLock::acquire("locked.part.step", {});
    EXPECT_TRUE(isLocked_("locked.part.step"));
    EXPECT_TRUE(std::filesystem::exists(lockFile_));
    EXPECT_TRUE(isLocked_("locked.part.step"));
}

TEST_F(ConversionLockTest, canBeMovedOn)
{
    auto first = ConversionLock::acquire("locked.part.step", {});
    {
        const ConversionLock moved = std::move(*first);
        EXPECT_TRUE(isLocked_("locked.part.step"));
    }
    EXPECT_FALSE(isLocked_("locked.part.step"));
}

TEST_F(ConversionLockTest, isGivenBackByAnAssignment)
{
    auto lock = ConversionLock::acquire("locked.part.step", {});
    *lock = std::move(ConversionLock::acquire("locked.other.step", {}).value());
    EXPECT_FALSE(isLocked_("locked.part.step"));
    EXPECT_TRUE(isLocked_("locked.other.step"));
}

TEST_F(ConversionLockTest, isHadByOneAtATime)
{
    std::atomic_int owners{0};
    std::atomic_int mostOwners{0};
    VX::Test::startThreads(4,
                           [&](int)
                           {
                               for (int round = 0; round < 20; ++round)
                               {
                                   const auto lock = ConversionLock::acquire("locked.part.step", {});
                                   if (const int now = ++owners; now > mostOwners)
                                       mostOwners = now;
                                   std::this_thread::yield();
                                   --owners;
                               }
                           })
        .clear();
    EXPECT_EQ(mostOwners, 1);
}

TEST_F(ConversionLockTest, countsInOtherProcesses)
{
    const auto lock = ConversionLock::acquire("locked.part.step", {});
    EXPECT_EQ(inAnotherProcess([] { return isLocked_("locked.part.step") ? 7 : 1; }), 7);
}

TEST_F(ConversionLockTest, isFreeAgainWhenItsOwnerCrashed)
{
    const int exitCode = inAnotherProcess(
        []
        {
            const auto lock = ConversionLock::acquire("locked.part.step", {});
            ::_exit(lock ? 7 : 1);
            return 0;
        });
    EXPECT_EQ(exitCode, 7);
    EXPECT_TRUE(std::filesystem::exists(lockFile_));
    EXPECT_FALSE(isLocked_("locked.part.step"));
    EXPECT_FALSE(std::filesystem::exists(lockFile_));
}

TEST_F(ConversionLockTest, isSharedWithOtherUsers)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can act as another user";
    {
        std::ofstream leftByRoot(lockFile_);
    }
    std::filesystem::permissions(lockFile_, documentFileMode);
    const int exitCode = inAnotherProcess(
        []
        {
            if (::setgid(65'534) != 0 || ::setuid(65'534) != 0)
                return 77;
            return ConversionLock::acquire("locked.part.step", {}) ? 7 : 1;
        });
    if (exitCode == 77)
        GTEST_SKIP() << "only root can act as another user";
    EXPECT_EQ(exitCode, 7);
    EXPECT_TRUE(std::filesystem::exists(lockFile_)) << "another user's file stays";
}

TEST_F(ConversionLockTest, doesNotFollowALink)
{
    std::filesystem::create_symlink(output_("locked.victim"), lockFile_);
    EXPECT_EQ(ConversionLock::acquire("locked.part.step", {}).error(), "errno 40");
    EXPECT_FALSE(std::filesystem::exists(output_("locked.victim")));
}

TEST_F(ConversionLockTest, doesNotWaitForAPipe)
{
    ASSERT_EQ(::mkfifo(lockFile_.c_str(), 0600), 0);
    EXPECT_TRUE(ConversionLock::acquire("locked.part.step", {}));
}

TEST_F(ConversionLockTest, createsTheOutputDirectory)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(ConverterService::serviceOutputDirectory());
    EXPECT_TRUE(ConversionLock::acquire("locked.part.step", {}));
    EXPECT_EQ(modeOf_(ConverterService::serviceOutputDirectory()), 01777U);
}

TEST_F(ConversionLockTest, failsWhereTheOutputDirectoryCannotBeCreated)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(ConverterService::serviceOutputDirectory());
    const auto readOnly = MountScope::makeReadOnly("/");
    ASSERT_TRUE(readOnly.isActive());
    EXPECT_EQ(ConversionLock::acquire("locked.part.step", {}).error(), "errno 30");
}

} // namespace

} // namespace VX
