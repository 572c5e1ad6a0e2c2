#pragma once

#include <VXMesh/VisualObject.h>

namespace VX
{

/// A point cloud in the scene.
class VXMESH_API ObjectPoints : public VisualObject
{
public:
    explicit ObjectPoints(std::shared_ptr<const PointCloud> pointCloud = {});

    [[nodiscard]] std::string_view typeName() const override { return "ObjectPoints"; }

    /// May be null: then the object has no geometry.
    [[nodiscard]] const std::shared_ptr<const PointCloud>& pointCloud() const { return pointCloud_; }

    void setPointCloud(std::shared_ptr<const PointCloud> pointCloud);

protected:
    [[nodiscard]] Box3d localBox_() const override;
    [[nodiscard]] Box3d transformedBox_(const Transform& transform) const override;

private:
    std::shared_ptr<const PointCloud> pointCloud_;
    Box3d box_;
};

} // namespace VX
