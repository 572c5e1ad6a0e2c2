#pragma once

#include <VXMesh/FaceSet.h>
#include <VXMesh/Geometry.h>

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace VX
{

class Object;

/// A set of shared geometry with the memory that each piece takes up, so that what is shared counts once.
/// @threads the UI thread
class HeldGeometry
{
public:
    void add(const std::shared_ptr<const Mesh>& mesh);
    void add(const std::shared_ptr<const PointCloud>& cloud);
    void add(const std::shared_ptr<const Lines>& lines);
    void add(const std::shared_ptr<const FaceSet>& faces);

    /// The geometry of `object` and of all below it.
    void addTree(const Object& object);

    /// What is in `other` too.
    void remove(const HeldGeometry& other);

    [[nodiscard]] bool isEmpty() const { return bytes_.empty(); }

    /// In bytes.
    [[nodiscard]] std::size_t heapBytes() const;

private:
    std::unordered_map<const void*, std::size_t> bytes_;
};

} // namespace VX
