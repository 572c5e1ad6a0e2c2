#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Image.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// Reads a PNG file of any kind.
/// @return `Cannot open "NAME": REASON.` or `Cannot read "NAME": REASON.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<Image, std::string> readPng(const std::filesystem::path& path);

/// Writes `image` so that the file has its name only when it is complete; without alpha where every pixel is opaque.
/// Made to be fast rather than small.
/// @return `Cannot write "NAME": REASON.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<void, std::string> writePng(const std::filesystem::path& path,
                                                                    const Image& image);

/// `image` as a PNG file, as `writePng` writes it.
/// @return `The picture cannot be encoded.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<std::string, std::string> encodePng(const Image& image);

} // namespace VX
