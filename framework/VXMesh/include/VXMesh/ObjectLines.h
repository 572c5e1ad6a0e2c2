#pragma once

#include <VXMesh/VisualObject.h>

namespace VX
{

/// Line segments in the scene, such as the sharp edges of a part.
class VXMESH_API ObjectLines : public VisualObject
{
public:
    explicit ObjectLines(std::shared_ptr<const Lines> lines = {});

    [[nodiscard]] std::string_view typeName() const override { return "ObjectLines"; }

    /// May be null: then the object has no geometry.
    [[nodiscard]] const std::shared_ptr<const Lines>& lines() const { return lines_; }

    void setLines(std::shared_ptr<const Lines> lines);

protected:
    [[nodiscard]] Box3d localBox_() const override;
    [[nodiscard]] Box3d transformedBox_(const Transform& transform) const override;

private:
    std::shared_ptr<const Lines> lines_;
    Box3d box_;
};

} // namespace VX
