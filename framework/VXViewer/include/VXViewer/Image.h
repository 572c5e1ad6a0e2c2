#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Window.h>

#include <cstddef>
#include <vector>

namespace VX
{

/// A picture in memory.
struct Image
{
    PixelSize size;
    std::vector<Color> pixels; ///< width x height, upper row first

    [[nodiscard]] bool isEmpty() const { return pixels.empty(); }

    [[nodiscard]] const Color& at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(x)];
    }
};

} // namespace VX
