#pragma once

#include <VXMesh/Geometry.h>

#include <memory>
#include <optional>

namespace VX
{

/// What a body of the file looks like, ready for the scene.
struct BodyGeometry
{
    std::shared_ptr<const Mesh> mesh = {};   ///< never without triangles; with face colours only where they differ
    std::shared_ptr<const Lines> edges = {}; ///< the sharp edges; null where there are none
    Vector3d offset = Vector3d::Zero();      ///< to be added to the points, for bodies far from the origin
    std::optional<Color> color = {};         ///< of the faces where `mesh` has no colours, else of the body
};

/// Whether there is a triangle and all points are finite: a damaged file may place them beyond all numbers.
[[nodiscard]] bool isDrawable(const Mesh& mesh);

} // namespace VX
