#pragma once

#include <VXViewer/Image.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace VX::Test
{

/// How two pictures differ.
struct ImageDifference
{
    double share = 1; ///< of the pixels that differ; 1 where the sizes do
    Image picture;    ///< the pixels that differ in red over a pale copy of the expected picture
};

/// The part of `image` of this size whose upper left corner is at `left`, `top`; it must lie inside.
[[nodiscard]] Image cropped(const Image& image, int left, int top, PixelSize size);

/// Two pixels differ when a channel does by more than a rounding error.
[[nodiscard]] ImageDifference compareImages(const Image& actual, const Image& expected);

/// At most 0.1 % of the pixels of `actual` may differ from the PNG file `reference`. Where more do, the actual picture
/// and the difference are written to `outputFolder` as NAME-actual.png and NAME-difference.png.
/// With the environment variable QX_UPDATE_REFERENCES set, the reference is written anew instead.
[[nodiscard]] testing::AssertionResult matchesReference(const Image& actual, const std::filesystem::path& reference,
                                                        const std::filesystem::path& outputFolder);

} // namespace VX::Test
