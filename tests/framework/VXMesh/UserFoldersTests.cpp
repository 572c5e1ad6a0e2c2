#include "HomeFolder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Config.h>
#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace VX
{

namespace
{

using Test::EnvironmentVariable;
using Test::LogCapture;
using Test::modeOf;
using Test::TempConfig;
using Test::TempDir;

std::filesystem::path noHome()
{
    return {};
}

std::filesystem::path missingHome()
{
    return "/nonexistent";
}

std::filesystem::path relativeHome()
{
    return ".";
}

std::filesystem::path rootFolder()
{
    return "/";
}

// Whether it was there.
bool printTemporaryHome()
{
    const TempConfig temp;
    const auto folder = homeFolder({noHome});
    std::fprintf(stderr, "[%s]", folder.c_str());
    return std::filesystem::is_directory(folder);
}

} // namespace

TEST(UserFolders, FollowTheXdgVariablesAndTheApplicationName)
{
    const TempConfig temp("Some Name");
    const auto base = temp.folder().path();
    EXPECT_EQ(getUserConfigDir(), base / "config/Some Name");
    EXPECT_EQ(getUserDataDir(), base / "data/Some Name");
    EXPECT_EQ(getUserStateDir(), base / "state/Some Name");
    EXPECT_EQ(getUserRuntimeDir(), base / "run/some name");
}

TEST(UserFolders, LieInTheHomeFolderWhereTheVariablesAreNotSetOrRelative)
{
    const TempConfig temp("Name");
    const TempDir home;
    const EnvironmentVariable homeVariable("HOME", home.path());
    const EnvironmentVariable config("XDG_CONFIG_HOME", std::nullopt);
    const EnvironmentVariable data("XDG_DATA_HOME", "");
    const EnvironmentVariable state("XDG_STATE_HOME", "relative/folder");
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(getUserConfigDir(), home.path() / ".config/Name");
    EXPECT_EQ(getUserDataDir(), home.path() / ".local/share/Name");
    EXPECT_EQ(getUserStateDir(), home.path() / ".local/state/Name");
    EXPECT_EQ(getUserRuntimeDir(), home.path() / ".local/state/Name/run");
}

TEST(UserFolders, AreThoseOfQuorvixUntilTheSettingsAreReset)
{
    EXPECT_EQ(getUserConfigDir().filename(), "Quorvix");
}

TEST(UserFolders, AreNotCreatedByAskingForThem)
{
    const TempConfig temp("Name");
    for (const auto& folder : {getUserConfigDir(), getUserDataDir(), getUserStateDir(), getUserRuntimeDir()})
        EXPECT_FALSE(std::filesystem::exists(folder)) << folder;
}

TEST(HomeFolder, IsTheFirstCandidateThatIsAnAbsoluteFolder)
{
    EXPECT_EQ(homeFolder({noHome, missingHome, relativeHome, rootFolder}), "/");
}

TEST(HomeFolder, IsAPrivateTemporaryFolderWhereNoneIsKnownAndOneWarningSaysSo)
{
    const TempConfig temp;
    const LogCapture log;
    const auto folder = homeFolder({noHome, missingHome});
    EXPECT_EQ(homeFolder({noHome}), folder);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_THAT(log.texts(spdlog::level::warn), testing::ElementsAre(testing::HasSubstr("No home folder is known")));
}

TEST(HomeFolderDeathTest, TheTemporaryFolderGoesWithTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::string output;
    EXPECT_EXIT(
        {
            std::exit(printTemporaryHome() ? 0 : 1); // NOLINT(concurrency-mt-unsafe): no other thread is left
        },
        testing::ExitedWithCode(0), testing::Truly([&output](const std::string& text) { return output = text, true; }));
    const auto begin = output.rfind('[') + 1;
    const std::filesystem::path folder = output.substr(begin, output.rfind(']') - begin);
    ASSERT_TRUE(folder.is_absolute()) << output;
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST(CreateUserFolder, CreatesAllMissingFoldersForTheUserAlone)
{
    const TempDir temp;
    const auto folder = temp.path() / "a/b/c";
    ASSERT_TRUE(createUserFolder(folder));
    for (const auto& created : {temp.path() / "a", temp.path() / "a/b", folder})
        EXPECT_EQ(modeOf(created), 0700U) << created;
}

TEST(CreateUserFolder, LeavesAnExistingFolderAsItIs)
{
    const TempDir temp;
    std::filesystem::permissions(temp.path(), std::filesystem::perms::all);
    EXPECT_TRUE(createUserFolder(temp.path()));
    EXPECT_EQ(modeOf(temp.path()), 0777U);
}

TEST(CreateUserFolder, NamesTheFolderThatCannotBe)
{
    const TempDir temp;
    const auto file = temp.write("file", "");
    EXPECT_EQ(createUserFolder(file).error(), "Cannot create \"file\": file exists.");
    EXPECT_EQ(createUserFolder(file / "sub").error(), "Cannot create \"sub\": not a directory.");
}

} // namespace VX
