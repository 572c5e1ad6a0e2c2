#pragma once

#include <VXMesh/ObjectMesh.h>

#include <memory>
#include <string>
#include <utility>

namespace VX::Test
{

/// A box of 12 triangles between two corners.
inline std::shared_ptr<ObjectMesh> makeBox(std::string name, const Vector3f& min = {0, 0, 0},
                                           const Vector3f& max = {1, 1, 1})
{
    auto mesh = std::make_shared<Mesh>();
    for (int i = 0; i < 8; ++i)
        mesh->points.emplace_back((i & 1) != 0 ? max.x() : min.x(), (i & 2) != 0 ? max.y() : min.y(),
                                  (i & 4) != 0 ? max.z() : min.z());
    mesh->triangles = {{0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
                       {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    auto object = std::make_shared<ObjectMesh>(std::move(mesh));
    object->setName(std::move(name));
    return object;
}

/// A small text STL file of one triangle.
inline std::string triangleStl()
{
    return "solid part\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 10 0 0\nvertex 0 10 0\n"
           "endloop\nendfacet\nendsolid part\n";
}

} // namespace VX::Test
