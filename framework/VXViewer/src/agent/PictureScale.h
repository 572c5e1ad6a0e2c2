#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Image.h>

namespace VX
{

/// `image` in another size, at most its own: each pixel is the average of those that it covers, by their area and
/// opacity.
/// @threads any; uses the TBB pool
[[nodiscard]] VXVIEWER_API Image scaledDown(const Image& image, PixelSize size);

/// The size with the proportions of `size` whose longer side is `longest`; each side is 1 at least.
[[nodiscard]] VXVIEWER_API PixelSize fittedSize(PixelSize size, int longest);

} // namespace VX
