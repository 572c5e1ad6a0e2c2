#pragma once

#include "formats/Source.h"
#include "tests/support/TempDir.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace VX
{

using Test::readFile;
using Test::TempDir;

inline Source sourceOf(std::string_view content, const std::filesystem::path& path)
{
    return {std::as_bytes(std::span(content)), path};
}

template <typename Value>
void append(std::string& bytes, Value value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(Value));
}

/// The mesh object that is all a file held; null, with a failure, where there is more or something else.
inline std::shared_ptr<ObjectMesh> onlyMesh(const tl::expected<LoadedObjects, std::string>& loaded)
{
    EXPECT_TRUE(loaded.has_value()) << loaded.error();
    if (!loaded || loaded->objects.size() != 1)
    {
        ADD_FAILURE() << "there is not exactly one object";
        return nullptr;
    }
    auto mesh = std::dynamic_pointer_cast<ObjectMesh>(loaded->objects.front());
    EXPECT_TRUE(mesh && mesh->mesh()) << "the object is not a mesh";
    return mesh && mesh->mesh() ? mesh : nullptr;
}

/// The same for a point cloud.
inline std::shared_ptr<ObjectPoints> onlyPoints(const tl::expected<LoadedObjects, std::string>& loaded)
{
    EXPECT_TRUE(loaded.has_value()) << loaded.error();
    if (!loaded || loaded->objects.size() != 1)
    {
        ADD_FAILURE() << "there is not exactly one object";
        return nullptr;
    }
    auto points = std::dynamic_pointer_cast<ObjectPoints>(loaded->objects.front());
    EXPECT_TRUE(points && points->pointCloud()) << "the object is not a point cloud";
    return points && points->pointCloud() ? points : nullptr;
}

/// Four points and the four faces of a tetrahedron.
inline Mesh makeTetrahedron()
{
    Mesh mesh;
    mesh.points = {{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {0.0F, 0.0F, 1.0F}};
    mesh.triangles = {Triangle(0, 2, 1), Triangle(0, 1, 3), Triangle(1, 2, 3), Triangle(2, 0, 3)};
    return mesh;
}

inline std::shared_ptr<ObjectMesh> makeMeshObject(Mesh mesh)
{
    return std::make_shared<ObjectMesh>(std::make_shared<Mesh>(std::move(mesh)));
}

/// Six times the volume that the triangles enclose after the object's transform; negative where inside is out.
inline double sixfoldVolume(const ObjectMesh& object)
{
    const Mesh& mesh = *object.mesh();
    double sum = 0.0;
    for (const Triangle& triangle : mesh.triangles)
    {
        const auto corner = [&](int k) -> Vector3d
        { return object.worldTransform() * mesh.points[triangle[k]].cast<double>(); };
        sum += corner(0).dot(corner(1).cross(corner(2)));
    }
    return sum;
}

inline std::filesystem::path samplePath(std::string_view name)
{
    return std::filesystem::path(QX_SOURCE_DIR "/../shared/samples") / name;
}

} // namespace VX
