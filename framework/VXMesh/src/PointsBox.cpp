#include <VXMesh/PointsBox.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

#include <cstddef>
#include <functional>

namespace VX
{

namespace
{

constexpr std::size_t kGrain = 32768;

template <typename Box, typename Map>
Box reduceBox(std::span<const Vector3f> points, const Map& map)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, points.size(), kGrain), Box(),
        [&](const tbb::blocked_range<std::size_t>& range, Box box)
        {
            for (std::size_t i = range.begin(); i != range.end(); ++i)
                box.extend(map(points[i]));
            return box;
        },
        [](Box a, const Box& b) { return a.extend(b); });
}

/// Every axis goes to one axis: the box of the mapped points is then the mapped box.
bool keepsBoxes(const Transform& transform)
{
    const Eigen::Matrix3d linear = transform.linear();
    for (int row = 0; row < 3; ++row)
    {
        if ((linear.row(row).array() != 0.0).count() > 1)
            return false;
    }
    return true;
}

} // namespace

Box3f computeBox(std::span<const Vector3f> points)
{
    return reduceBox<Box3f>(points, std::identity());
}

Box3d computeBox(std::span<const Vector3f> points, const Box3d& box, const Transform& transform)
{
    if (box.isEmpty())
        return {};
    if (keepsBoxes(transform))
    {
        Box3d result(transform * box.min());
        return result.extend(transform * box.max());
    }
    return reduceBox<Box3d>(points,
                            [&](const Vector3f& point) -> Vector3d { return transform * point.cast<double>(); });
}

} // namespace VX
