// Makes the large files that the readers are measured with.

#include "BumpyTorus.h"
#include "MeshFiles.h"

#include <VXMesh/ObjectMesh.h>

#include <filesystem>

int main(int argc, char** argv)
{
    const auto folder =
        VX::folderArgument(argc, argv,
                           "usage: make-large-meshes FOLDER\n"
                           "Writes mesh80k.stl, mesh1m.stl and mesh4m.{stl,ply,obj} into FOLDER, 490 MB together.\n");
    if (!folder)
        return 2;
    std::error_code error;
    std::filesystem::create_directories(*folder, error);
    const VX::ObjectMesh small(VX::makeBumpyTorus(80'000));
    const VX::ObjectMesh medium(VX::makeBumpyTorus(1'000'000));
    const VX::ObjectMesh large(VX::makeBumpyTorus(4'000'000));
    const bool good = VX::saveMesh(small, *folder / "mesh80k.stl") && VX::saveMesh(medium, *folder / "mesh1m.stl") &&
                      VX::saveMesh(large, *folder / "mesh4m.stl") && VX::saveMesh(large, *folder / "mesh4m.ply") &&
                      VX::saveMesh(large, *folder / "mesh4m.obj");
    return good ? 0 : 1;
}
