#pragma once

#include <VXMesh/Geometry.h>

#include <cmath>
#include <memory>
#include <numbers>

namespace VX::Shapes
{

/// A cube of side 2 around `center`: eight points, twelve triangles, two a face in the order -x, +x, -y, +y, -z, +z.
inline std::shared_ptr<Mesh> makeCube(const Vector3f& center = Vector3f::Zero(), float halfSide = 1)
{
    auto mesh = std::make_shared<Mesh>();
    for (int i = 0; i < 8; ++i)
    {
        const Vector3f corner(i & 1 ? 1.0F : -1.0F, i & 2 ? 1.0F : -1.0F, i & 4 ? 1.0F : -1.0F);
        mesh->points.emplace_back(center + corner * halfSide);
    }
    mesh->triangles = {{0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}, {0, 1, 5}, {0, 5, 4},
                       {2, 6, 7}, {2, 7, 3}, {0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6}};
    return mesh;
}

/// A sphere of radius 1 around the origin in `rings` rings of twice as many quads; closed, 4 rings (rings - 1)
/// triangles.
inline std::shared_ptr<Mesh> makeSphere(std::uint32_t rings)
{
    auto mesh = std::make_shared<Mesh>();
    const std::uint32_t columns = 2 * rings;
    const auto at = [&](std::uint32_t ring, std::uint32_t column)
    {
        if (ring == 0)
            return std::uint32_t{0};
        return ring == rings ? 1 + (rings - 1) * columns : 1 + (ring - 1) * columns + column % columns;
    };
    mesh->points.emplace_back(0, 0, 1);
    for (std::uint32_t ring = 1; ring < rings; ++ring)
    {
        for (std::uint32_t column = 0; column < columns; ++column)
        {
            const double a = std::numbers::pi * ring / rings;
            const double b = 2 * std::numbers::pi * column / columns;
            mesh->points.emplace_back(
                Vector3d(std::sin(a) * std::cos(b), std::sin(a) * std::sin(b), std::cos(a)).cast<float>());
        }
    }
    mesh->points.emplace_back(0, 0, -1);
    for (std::uint32_t ring = 0; ring < rings; ++ring)
    {
        for (std::uint32_t column = 0; column < columns; ++column)
        {
            if (ring + 1 < rings)
                mesh->triangles.emplace_back(at(ring, column), at(ring + 1, column), at(ring + 1, column + 1));
            if (ring > 0)
                mesh->triangles.emplace_back(at(ring, column), at(ring + 1, column + 1), at(ring, column + 1));
        }
    }
    return mesh;
}

/// A square of side 2 in the plane y = `y`, facing the front.
inline std::shared_ptr<Mesh> makeSquare(float y = 0)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->points = {{-1, y, -1}, {1, y, -1}, {1, y, 1}, {-1, y, 1}};
    mesh->triangles = {{0, 1, 2}, {0, 2, 3}};
    return mesh;
}

/// Turns every triangle of `mesh` around.
inline void flip(Mesh& mesh)
{
    for (Triangle& triangle : mesh.triangles)
        std::swap(triangle[1], triangle[2]);
}

/// Appends the points and triangles of `other`.
inline void append(Mesh& mesh, const Mesh& other)
{
    const auto first = static_cast<std::uint32_t>(mesh.points.size());
    mesh.points.insert(mesh.points.end(), other.points.begin(), other.points.end());
    for (const Triangle& triangle : other.triangles)
        mesh.triangles.emplace_back(triangle.array() + first);
}

} // namespace VX::Shapes
