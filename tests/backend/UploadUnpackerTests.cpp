#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/UploadUnpacker.h>

namespace VX::Test
{

namespace
{

constexpr const char* notOneFile = "The uploaded archive must hold one file named \"input\" and nothing else.";

class UploadUnpackerTest : public ::testing::Test
{
public:
    tl::expected<std::filesystem::path, std::string> unpack(std::string_view archive,
                                                            std::uint64_t maxBytes = 1U << 20U)
    {
        return unpackUpload(folder.write("upload.zip", archive), target, maxBytes, progress);
    }

    std::string errorOf(std::string_view archive)
    {
        const auto unpacked = unpack(archive);
        return unpacked ? "unpacked" : unpacked.error();
    }

    TempDir folder;
    const std::filesystem::path target = folder.path() / "target";
    ProgressCallback progress;
};

TEST_F(UploadUnpackerTest, unpacksTheFile)
{
    const auto input = unpack(zipOf({{"input", "content"}}));
    ASSERT_TRUE(input) << input.error();
    EXPECT_EQ(*input, target / "input");
    EXPECT_EQ(readFile(*input), "content");
}

TEST_F(UploadUnpackerTest, unpacksAnEmptyFile)
{
    EXPECT_TRUE(unpack(zipOf({{"input", ""}})));
}

TEST_F(UploadUnpackerTest, refusesAnythingButOneFileNamedInput)
{
    EXPECT_EQ(errorOf(zipOf({{"input", "a"}, {"other", "b"}})), notOneFile);
    EXPECT_EQ(errorOf(zipOf({{"other", "a"}})), notOneFile);
    std::filesystem::remove_all(target);
    EXPECT_EQ(errorOf(zipOf({{"Input", "a"}})), notOneFile);
    std::filesystem::remove_all(target);
    EXPECT_EQ(errorOf(zipOf({{"input/", ""}})), notOneFile);
}

TEST_F(UploadUnpackerTest, writesNothingOutsideItsFolder)
{
    for (const char* name : {"../input", "/tmp/input", "a/../../input", "..\\input"})
        EXPECT_NE(errorOf(zipOf({{name, "a"}})), "unpacked") << name;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "input"));
}

TEST_F(UploadUnpackerTest, refusesMoreBytesThanAllowed)
{
    const auto unpacked = unpack(zipOf({{"input", std::string(3U << 20U, 'x')}}), 1U << 20U);
    ASSERT_FALSE(unpacked);
    EXPECT_EQ(unpacked.error(), "Cannot unpack \"upload.zip\": it unpacks to more than the 1048576 bytes allowed.");
    EXPECT_FALSE(std::filesystem::exists(target / "input"));
}

TEST_F(UploadUnpackerTest, refusesAFileThatGrowsTooMuch)
{
    const auto unpacked = unpack(zipOf({{"input", std::string(64U << 20U, 'x')}}), 1U << 30U);
    ASSERT_FALSE(unpacked);
    EXPECT_NE(unpacked.error().find("unpacks to more than"), std::string::npos) << unpacked.error();
}

TEST_F(UploadUnpackerTest, saysThatTheArchiveIsDamaged)
{
    std::string archive = zipOf({{"input", "some content that can be told from other content"}});
    EXPECT_NE(errorOf(archive.substr(0, archive.size() / 2)).find("Cannot unpack \"upload.zip\": "), std::string::npos);
    archive[40] = static_cast<char>(archive[40] ^ 0x55);
    EXPECT_NE(errorOf(archive).find("Cannot unpack \"upload.zip\": "), std::string::npos);
    EXPECT_NE(errorOf("").find("Cannot unpack \"upload.zip\": "), std::string::npos);
    EXPECT_NE(errorOf("ISO-10303-21;").find("Cannot unpack \"upload.zip\": "), std::string::npos);
}

TEST_F(UploadUnpackerTest, canBeStopped)
{
    progress = [](float) { return false; };
    EXPECT_EQ(errorOf(zipOf({{"input", "content"}})), operationCanceledText());
    EXPECT_FALSE(std::filesystem::exists(target / "input"));
}

} // namespace

} // namespace VX::Test
