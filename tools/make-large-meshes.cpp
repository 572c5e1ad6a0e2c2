// Makes the large files that the readers are measured with.

#include "BumpyTorus.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>

#include <cstdio>
#include <filesystem>

namespace
{

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
                             "Writes mesh80k.stl, mesh1m.stl and mesh4m.{stl,ply,obj} into FOLDER, 490 MB together.\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const VX::ObjectMesh small(VX::makeBumpyTorus(80'000));
    const VX::ObjectMesh medium(VX::makeBumpyTorus(1'000'000));
    const VX::ObjectMesh large(VX::makeBumpyTorus(4'000'000));
    const bool good = save(small, folder / "mesh80k.stl") && save(medium, folder / "mesh1m.stl") &&
                      save(large, folder / "mesh4m.stl") && save(large, folder / "mesh4m.ply") &&
                      save(large, folder / "mesh4m.obj");
    return good ? 0 : 1;
}
