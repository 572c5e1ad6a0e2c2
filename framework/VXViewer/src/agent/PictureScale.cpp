#include "PictureScale.h"

#include <Eigen/Core>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

/// Which pixels one of the smaller picture covers along one side.
struct Cover
{
    Cover(int index, int count, int countBefore)
        : begin(double(index) * countBefore / count)
        , end(double(index + 1) * countBefore / count)
        , first(static_cast<int>(begin))
        , last(std::min(static_cast<int>(std::ceil(end)), countBefore))
    {
    }

    [[nodiscard]] double share(int pixel) const { return std::min(end, pixel + 1.0) - std::max(begin, double(pixel)); }

    double begin;
    double end;
    int first;
    int last;
};

Color average(const Image& image, const Cover& columns, const Cover& rows)
{
    Eigen::Array4d sum = Eigen::Array4d::Zero();
    double area = 0;
    for (int y = rows.first; y < rows.last; ++y)
    {
        for (int x = columns.first; x < columns.last; ++x)
        {
            const double share = columns.share(x) * rows.share(y);
            const Color& c = image.at(x, y);
            sum += share * c.a * Eigen::Array4d(c.r, c.g, c.b, 1);
            area += share;
        }
    }
    if (!(sum[3] > 0))
        return {0, 0, 0, 0};
    const auto byte = [](double value) { return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L)); };
    return {byte(sum[0] / sum[3]), byte(sum[1] / sum[3]), byte(sum[2] / sum[3]), byte(sum[3] / area)};
}

} // namespace

Image scaledDown(const Image& image, PixelSize size)
{
    if (image.isEmpty() || size == image.size)
        return image;
    Image result{size,
                 std::vector<Color>(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height))};
    tbb::parallel_for(0, size.height,
                      [&](int y)
                      {
                          const Cover rows(y, size.height, image.size.height);
                          Color* out = result.pixels.data() + std::ptrdiff_t{y} * size.width;
                          for (int x = 0; x < size.width; ++x)
                              out[x] = average(image, Cover(x, size.width, image.size.width), rows);
                      });
    return result;
}

PixelSize fittedSize(PixelSize size, int longest)
{
    const double factor = double(longest) / std::max({size.width, size.height, 1});
    const auto side = [factor](int pixels) { return std::max(1, static_cast<int>(std::lround(pixels * factor))); };
    return {side(size.width), side(size.height)};
}

} // namespace VX
