#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/ZipDirectoryEnd.h>

namespace VX::Test
{

namespace
{

/// `value` in `size` bytes, the least first.
std::string bytes(std::uint64_t value, std::size_t size)
{
    std::string text;
    for (std::size_t i = 0; i < size; ++i)
        text += static_cast<char>(value >> (8 * i) & 0xFFU);
    return text;
}

std::string directoryEnd(std::uint64_t entries, std::uint64_t size, std::uint64_t offset, std::string_view comment = {})
{
    return "PK\5\6" + bytes(0, 4) + bytes(entries, 2) + bytes(entries, 2) + bytes(size, 4) + bytes(offset, 4) +
           bytes(comment.size(), 2) + std::string(comment);
}

/// The end for large archives, the locator that leads to it, and the ordinary end.
std::string largeDirectoryEnd(std::uint64_t entries, std::uint64_t position)
{
    return "PK\6\6" + bytes(44, 8) + bytes(45, 2) + bytes(45, 2) + bytes(0, 8) + bytes(entries, 8) + bytes(entries, 8) +
           bytes(0, 8) + bytes(0, 8) + "PK\6\7" + bytes(0, 4) + bytes(position, 8) + bytes(1, 4) +
           directoryEnd(0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF);
}

class ZipDirectoryEndTest : public ::testing::Test
{
public:
    [[nodiscard]] bool isFine(std::string_view content) const
    {
        return declaresOneEntry(folder.write("archive.zip", content));
    }

    TempDir folder;
};

TEST_F(ZipDirectoryEndTest, acceptsOneEntry)
{
    EXPECT_TRUE(isFine(zipOf({{"input", "content"}})));
    EXPECT_TRUE(isFine(std::string(100'000, 'x') + directoryEnd(1, 60, 10, "a comment")));
    EXPECT_TRUE(isFine(std::string(100'000, 'x') + largeDirectoryEnd(1, 100'000)));
}

TEST_F(ZipDirectoryEndTest, refusesSeveralEntries)
{
    EXPECT_FALSE(isFine(zipOf({{"input", "content"}, {"other", ""}})));
    EXPECT_FALSE(isFine(std::string(100'000, 'x') + directoryEnd(60'000, 60, 10, "a comment")));
    EXPECT_FALSE(isFine(std::string(100'000, 'x') + largeDirectoryEnd(20'000'000, 100'000)));
}

TEST_F(ZipDirectoryEndTest, refusesAnEndThatHidesInFrontOfAnother)
{
    const std::string hidden = directoryEnd(60'000, 60, 10);
    EXPECT_FALSE(isFine(std::string(100, 'x') + hidden + directoryEnd(1, 60, 10)));
    EXPECT_FALSE(isFine(std::string(100, 'x') + directoryEnd(60'000, 60, 10, directoryEnd(1, 60, 10))));
}

TEST_F(ZipDirectoryEndTest, takesCompressedDataThatLooksLikeAnEndForWhatItIs)
{
    const std::string accident = directoryEnd(60'000, 0x12345678, 0x9ABCDEF0);
    EXPECT_TRUE(isFine(std::string(100, 'x') + accident + directoryEnd(1, 60, 10)));
}

TEST_F(ZipDirectoryEndTest, leavesWhatIsNoArchiveToTheLibrary)
{
    for (const std::string& text : {std::string(), std::string("PK\5\6"), std::string(200'000, 'x')})
        EXPECT_TRUE(isFine(text));
    EXPECT_TRUE(isFine(largeDirectoryEnd(5, UINT64_MAX)));
    EXPECT_TRUE(declaresOneEntry(folder.path() / "missing"));
}

} // namespace

} // namespace VX::Test
