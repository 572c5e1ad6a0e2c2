#pragma once

#include <VXMesh/Geometry.h>

#include <array>
#include <cmath>
#include <map>
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

/// A sphere of radius 1 made of the six sides of a cube, `n` by `n` quads each, one side after the other; closed.
inline std::shared_ptr<Mesh> makeCubeSphere(int n)
{
    auto mesh = std::make_shared<Mesh>();
    std::map<std::array<int, 3>, std::uint32_t> known;
    const auto at = [&](int axis, int side, int u, int v)
    {
        std::array<int, 3> place{};
        place.at(static_cast<std::size_t>(axis)) = side * n;
        place.at(static_cast<std::size_t>((axis + 1) % 3)) = 2 * u - n;
        place.at(static_cast<std::size_t>((axis + 2) % 3)) = 2 * v - n;
        const auto [entry, isNew] = known.emplace(place, static_cast<std::uint32_t>(mesh->points.size()));
        if (isNew)
            mesh->points.push_back(Eigen::Vector3i(place.data()).cast<float>().normalized());
        return entry->second;
    };
    for (int axis = 0; axis < 3; ++axis)
    {
        for (const int side : {1, -1})
        {
            for (int u = 0; u < n; ++u)
            {
                for (int v = 0; v < n; ++v)
                {
                    std::array corners{at(axis, side, u, v), at(axis, side, u + 1, v), at(axis, side, u + 1, v + 1),
                                       at(axis, side, u, v + 1)};
                    if (side < 0)
                        std::swap(corners[1], corners[3]);
                    mesh->triangles.emplace_back(corners[0], corners[1], corners[2]);
                    mesh->triangles.emplace_back(corners[0], corners[2], corners[3]);
                }
            }
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
