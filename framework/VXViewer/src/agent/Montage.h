#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Image.h>

#include <cstddef>

namespace VX
{

/// Several pictures of one size in one, row by row.
class Montage
{
public:
    /// @param size   that the whole must not exceed
    /// @param count  of pictures, 1 or more
    Montage(PixelSize size, std::size_t count);

    [[nodiscard]] PixelSize cellSize() const { return cell_; }

    /// @param picture  of `cellSize`; an empty one leaves its place empty
    /// @return where it came
    PixelRect add(const Image& picture);

    [[nodiscard]] const Image& image() const { return image_; }

private:
    int columns_;
    PixelSize cell_;
    Image image_;
    int next_ = 0;
};

/// Where a place of a picture of the size `from` is once that has the size `to`. Places that meet go on to.
[[nodiscard]] VXVIEWER_API PixelRect scaledPlace(const PixelRect& place, PixelSize from, PixelSize to);

} // namespace VX
