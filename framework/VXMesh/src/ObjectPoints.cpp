#include <VXMesh/ObjectPoints.h>
#include <VXMesh/PointsBox.h>

#include <utility>

namespace VX
{

ObjectPoints::ObjectPoints(std::shared_ptr<const PointCloud> pointCloud)
{
    setPointCloud(std::move(pointCloud));
}

void ObjectPoints::setPointCloud(std::shared_ptr<const PointCloud> pointCloud)
{
    pointCloud_ = std::move(pointCloud);
    box_ = pointCloud_ ? VX::computeBox(pointCloud_->points).cast<double>() : Box3d();
    markChanged_();
}

Box3d ObjectPoints::localBox_() const
{
    return box_;
}

Box3d ObjectPoints::transformedBox_(const Transform& transform) const
{
    return pointCloud_ ? VX::computeBox(pointCloud_->points, box_, transform) : Box3d();
}

} // namespace VX
