#include "formats/PointOffset.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_reduce.h>

#include <cmath>
#include <cstddef>

namespace VX
{

namespace
{

constexpr std::size_t kGrain = 32768;

/// Single precision keeps 24 bits; at this distance, in extents, five of them are lost.
constexpr double kFarInExtents = 16.0;

template <typename Vector>
Box3d finiteBox(const std::vector<Vector>& points)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, points.size(), kGrain), Box3d(),
        [&](const tbb::blocked_range<std::size_t>& range, Box3d box)
        {
            for (std::size_t i = range.begin(); i != range.end(); ++i)
            {
                if (points[i].allFinite())
                    box.extend(points[i].template cast<double>());
            }
            return box;
        },
        [](Box3d a, const Box3d& b) { return a.extend(b); });
}

template <typename Vector>
void subtract(const std::vector<Vector>& points, const Vector3d& offset, std::vector<Vector3f>& result)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, points.size(), kGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                              result[i] = (points[i].template cast<double>() - offset).template cast<float>();
                      });
}

} // namespace

std::vector<Vector3f> subtractOffset(const std::vector<Vector3d>& points, Vector3d& offset)
{
    offset = chooseOffset(finiteBox(points));
    std::vector<Vector3f> result(points.size());
    subtract(points, offset, result);
    return result;
}

Vector3d subtractOffset(std::vector<Vector3f>& points)
{
    const Vector3d offset = chooseOffset(finiteBox(points));
    if (!offset.isZero(0.0))
        subtract(points, offset, points);
    return offset;
}

Vector3d chooseOffset(const Box3d& box)
{
    const double size = box.isEmpty() ? 0.0 : box.sizes().maxCoeff();
    const double extent = size > 0.0 ? size : 1.0;
    const double step = std::pow(10.0, std::floor(std::log10(extent)));
    Vector3d offset = Vector3d::Zero();
    for (int axis = 0; axis < 3 && !box.isEmpty(); ++axis)
    {
        const double middle = box.center()[axis];
        if (std::abs(middle) > kFarInExtents * extent && std::isfinite(middle))
            offset[axis] = std::round(middle / step) * step;
    }
    return offset;
}

} // namespace VX
