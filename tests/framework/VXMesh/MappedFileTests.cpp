#include "tests/support/TempDir.h"

#include <VXMesh/MappedFile.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <utility>

namespace VX
{

namespace
{

using Test::TempDir;

// What of mapped files the process has in its memory.
std::size_t fileBytesInMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (std::size_t kilobytes = 0; word == "RssFile:" && status >> kilobytes)
            return kilobytes * 1024;
    ADD_FAILURE() << "the system does not say";
    return 0;
}

} // namespace

TEST(MappedFile, HasTheBytesOfTheFile)
{
    const TempDir temp;
    const std::string content("some\0bytes", 10);
    const auto file = MappedFile::open(temp.write("file", content));
    ASSERT_TRUE(file) << file.error();
    EXPECT_EQ(file->text(), content);
    EXPECT_EQ(file->bytes().size(), 10U);
}

TEST(MappedFile, OfAnEmptyFileHasNoBytes)
{
    const TempDir temp;
    const auto file = MappedFile::open(temp.write("file", ""));
    ASSERT_TRUE(file) << file.error();
    EXPECT_TRUE(file->bytes().empty());
}

TEST(MappedFile, KeepsItsBytesWhenMovedAndWhenTheFileIsReplaced)
{
    const TempDir temp;
    const auto path = temp.write("file", "content");
    auto file = MappedFile::open(path);
    ASSERT_TRUE(file);
    const auto* address = file->bytes().data();
    const MappedFile moved = std::move(*file);
    std::filesystem::remove(path);
    EXPECT_EQ(moved.bytes().data(), address);
    EXPECT_EQ(moved.text(), "content");
}

TEST(MappedFile, TakesReleasedPartsOutOfTheMemoryOfTheProcess)
{
    const TempDir temp;
    constexpr std::size_t size = 32U << 20U;
    const auto file = MappedFile::open(temp.write("file", std::string(size, 'x')));
    ASSERT_TRUE(file);
    EXPECT_EQ(std::count(file->text().begin(), file->text().end(), 'x'), size);
    const std::size_t before = fileBytesInMemory();
    file->release(100, size / 2);
    const std::size_t half = fileBytesInMemory();
    EXPECT_LT(half + size / 4, before);
    file->release(0, size);
    EXPECT_LT(fileBytesInMemory() + size / 4, half);
}

TEST(MappedFile, ReadsReleasedPartsAgain)
{
    const TempDir temp;
    const std::string content(1'000'000, 'x');
    const auto file = MappedFile::open(temp.write("file", content));
    ASSERT_TRUE(file);
    file->release(0, content.size());
    file->release(5'000, 20'000);
    file->release(999'999, 1'000);
    file->release(2'000'000, 1);
    EXPECT_EQ(file->text(), content);
}

TEST(MappedFile, SaysWhatItCannotOpen)
{
    const TempDir temp;
    std::filesystem::create_directory(temp.path() / "folder");
    ASSERT_EQ(::mkfifo((temp.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(MappedFile::open(temp.path() / "missing").error(), "Cannot open \"missing\": no such file or directory.");
    EXPECT_EQ(MappedFile::open(temp.path() / "folder").error(), "Cannot open \"folder\": is a directory.");
    EXPECT_EQ(MappedFile::open(temp.path() / "pipe").error(), "Cannot open \"pipe\": it is not a regular file.");
}

} // namespace VX
