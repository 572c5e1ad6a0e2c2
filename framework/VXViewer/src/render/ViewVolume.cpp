#include "render/ViewVolume.h"

#include <Eigen/LU>

#include <algorithm>

namespace VX
{

ViewVolume::ViewVolume(const Eigen::Matrix4d& toCamera, const Eigen::Matrix4d& projection, Projection kind)
    : perspective_(kind == Projection::Perspective)
{
    // The planes of the clip space, taken back through the projection (Gribb and Hartmann, 2001).
    const Eigen::Matrix4d toClip = projection * toCamera;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        const auto row = toClip.row(static_cast<Eigen::Index>(axis));
        planes_[2 * axis] = toClip.row(3) + row;
        planes_[2 * axis + 1] = toClip.row(3) - row;
    }
    const Eigen::Matrix3d fromCamera = toCamera.topLeftCorner<3, 3>().inverse();
    if (perspective_)
        eye_ = -(fromCamera * toCamera.topRightCorner<3, 1>());
    else
        direction_ = -fromCamera.col(2);
}

bool ViewVolume::mayShow(const Box3f& box) const
{
    if (box.isEmpty())
        return false;
    const Vector3d middle = box.cast<double>().center();
    const Vector3d half = box.cast<double>().sizes() / 2;
    return std::all_of(planes_.begin(), planes_.end(),
                       [&](const Eigen::Vector4d& plane)
                       {
                           const Vector3d normal = plane.head<3>();
                           return normal.dot(middle) + normal.cwiseAbs().dot(half) + plane[3] >= 0;
                       });
}

bool ViewVolume::facesAway(const Box3f& box, const Box3f& normals) const
{
    if (normals.isEmpty())
        return true;
    // The least that the product of a normal and the direction from the eye to the triangle can be; normals are a
    // little off in the last digits.
    constexpr double roundingError = 1e-5;
    double least = 0;
    double scale = 0;
    for (int i = 0; i < 3; ++i)
    {
        const double low = perspective_ ? double(box.min()[i]) - eye_[i] : direction_[i];
        const double high = perspective_ ? double(box.max()[i]) - eye_[i] : direction_[i];
        const double n0 = double(normals.min()[i]);
        const double n1 = double(normals.max()[i]);
        least += std::min({n0 * low, n0 * high, n1 * low, n1 * high});
        scale += std::max(std::abs(low), std::abs(high));
    }
    return least > roundingError * scale;
}

} // namespace VX
