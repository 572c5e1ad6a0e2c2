// Makes the large files that the readers are measured with.

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <numbers>
#include <string>

namespace
{

/// A closed surface with bumps: a torus of `around` x `across` quads, two triangles each.
VX::Mesh makeBumpyTorus(std::uint32_t around, std::uint32_t across)
{
    constexpr double kFullTurn = 2.0 * std::numbers::pi;
    VX::Mesh mesh;
    mesh.points.reserve(std::size_t{around} * across);
    mesh.triangles.reserve(std::size_t{around} * across * 2);
    for (std::uint32_t i = 0; i < around; ++i)
    {
        const double u = kFullTurn * i / around;
        for (std::uint32_t j = 0; j < across; ++j)
        {
            const double v = kFullTurn * j / across;
            const double radius = 30.0 + 1.5 * std::sin(24.0 * u) * std::sin(12.0 * v) + 0.1 * std::sin(200.0 * u);
            const double fromAxis = 80.0 + radius * std::cos(v);
            mesh.points.emplace_back(
                VX::Vector3d(fromAxis * std::cos(u), fromAxis * std::sin(u), radius * std::sin(v)).cast<float>());
            const std::uint32_t nextI = (i + 1) % around * across;
            const std::uint32_t nextJ = (j + 1) % across;
            const std::uint32_t a = i * across + j;
            const std::uint32_t b = nextI + j;
            const std::uint32_t c = nextI + nextJ;
            const std::uint32_t d = i * across + nextJ;
            mesh.triangles.emplace_back(a, b, c);
            mesh.triangles.emplace_back(a, c, d);
        }
    }
    return mesh;
}

bool save(const VX::Object& object, const std::filesystem::path& path)
{
    const auto saved = VX::saveObjectToFile(object, path, {});
    if (!saved)
        std::fprintf(stderr, "%s\n", saved.error().c_str());
    return saved.has_value();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || argv[1][0] == '-')
    {
        std::fprintf(stderr, "usage: make-large-meshes FOLDER\n"
                             "Writes mesh1m.stl and mesh4m.{stl,ply,obj} into FOLDER, 550 MB together.\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const VX::ObjectMesh small(std::make_shared<VX::Mesh>(makeBumpyTorus(1000, 500)));
    const VX::ObjectMesh large(std::make_shared<VX::Mesh>(makeBumpyTorus(2000, 1000)));
    const bool good = save(small, folder / "mesh1m.stl") && save(large, folder / "mesh4m.stl") &&
                      save(large, folder / "mesh4m.ply") && save(large, folder / "mesh4m.obj");
    return good ? 0 : 1;
}
