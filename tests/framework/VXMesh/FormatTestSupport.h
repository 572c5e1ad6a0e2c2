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

/// What a file of this name holds after `root` was saved to it.
inline tl::expected<LoadedObjects, std::string> saveAndLoad(const Object& root, const std::string& name)
{
    const TempDir folder;
    const auto path = folder.path() / name;
    return saveObjectToFile(root, path, {}).and_then([&] { return loadObjectFromFile(path, {}); });
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

/// Saves a mesh with normals and with colours of points and faces to a file of this name and checks what is read again.
inline void expectMeshReadsBackTheSame(const std::string& name)
{
    Mesh mesh = makeTetrahedron();
    for (std::uint8_t i = 0; i < 4; ++i)
    {
        mesh.normals.push_back(Vector3f(1.0F, static_cast<float>(i), 0.0F).normalized());
        // Not below 2: with all channels up to 1, some formats have fractions.
        mesh.vertexColors.push_back({static_cast<std::uint8_t>(i + 2), 1, 2, 200});
        mesh.faceColors.push_back({3, i, 4, 255});
    }
    const auto object = onlyMesh(saveAndLoad(*makeMeshObject(mesh), name));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points, mesh.points);
    EXPECT_EQ(object->mesh()->triangles, mesh.triangles);
    EXPECT_EQ(object->mesh()->vertexColors, mesh.vertexColors);
    EXPECT_EQ(object->mesh()->faceColors, mesh.faceColors);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(object->mesh()->normals[i].isApprox(mesh.normals[i], 1e-6F));
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
