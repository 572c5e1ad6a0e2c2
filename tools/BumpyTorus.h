#pragma once

#include <VXMesh/Geometry.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>

namespace VX
{

/// A closed surface with bumps of about `triangles` triangles: twice as many quads around as across.
inline std::shared_ptr<const Mesh> makeBumpyTorus(std::uint32_t triangles)
{
    constexpr double kFullTurn = 2.0 * std::numbers::pi;
    const auto across = static_cast<std::uint32_t>(std::lround(std::sqrt(triangles / 4.0)));
    const std::uint32_t around = 2 * across;
    auto mesh = std::make_shared<Mesh>();
    mesh->points.reserve(std::size_t{around} * across);
    mesh->triangles.reserve(std::size_t{around} * across * 2);
    for (std::uint32_t i = 0; i < around; ++i)
    {
        const double u = kFullTurn * i / around;
        const std::uint32_t nextI = (i + 1) % around * across;
        for (std::uint32_t j = 0; j < across; ++j)
        {
            const double v = kFullTurn * j / across;
            const double radius = 30.0 + 1.5 * std::sin(24.0 * u) * std::sin(12.0 * v) + 0.1 * std::sin(200.0 * u);
            const double fromAxis = 80.0 + radius * std::cos(v);
            mesh->points.emplace_back(
                Vector3d(fromAxis * std::cos(u), fromAxis * std::sin(u), radius * std::sin(v)).cast<float>());
            const std::uint32_t nextJ = (j + 1) % across;
            mesh->triangles.emplace_back(i * across + j, nextI + j, nextI + nextJ);
            mesh->triangles.emplace_back(i * across + j, nextI + nextJ, i * across + nextJ);
        }
    }
    return mesh;
}

} // namespace VX
