#pragma once

#include <VXMesh/ObjectMesh.h>

#include <set>
#include <string>
#include <vector>

namespace VX::Test
{

/// What a scene shows.
struct SceneFacts
{
    std::vector<const ObjectMesh*> parts;
    std::set<const Mesh*> meshes;
    std::multiset<std::string> names; ///< of everything but the edges
    std::set<std::string> colors;     ///< of faces, "#rrggbb"
    std::size_t triangles = 0;
    double area = 0; ///< of all triangles, before the parts' placements
    bool isFinite = true;
};

/// @param scene  must outlive the result
[[nodiscard]] SceneFacts factsOf(const Object& scene);

/// Expects each side of the scene's box to lie where that of `expected` does, within a thousandth of the diagonal, as
/// exactly as the triangles follow the surfaces.
void expectBox(const Object& scene, const Box3d& expected);

} // namespace VX::Test
