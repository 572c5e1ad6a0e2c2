#include "OutputDirectory.h"

#include <VXMesh/AtomicFile.h>

#include <sys/stat.h>
#include <tests/support/TempDir.h>

namespace VX::ConverterService
{

namespace
{

using Test::MountScope;
using Test::readFile;
using Test::TempDir;

class ServiceFolderTest : public Test::OutputDirectoryTest
{
protected:
    TempDir folder_;
};

TEST_F(ServiceFolderTest, liesInTheRootFolder)
{
    EXPECT_EQ(serviceOutputDirectory().native(), "/.service_output_files/");
}

TEST_F(ServiceFolderTest, isForEveryUser)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(serviceOutputDirectory());
    const mode_t before = ::umask(077);
    EXPECT_FALSE(createServiceOutputDirectory());
    ::umask(before);
    EXPECT_EQ(modeOf_(serviceOutputDirectory()), 01777U);
}

TEST_F(ServiceFolderTest, isLeftAloneWhereItIsThere)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::permissions(serviceOutputDirectory(), std::filesystem::perms::owner_all);
    EXPECT_FALSE(createServiceOutputDirectory());
    EXPECT_EQ(modeOf_(serviceOutputDirectory()), 0700U);
}

TEST_F(ServiceFolderTest, cannotBeCreatedWhereAFileHasItsName)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(serviceOutputDirectory());
    std::filesystem::copy_file(folder_.write("file", ""), "/.service_output_files");
    EXPECT_EQ(createServiceOutputDirectory(), std::errc::file_exists);
    std::filesystem::remove("/.service_output_files");
}

TEST_F(ServiceFolderTest, createsAFolderForItsOwnerAlone)
{
    EXPECT_FALSE(createPrivateFolder(folder_.path() / "private"));
    EXPECT_EQ(modeOf_(folder_.path() / "private"), 0700U);
}

TEST_F(ServiceFolderTest, createsNoFolderThatIsThere)
{
    EXPECT_EQ(createPrivateFolder(folder_.path()), std::errc::file_exists);
}

TEST_F(ServiceFolderTest, createsNoFolderWithoutItsParent)
{
    EXPECT_EQ(createPrivateFolder(folder_.path() / "a" / "b"), std::errc::no_such_file_or_directory);
}

TEST_F(ServiceFolderTest, copiesAFileForItsOwnerAlone)
{
    const auto source = folder_.write("source", "content");
    std::filesystem::permissions(source, documentFileMode);
    const mode_t before = ::umask(0);
    EXPECT_FALSE(copyPrivately(source, folder_.path() / "target"));
    ::umask(before);
    EXPECT_EQ(readFile(folder_.path() / "target"), "content");
    EXPECT_EQ(modeOf_(folder_.path() / "target"), 0600U);
}

TEST_F(ServiceFolderTest, copiesMoreThanOneBufferfulAndNothing)
{
    const std::string content(3'000'001, 'x');
    EXPECT_FALSE(copyPrivately(folder_.write("long", content), folder_.path() / "target"));
    EXPECT_EQ(readFile(folder_.path() / "target"), content);
    EXPECT_FALSE(copyPrivately(folder_.write("empty", ""), folder_.path() / "target"));
    EXPECT_EQ(std::filesystem::file_size(folder_.path() / "target"), 0U);
}

TEST_F(ServiceFolderTest, copiesAFileThatMayOnlyBeRead)
{
    const auto source = folder_.write("source", "content");
    std::filesystem::permissions(source, std::filesystem::perms::owner_read);
    EXPECT_FALSE(copyPrivately(source, folder_.path() / "target"));
    EXPECT_EQ(modeOf_(folder_.path() / "target"), 0600U);
}

TEST_F(ServiceFolderTest, takesTheRightsOfOthersOnAnOldCopyAway)
{
    const auto target = folder_.write("target", "old and longer");
    std::filesystem::permissions(target, documentFileMode);
    EXPECT_FALSE(copyPrivately(folder_.write("source", "new"), target));
    EXPECT_EQ(readFile(target), "new");
    EXPECT_EQ(modeOf_(target), 0600U);
}

TEST_F(ServiceFolderTest, doesNotFollowALinkToWriteTo)
{
    const auto victim = folder_.write("victim", "untouched");
    std::filesystem::create_symlink(victim, folder_.path() / "target");
    EXPECT_EQ(copyPrivately(folder_.write("source", "new"), folder_.path() / "target"),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(readFile(victim), "untouched");
}

TEST_F(ServiceFolderTest, copiesWhatALinkPointsTo)
{
    std::filesystem::create_symlink(folder_.write("file", "content"), folder_.path() / "source");
    EXPECT_FALSE(copyPrivately(folder_.path() / "source", folder_.path() / "target"));
    EXPECT_EQ(readFile(folder_.path() / "target"), "content");
}

TEST_F(ServiceFolderTest, copiesNothingButRegularFiles)
{
    EXPECT_EQ(copyPrivately(folder_.path() / "missing", folder_.path() / "target"),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(copyPrivately(folder_.path(), folder_.path() / "target"), std::errc::is_a_directory);
    ASSERT_EQ(::mkfifo((folder_.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(copyPrivately(folder_.path() / "pipe", folder_.path() / "target"), std::errc::invalid_argument);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "target"));
}

TEST_F(ServiceFolderTest, leavesNoPartOfACopyForWhichThereIsNoRoom)
{
    QX_NEED_PRIVATE_ROOT();
    const auto small = MountScope::makeSmall(serviceOutputDirectory(), 65'536);
    ASSERT_TRUE(small.isActive());
    EXPECT_EQ(copyPrivately(folder_.write("source", std::string(1'000'000, 'x')), output_("target")),
              std::errc::no_space_on_device);
    EXPECT_FALSE(std::filesystem::exists(output_("target")));
}

} // namespace

} // namespace VX::ConverterService
