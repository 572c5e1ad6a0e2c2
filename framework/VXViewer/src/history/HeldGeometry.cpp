#include "HeldGeometry.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

namespace VX
{

namespace
{

template <class T>
std::size_t bytesOf(const std::vector<T>& values)
{
    return values.capacity() * sizeof(T);
}

} // namespace

void HeldGeometry::add(const std::shared_ptr<const Mesh>& mesh)
{
    if (mesh)
        bytes_[mesh.get()] = bytesOf(mesh->points) + bytesOf(mesh->triangles) + bytesOf(mesh->normals) +
                             bytesOf(mesh->vertexColors) + bytesOf(mesh->faceColors);
}

void HeldGeometry::add(const std::shared_ptr<const PointCloud>& cloud)
{
    if (cloud)
        bytes_[cloud.get()] = bytesOf(cloud->points) + bytesOf(cloud->normals) + bytesOf(cloud->colors);
}

void HeldGeometry::add(const std::shared_ptr<const Lines>& lines)
{
    if (lines)
        bytes_[lines.get()] = bytesOf(lines->points) + bytesOf(lines->segments);
}

void HeldGeometry::add(const std::shared_ptr<const FaceSet>& faces)
{
    if (faces)
        bytes_[faces.get()] = faces->heapBytes();
}

void HeldGeometry::addTree(const Object& object)
{
    visitObjects(object,
                 [&](const Object& each)
                 {
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&each))
                     {
                         add(mesh->mesh());
                         add(mesh->selectedFaces());
                     }
                     else if (const auto* points = dynamic_cast<const ObjectPoints*>(&each))
                         add(points->pointCloud());
                     else if (const auto* lines = dynamic_cast<const ObjectLines*>(&each))
                         add(lines->lines());
                 });
}

void HeldGeometry::remove(const HeldGeometry& other)
{
    std::erase_if(bytes_, [&](const auto& held) { return other.bytes_.contains(held.first); });
}

std::size_t HeldGeometry::heapBytes() const
{
    std::size_t sum = 0;
    for (const auto& [geometry, bytes] : bytes_)
        sum += bytes;
    return sum;
}

} // namespace VX
