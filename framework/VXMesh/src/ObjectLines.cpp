#include <VXMesh/ObjectLines.h>
#include <VXMesh/PointsBox.h>

#include <utility>

namespace VX
{

ObjectLines::ObjectLines(std::shared_ptr<const Lines> lines)
{
    setLines(std::move(lines));
}

void ObjectLines::setLines(std::shared_ptr<const Lines> lines)
{
    lines_ = std::move(lines);
    box_ = lines_ ? VX::computeBox(lines_->points).cast<double>() : Box3d();
    markChanged_();
}

Box3d ObjectLines::localBox_() const
{
    return box_;
}

Box3d ObjectLines::transformedBox_(const Transform& transform) const
{
    return lines_ ? VX::computeBox(lines_->points, box_, transform) : Box3d();
}

} // namespace VX
