#include "ImageCompare.h"

#include <VXViewer/ImageFile.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>

namespace VX::Test
{

namespace
{

constexpr double allowedShare = 0.001;
constexpr int allowedStep = 6;

bool differ(const Color& a, const Color& b)
{
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b), std::abs(a.a - b.a)}) > allowedStep;
}

Color pale(const Color& color)
{
    const auto half = [](std::uint8_t c) { return static_cast<std::uint8_t>(160 + c / 4); };
    return {half(color.r), half(color.g), half(color.b), 255};
}

} // namespace

Image cropped(const Image& image, int left, int top, PixelSize size)
{
    Image part{size, {}};
    part.pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (int y = top; y < top + size.height; ++y)
    {
        for (int x = left; x < left + size.width; ++x)
            part.pixels.push_back(image.at(x, y));
    }
    return part;
}

ImageDifference compareImages(const Image& actual, const Image& expected)
{
    if (actual.size != expected.size || actual.pixels.size() != expected.pixels.size() || actual.isEmpty())
        return {};
    ImageDifference difference{0, {actual.size, {}}};
    difference.picture.pixels.reserve(actual.pixels.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < actual.pixels.size(); ++i)
    {
        const bool different = differ(actual.pixels[i], expected.pixels[i]);
        count += different ? 1 : 0;
        difference.picture.pixels.push_back(different ? Color{220, 0, 0, 255} : pale(expected.pixels[i]));
    }
    difference.share = static_cast<double>(count) / static_cast<double>(actual.pixels.size());
    return difference;
}

testing::AssertionResult matchesReference(const Image& actual, const std::filesystem::path& reference,
                                          const std::filesystem::path& outputFolder)
{
    if (std::getenv("QX_UPDATE_REFERENCES")) // NOLINT(concurrency-mt-unsafe): tests set the environment before
    {
        const auto written = writePng(reference, actual);
        return written ? testing::AssertionSuccess() : testing::AssertionFailure() << written.error();
    }
    const auto expected = readPng(reference);
    const ImageDifference difference = expected ? compareImages(actual, *expected) : ImageDifference{};
    if (expected && difference.share <= allowedShare)
        return testing::AssertionSuccess();

    std::error_code error;
    std::filesystem::create_directories(outputFolder, error);
    const std::string name = reference.stem().string();
    const std::filesystem::path actualFile = outputFolder / (name + "-actual.png");
    static_cast<void>(writePng(actualFile, actual));
    if (!difference.picture.isEmpty())
        static_cast<void>(writePng(outputFolder / (name + "-difference.png"), difference.picture));
    if (!expected)
        return testing::AssertionFailure() << expected.error() << " The actual picture is " << actualFile;
    return testing::AssertionFailure() << difference.share * 100 << " % of the pixels differ from " << name
                                       << "; the actual picture is " << actualFile;
}

} // namespace VX::Test
