#include "agent/AllowedFolders.h"

#include "tests/support/TempConfig.h"
#include "tests/support/TempDir.h"

#include <VXMesh/UserHome.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class AllowedFoldersTests : public testing::Test
{
protected:
    AllowedFoldersTests()
    {
        std::filesystem::create_directories(root_.path() / "allowed" / "sub");
        std::filesystem::create_directories(root_.path() / "allowed" / ".hidden");
        std::filesystem::create_directories(root_.path() / "other");
    }

    [[nodiscard]] std::string in_(const std::string& name) const { return (root_.path() / name).string(); }

    [[nodiscard]] AllowedFolders folders_() const { return AllowedFolders({root_.path() / "allowed"}); }

    VX::Test::TempDir root_;
    VX::Test::TempConfig config_;
};

TEST_F(AllowedFoldersTests, AllowsWhatIsBelow)
{
    root_.write("allowed/sub/part.stl", "");
    EXPECT_TRUE(folders_().forReading(in_("allowed/sub/part.stl")));
    EXPECT_TRUE(folders_().forWriting(in_("allowed/sub/new.stl")));
}

TEST_F(AllowedFoldersTests, RefusesWhatIsElsewhere)
{
    root_.write("other/part.stl", "");
    const auto refused = folders_().forReading(in_("other/part.stl"));
    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.error(), HasSubstr("in no folder that agents may use"));
    EXPECT_FALSE(folders_().forWriting(in_("other/new.stl")));
}

TEST_F(AllowedFoldersTests, RefusesAFolderWhoseNameOnlyBeginsTheSame)
{
    std::filesystem::create_directories(root_.path() / "allowed2");
    EXPECT_FALSE(folders_().forWriting(in_("allowed2/new.stl")));
}

TEST_F(AllowedFoldersTests, RefusesTheWayOutByDots)
{
    root_.write("other/part.stl", "");
    EXPECT_FALSE(folders_().forReading(in_("allowed/sub/../../other/part.stl")));
    EXPECT_FALSE(folders_().forWriting(in_("allowed/../other/new.stl")));
    EXPECT_FALSE(folders_().forWriting(in_("allowed/nowhere/../../other/new.stl")));
}

TEST_F(AllowedFoldersTests, RefusesTheWayOutByALink)
{
    root_.write("other/part.stl", "");
    std::filesystem::create_directory_symlink(root_.path() / "other", root_.path() / "allowed" / "link");
    std::filesystem::create_symlink(root_.path() / "other" / "part.stl", root_.path() / "allowed" / "part.stl");
    EXPECT_FALSE(folders_().forReading(in_("allowed/link/part.stl")));
    EXPECT_FALSE(folders_().forReading(in_("allowed/part.stl")));
    EXPECT_FALSE(folders_().forWriting(in_("allowed/link/new.stl")));
}

TEST_F(AllowedFoldersTests, FollowsALinkThatStaysWithin)
{
    root_.write("allowed/sub/part.stl", "");
    std::filesystem::create_symlink(root_.path() / "allowed" / "sub" / "part.stl",
                                    root_.path() / "allowed" / "part.stl");
    EXPECT_EQ(folders_().forReading(in_("allowed/part.stl")).value(),
              std::filesystem::canonical(root_.path() / "allowed" / "sub" / "part.stl"));
}

TEST_F(AllowedFoldersTests, LeavesHiddenFoldersAndFilesOut)
{
    root_.write("allowed/.hidden/part.stl", "");
    root_.write("allowed/.part.stl", "");
    const auto refused = folders_().forReading(in_("allowed/.hidden/part.stl"));
    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.error(), HasSubstr("hidden"));
    EXPECT_FALSE(folders_().forReading(in_("allowed/.part.stl")));
    EXPECT_FALSE(folders_().forWriting(in_("allowed/.new.stl")));
}

TEST_F(AllowedFoldersTests, AllowsAHiddenFolderThatTheUserNamed)
{
    const AllowedFolders folders({root_.path() / "allowed" / ".hidden"});
    EXPECT_TRUE(folders.forWriting(in_("allowed/.hidden/new.stl")));
}

TEST_F(AllowedFoldersTests, TellsOfWhatIsAllowedThatItIsMissing)
{
    EXPECT_THAT(folders_().forReading(in_("allowed/missing.stl")).error(), HasSubstr("There is no file"));
    EXPECT_THAT(folders_().forWriting(in_("allowed/missing/new.stl")).error(), HasSubstr("There is no folder"));
}

TEST_F(AllowedFoldersTests, TellsNothingOfWhatIsElsewhere)
{
    EXPECT_THAT(folders_().forReading(in_("other/missing.stl")).error(), HasSubstr("in no folder that agents may use"));
}

TEST_F(AllowedFoldersTests, WantsAnAbsolutePathThatNamesAFile)
{
    EXPECT_THAT(folders_().forReading("part.stl").error(), HasSubstr("not an absolute path"));
    EXPECT_THAT(folders_().forReading("").error(), HasSubstr("not an absolute path"));
    EXPECT_THAT(folders_().forWriting(in_("allowed/")).error(), HasSubstr("names no file"));
    EXPECT_FALSE(folders_().forWriting(in_("allowed/..")));
}

TEST_F(AllowedFoldersTests, TakesNamesOfAnyLanguage)
{
    EXPECT_TRUE(folders_().forWriting(in_("allowed/Gehäuse 外壳.stl")));
}

TEST_F(AllowedFoldersTests, RefusesLineEndsInNames)
{
    EXPECT_THAT(folders_().forWriting(in_("allowed/a\nb.stl")).error(), HasSubstr("control characters"));
    EXPECT_THAT(folders_().forReading(std::string(in_("allowed/a")) + '\0').error(), HasSubstr("control characters"));
}

TEST_F(AllowedFoldersTests, TakesATildeForTheHomeFolder)
{
    EXPECT_EQ(AllowedFolders::ofSettings().forReading("~"), std::filesystem::canonical(getUserHomeDir()));
}

TEST_F(AllowedFoldersTests, IsTheHomeFolderUntilTheUserChooses)
{
    EXPECT_THAT(AllowedFolders::ofSettings().folders(), ElementsAre(std::filesystem::canonical(getUserHomeDir())));
    AllowedFolders::setSettings({root_.path() / "allowed"});
    EXPECT_THAT(AllowedFolders::ofSettings().folders(),
                ElementsAre(std::filesystem::canonical(root_.path() / "allowed")));
}

} // namespace VX
