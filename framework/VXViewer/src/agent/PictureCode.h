#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Image.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <string>

namespace VX
{

/// A picture as it is sent.
struct CodedPicture
{
    std::string bytes{};
    std::string mimeType{};
    PixelSize size{}; ///< smaller than it was where it had to be to fit
};

enum class PictureFormat
{
    Png,
    Jpeg
};

/// Makes a file of `image`, and one of a smaller picture where it is longer than `mostBytes`.
/// @return `The picture cannot be encoded.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<CodedPicture, std::string> codePicture(Image image, PictureFormat format,
                                                                               std::size_t mostBytes);

/// As a JPEG file, without transparency.
/// @param quality  1 to 100
/// @return `The picture cannot be encoded.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<std::string, std::string> encodeJpeg(const Image& image, int quality);

} // namespace VX
