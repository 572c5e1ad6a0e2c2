#pragma once

#include <VXMesh/FaceSet.h>
#include <VXMesh/VisualObject.h>

namespace VX
{

/// A triangle mesh in the scene; instances of one part share the mesh.
class VXMESH_API ObjectMesh : public VisualObject
{
public:
    explicit ObjectMesh(std::shared_ptr<const Mesh> mesh = {});

    [[nodiscard]] std::string_view typeName() const override { return "ObjectMesh"; }

    /// May be null: then the object has no geometry.
    [[nodiscard]] const std::shared_ptr<const Mesh>& mesh() const { return mesh_; }

    /// Faces stay selected where the new mesh has as many triangles as the old one.
    void setMesh(std::shared_ptr<const Mesh> mesh);

    /// Of the mesh's triangles; null when none is selected.
    [[nodiscard]] const std::shared_ptr<const FaceSet>& selectedFaces() const { return selectedFaces_; }

    /// An empty set, or one of another size than the mesh has triangles, selects none.
    void setSelectedFaces(std::shared_ptr<const FaceSet> faces);

    /// Smooth: one normal a vertex, averaged over its faces; flat: one normal a face.
    [[nodiscard]] bool isFlatShaded() const { return flatShaded_; }

    void setFlatShaded(bool flat);

protected:
    [[nodiscard]] Box3d localBox_() const override;
    [[nodiscard]] Box3d transformedBox_(const Transform& transform) const override;

private:
    std::shared_ptr<const Mesh> mesh_;
    std::shared_ptr<const FaceSet> selectedFaces_;
    Box3d box_;
    bool flatShaded_ = false;
};

} // namespace VX
