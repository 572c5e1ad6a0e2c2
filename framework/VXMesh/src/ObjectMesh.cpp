#include <VXMesh/ObjectMesh.h>
#include <VXMesh/PointsBox.h>

#include <utility>

namespace VX
{

ObjectMesh::ObjectMesh(std::shared_ptr<const Mesh> mesh)
{
    setMesh(std::move(mesh));
}

void ObjectMesh::setMesh(std::shared_ptr<const Mesh> mesh)
{
    mesh_ = std::move(mesh);
    box_ = mesh_ ? VX::computeBox(mesh_->points).cast<double>() : Box3d();
    if (selectedFaces_ && selectedFaces_->size() != (mesh_ ? mesh_->triangles.size() : 0))
        selectedFaces_.reset();
    markChanged_();
}

void ObjectMesh::setSelectedFaces(std::shared_ptr<const FaceSet> faces)
{
    const std::size_t triangles = mesh_ ? mesh_->triangles.size() : 0;
    if (faces && (faces->size() != triangles || !faces->any()))
        faces.reset();
    if (selectedFaces_ == faces)
        return;
    selectedFaces_ = std::move(faces);
    markChanged_();
}

void ObjectMesh::setFlatShaded(bool flat)
{
    if (flatShaded_ == flat)
        return;
    flatShaded_ = flat;
    markChanged_();
}

Box3d ObjectMesh::localBox_() const
{
    return box_;
}

Box3d ObjectMesh::transformedBox_(const Transform& transform) const
{
    return mesh_ ? VX::computeBox(mesh_->points, box_, transform) : Box3d();
}

} // namespace VX
