#include "Montage.h"

#include <algorithm>
#include <cmath>

namespace VX
{

Montage::Montage(PixelSize size, std::size_t count)
    : columns_(static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count)))))
{
    const int pictures = static_cast<int>(count);
    const int rows = (pictures + columns_ - 1) / columns_;
    cell_ = {std::max(1, size.width / columns_), std::max(1, size.height / rows)};
    image_.size = {cell_.width * columns_, cell_.height * rows};
    image_.pixels.resize(static_cast<std::size_t>(image_.size.width) * static_cast<std::size_t>(image_.size.height),
                         Color{0, 0, 0, 0});
}

PixelRect Montage::add(const Image& picture)
{
    const PixelRect place{next_ % columns_ * cell_.width, next_ / columns_ * cell_.height, cell_.width, cell_.height};
    ++next_;
    for (int y = 0; y < cell_.height && !picture.isEmpty(); ++y)
    {
        const auto row = picture.pixels.begin() + std::ptrdiff_t{y} * cell_.width;
        std::copy(row, row + cell_.width,
                  image_.pixels.begin() + std::ptrdiff_t{place.y + y} * image_.size.width + place.x);
    }
    return place;
}

PixelRect scaledPlace(const PixelRect& place, PixelSize from, PixelSize to)
{
    const auto scaled = [](int value, int before, int after)
    { return static_cast<int>(std::lround(double(value) * after / std::max(before, 1))); };
    const int x = scaled(place.x, from.width, to.width);
    const int y = scaled(place.y, from.height, to.height);
    return {x, y, scaled(place.x + place.width, from.width, to.width) - x,
            scaled(place.y + place.height, from.height, to.height) - y};
}

} // namespace VX
