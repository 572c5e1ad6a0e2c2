#include "BodyGeometry.h"

#include <algorithm>

namespace VX
{

bool isDrawable(const Mesh& mesh)
{
    return !mesh.triangles.empty() &&
           std::ranges::all_of(mesh.points, [](const Vector3f& point) { return point.allFinite(); });
}

} // namespace VX
