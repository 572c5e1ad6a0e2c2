#include "tests/support/TempDir.h"

#include <VXMesh/AtomicFile.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
#include <utility>

namespace VX
{

namespace
{

using Test::modeOf;
using Test::readFile;
using Test::TempDir;

std::size_t entriesOf(const std::filesystem::path& folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

std::string errorOf(const tl::expected<void, std::string>& result)
{
    return result ? "no error" : result.error();
}

void write(const AtomicFile& file, const std::string& text)
{
    std::ofstream(file.temporaryPath()) << text;
}

} // namespace

TEST(WriteFileAtomically, WritesANewFileForItsOwnerAlone)
{
    const TempDir temp;
    const auto path = temp.path() / "file";
    ASSERT_TRUE(writeFileAtomically(path, "content"));
    EXPECT_EQ(readFile(path), "content");
    EXPECT_EQ(modeOf(path), 0600U);
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

TEST(WriteFileAtomically, ReplacesAnOldFileAndItsMode)
{
    const TempDir temp;
    const auto path = temp.write("file", "a longer old content");
    ASSERT_TRUE(writeFileAtomically(path, "new", std::filesystem::perms::owner_all));
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(modeOf(path), 0700U);
}

TEST(WriteFileAtomically, ReplacesASymbolicLinkInsteadOfFollowingIt)
{
    const TempDir temp;
    const auto target = temp.write("target", "old");
    std::filesystem::create_symlink(target, temp.path() / "link");
    ASSERT_TRUE(writeFileAtomically(temp.path() / "link", "new"));
    EXPECT_EQ(readFile(target), "old");
    EXPECT_FALSE(std::filesystem::is_symlink(temp.path() / "link"));
}

TEST(WriteFileAtomically, WritesANameAsLongAsNamesCanBe)
{
    const TempDir temp;
    const auto path = temp.path() / std::string(255, 'n');
    ASSERT_TRUE(writeFileAtomically(path, "content"));
    EXPECT_EQ(readFile(path), "content");
}

TEST(WriteFileAtomically, NamesTheFileThatItCannotWriteAndLeavesNothing)
{
    const TempDir temp;
    std::filesystem::create_directory(temp.path() / "folder");
    EXPECT_EQ(errorOf(writeFileAtomically(temp.path() / "missing/file", "x")),
              "Cannot write \"file\": no such file or directory.");
    EXPECT_EQ(errorOf(writeFileAtomically(temp.path() / "folder", "x")), "Cannot write \"folder\": is a directory.");
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

TEST(WriteFileAtomically, LeavesAPipeInPlace)
{
    const VX::Test::TempDir folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(writeFileAtomically(pipe, "text").error(), "Cannot write \"pipe\": operation not supported.");
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST(AtomicFile, TakesItsNameWithCommitAndNotBefore)
{
    const TempDir temp;
    const auto path = temp.write("file", "old");
    auto file = AtomicFile::create(path);
    ASSERT_TRUE(file);
    write(*file, "new");
    EXPECT_EQ(file->temporaryPath().parent_path(), temp.path());
    EXPECT_EQ(readFile(path), "old");
    ASSERT_TRUE(file->commit(AtomicFile::Flush::No));
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

TEST(AtomicFile, WithoutCommitLeavesNothing)
{
    const TempDir temp;
    {
        auto file = AtomicFile::create(temp.path() / "file");
        ASSERT_TRUE(file);
        write(*file, "half");
        const AtomicFile moved = std::move(*file);
        EXPECT_EQ(entriesOf(temp.path()), 1U);
    }
    EXPECT_EQ(entriesOf(temp.path()), 0U);
}

TEST(AtomicFile, ThatIsAssignedOverLeavesNothing)
{
    const TempDir temp;
    {
        auto first = AtomicFile::create(temp.path() / "first");
        auto second = AtomicFile::create(temp.path() / "second");
        ASSERT_TRUE(first && second);
        *first = std::move(*second);
        EXPECT_TRUE(first->commit(AtomicFile::Flush::No));
    }
    EXPECT_TRUE(std::filesystem::exists(temp.path() / "second"));
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

TEST(AtomicFile, KeepsAFileThatCameMeanwhileWhereToldTo)
{
    const TempDir temp;
    const auto path = temp.path() / "file";
    auto file = AtomicFile::create(path, documentFileMode, AtomicFile::Existing::Keep);
    ASSERT_TRUE(file);
    write(*file, "ours");
    temp.write("file", "theirs");
    EXPECT_EQ(errorOf(file->commit(AtomicFile::Flush::No)), "Cannot write \"file\": file exists.");
    EXPECT_EQ(readFile(path), "theirs");
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

TEST(AtomicFile, TakesAFreeNameWhereItKeepsOthers)
{
    const TempDir temp;
    auto file = AtomicFile::create(temp.path() / "file", documentFileMode, AtomicFile::Existing::Keep);
    ASSERT_TRUE(file);
    write(*file, "ours");
    ASSERT_TRUE(file->commit(AtomicFile::Flush::No));
    EXPECT_EQ(readFile(temp.path() / "file"), "ours");
    EXPECT_EQ(entriesOf(temp.path()), 1U);
}

} // namespace VX
