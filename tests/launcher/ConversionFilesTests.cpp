#include "launcher/ConversionFiles.h"

#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>

namespace VX
{

namespace
{

class ConversionFiles : public testing::Test
{
protected:
    void makeFolder_(const char* name, const char* file, std::chrono::hours age) const
    {
        folder_.write(std::filesystem::path(name) / file, "content");
        std::filesystem::last_write_time(folder_.path() / name, std::filesystem::file_time_type::clock::now() - age);
    }

    [[nodiscard]] bool isThere_(const char* name) const { return std::filesystem::exists(folder_.path() / name); }

    void remove_() const { removeConversionFiles(folder_.path(), "/home/user/part.one.step"); }

    const VX::Test::TempDir folder_;
};

TEST_F(ConversionFiles, RemovesThePackedAndTheConvertedFile)
{
    folder_.write("part.one.input.zip", "");
    folder_.write("part.one.vxu", "");
    remove_();
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(ConversionFiles, LeavesThoseOfOtherInputs)
{
    folder_.write("part.input.zip", "");
    folder_.write("part.one.lock", "");
    folder_.write("other.vxu", "");
    remove_();
    EXPECT_TRUE(isThere_("part.input.zip"));
    EXPECT_TRUE(isThere_("part.one.lock"));
    EXPECT_TRUE(isThere_("other.vxu"));
}

TEST_F(ConversionFiles, RemovesAWorkingFolderAfterADay)
{
    makeFolder_("0a1b", "input", std::chrono::hours(25));
    remove_();
    EXPECT_FALSE(isThere_("0a1b"));
}

TEST_F(ConversionFiles, LeavesAYoungerWorkingFolder)
{
    makeFolder_("0a1b", "input", std::chrono::hours(23));
    remove_();
    EXPECT_TRUE(isThere_("0a1b/input"));
}

TEST_F(ConversionFiles, LeavesAFolderOfAnythingElse)
{
    makeFolder_("0a1b", "notes.txt", std::chrono::hours(25));
    remove_();
    EXPECT_TRUE(isThere_("0a1b/notes.txt"));
}

TEST_F(ConversionFiles, DoesNotFollowALink)
{
    const VX::Test::TempDir elsewhere;
    elsewhere.write("input", "content");
    std::filesystem::last_write_time(elsewhere.path(),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
    std::filesystem::create_directory_symlink(elsewhere.path(), folder_.path() / "link");
    remove_();
    EXPECT_TRUE(std::filesystem::exists(elsewhere.path() / "input"));
}

TEST_F(ConversionFiles, MindsNoMissingFolder)
{
    EXPECT_NO_THROW(removeConversionFiles(folder_.path() / "missing", "part.step"));
}

} // namespace

} // namespace VX
