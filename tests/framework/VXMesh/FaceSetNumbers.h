#pragma once

#include <VXMesh/FaceSet.h>

#include <cstddef>
#include <vector>

namespace VX
{

/// A set of these faces of a mesh that has `size`.
inline FaceSet setOf(std::size_t size, const std::vector<std::size_t>& faces)
{
    FaceSet result(size);
    for (const std::size_t face : faces)
        result.set(face);
    return result;
}

/// The faces that are in a set, in ascending order.
inline std::vector<std::size_t> facesOf(const FaceSet& set)
{
    std::vector<std::size_t> faces;
    set.forEach([&](std::size_t face) { faces.push_back(face); });
    return faces;
}

} // namespace VX
