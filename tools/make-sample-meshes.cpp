// Makes the small meshes in samples/: a gear wheel, and a knot with colours.

#include "MeshFiles.h"

#include <VXMesh/ObjectMesh.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace
{

constexpr double kFullTurn = 2.0 * std::numbers::pi;

/// The outline of a gear wheel, counter-clockwise: four corners a tooth, with slanted flanks.
std::vector<VX::Vector3d> gearOutline(int teeth, double rootRadius, double tipRadius)
{
    std::vector<VX::Vector3d> outline;
    for (int tooth = 0; tooth < teeth; ++tooth)
        for (const auto& [part, radius] :
             {std::pair{0.05, rootRadius}, {0.30, tipRadius}, {0.50, tipRadius}, {0.75, rootRadius}})
        {
            const double angle = kFullTurn * (tooth + part) / teeth;
            outline.emplace_back(radius * std::cos(angle), radius * std::sin(angle), 0.0);
        }
    return outline;
}

/// A wheel between z = 0 and `height` with a round hole.
VX::Mesh makeGear(int teeth, double height)
{
    const std::vector<VX::Vector3d> outline = gearOutline(teeth, 36.0, 44.0);
    const auto count = static_cast<std::uint32_t>(outline.size());
    constexpr double kHoleRadius = 12.0;
    VX::Mesh mesh;
    // Four rings of points: outside below, outside above, hole below, hole above.
    for (const bool isHole : {false, true})
        for (const double z : {0.0, height})
            for (const VX::Vector3d& corner : outline)
            {
                VX::Vector3d point = isHole ? VX::Vector3d(corner.normalized() * kHoleRadius) : corner;
                point.z() = z;
                mesh.points.push_back(point.cast<float>());
            }
    const auto quad = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        mesh.triangles.emplace_back(a, b, c);
        mesh.triangles.emplace_back(a, c, d);
    };
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const std::uint32_t next = (i + 1) % count;
        quad(i, next, count + next, count + i);                                 // teeth
        quad(2 * count + next, 2 * count + i, 3 * count + i, 3 * count + next); // hole
        quad(count + i, count + next, 3 * count + next, 3 * count + i);         // above
        quad(next, i, 2 * count + i, 2 * count + next);                         // below
    }
    return mesh;
}

VX::Vector3d knotPoint(double t)
{
    const double radius = 30.0 + 12.0 * std::cos(3.0 * t);
    return {radius * std::cos(2.0 * t), radius * std::sin(2.0 * t), 16.0 * std::sin(3.0 * t)};
}

/// A tube along a trefoil knot whose colour turns with the way along it.
VX::Mesh makeKnot(std::uint32_t along, std::uint32_t around, double tubeRadius)
{
    VX::Mesh mesh;
    for (std::uint32_t i = 0; i < along; ++i)
    {
        const double t = kFullTurn * i / along;
        const VX::Vector3d center = knotPoint(t);
        const VX::Vector3d direction = (knotPoint(t + 1e-4) - knotPoint(t - 1e-4)).normalized();
        const VX::Vector3d side = direction.cross(VX::Vector3d::UnitZ()).normalized();
        const VX::Vector3d up = side.cross(direction);
        const auto channel = [&](double phase)
        { return static_cast<std::uint8_t>(std::lround(150.0 + 90.0 * std::cos(t + phase))); };
        for (std::uint32_t j = 0; j < around; ++j)
        {
            const double u = kFullTurn * j / around;
            mesh.points.push_back((center + tubeRadius * (std::cos(u) * side + std::sin(u) * up)).cast<float>());
            mesh.vertexColors.push_back({channel(0.0), channel(kFullTurn / 3.0), channel(-kFullTurn / 3.0)});
            const std::uint32_t nextI = (i + 1) % along * around;
            const std::uint32_t nextJ = (j + 1) % around;
            mesh.triangles.emplace_back(i * around + j, nextI + nextJ, nextI + j);
            mesh.triangles.emplace_back(i * around + j, i * around + nextJ, nextI + nextJ);
        }
    }
    return mesh;
}

bool save(VX::Mesh mesh, const std::filesystem::path& path)
{
    return VX::saveMesh(VX::ObjectMesh(std::make_shared<const VX::Mesh>(std::move(mesh))), path);
}

} // namespace

int main(int argc, char** argv)
{
    const auto folder = VX::folderArgument(argc, argv, "usage: make-sample-meshes FOLDER\n");
    if (!folder)
        return 2;
    return save(makeGear(24, 16.0), *folder / "gear.stl") && save(makeKnot(192, 18, 6.0), *folder / "knot.ply") ? 0 : 1;
}
