#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Camera.h>
#include <VXViewer/Export.h>

#include <array>

namespace VX
{

/// What the camera sees, in the coordinates of some geometry.
class VXVIEWER_API ViewVolume
{
public:
    /// @param toCamera  from the geometry's coordinates to those of the camera
    ViewVolume(const Eigen::Matrix4d& toCamera, const Eigen::Matrix4d& projection, Projection kind);

    /// False only when nothing of the box can be seen.
    [[nodiscard]] bool mayShow(const Box3f& box) const;

    /// True only when every triangle inside `box` with a normal inside `normals` shows its back.
    [[nodiscard]] bool facesAway(const Box3f& box, const Box3f& normals) const;

private:
    std::array<Eigen::Vector4d, 6> planes_; ///< inside is where the product with (p, 1) is positive
    bool perspective_;
    Vector3d eye_ = Vector3d::Zero();       ///< perspective
    Vector3d direction_ = Vector3d::Zero(); ///< orthographic: of looking
};

} // namespace VX
