#include "tests/support/TempDir.h"

#include <VXViewer/ImageFile.h>

#include <gtest/gtest.h>

namespace VX
{

class ImageFileTests : public testing::Test
{
protected:
    static Image gradient_(std::uint8_t alpha)
    {
        Image image{{7, 5}, {}};
        for (int i = 0; i < 7 * 5; ++i)
            image.pixels.push_back({static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(255 - i),
                                    static_cast<std::uint8_t>(i * i), alpha});
        return image;
    }

    VX::Test::TempDir folder_;
};

TEST_F(ImageFileTests, ReadsBackWhatItWrote)
{
    for (const std::uint8_t alpha : {255, 100})
    {
        const Image image = gradient_(alpha);
        const auto written = writePng(folder_.path() / "picture.png", image);
        ASSERT_TRUE(written) << written.error();
        const auto read = readPng(folder_.path() / "picture.png");
        ASSERT_TRUE(read) << read.error();
        EXPECT_EQ(read->size, image.size);
        EXPECT_EQ(read->pixels, image.pixels);
    }
}

TEST_F(ImageFileTests, SaysThatAFileIsNotAPicture)
{
    const auto read = readPng(folder_.write("text.png", "not a picture"));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error(), "Cannot read \"text.png\": it is not a PNG picture.");
}

TEST_F(ImageFileTests, SaysThatAPictureIsCutOff)
{
    ASSERT_TRUE(writePng(folder_.path() / "picture.png", gradient_(255)));
    std::filesystem::resize_file(folder_.path() / "picture.png",
                                 std::filesystem::file_size(folder_.path() / "picture.png") - 40);
    const auto read = readPng(folder_.path() / "picture.png");
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error(), "Cannot read \"picture.png\": the picture is damaged.");
}

TEST_F(ImageFileTests, RefusesAPictureTooLargeForMemory)
{
    // A header that promises 2^31 - 1 by 2^31 - 1 pixels.
    const auto read = readPng(folder_.write(
        "huge.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\x7f\xff\xff\xff\x7f\xff\xff\xff\b\6\0\0\0", 29) +
                        std::string(8, 'x')));
    EXPECT_FALSE(read);
}

TEST_F(ImageFileTests, SaysWhereItCannotWrite)
{
    const auto written = writePng(folder_.path() / "missing" / "picture.png", gradient_(255));
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().starts_with("Cannot write \"picture.png\": ")) << written.error();
}

} // namespace VX
