#include <VXMesh/MeshEdit.h>
#include <VXMesh/Primitives.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// Two triangles apart from each other, and a point that none of them uses in between.
Mesh makeTwoParts()
{
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9, 9, 9}, {5, 0, 0}, {6, 0, 0}, {5, 1, 0}};
    mesh.triangles = {{0, 1, 2}, {4, 5, 6}};
    return mesh;
}

FaceSet only(const Mesh& mesh, std::size_t face)
{
    FaceSet result(mesh.triangles.size());
    result.set(face);
    return result;
}

/// The corners of all faces, one after another: equal for equal surfaces.
std::vector<Vector3f> cornersOf(const Mesh& mesh)
{
    std::vector<Vector3f> corners;
    for (const Triangle& t : mesh.triangles)
    {
        for (const std::uint32_t point : t)
            corners.push_back(mesh.points[point]);
    }
    return corners;
}

} // namespace

TEST(DeleteFaces, LeavesTheOthersAndTheirPoints)
{
    const Mesh mesh = makeTwoParts();
    const Mesh left = deleteFaces(mesh, only(mesh, 0));
    EXPECT_THAT(left.points, ElementsAre(Vector3f(5, 0, 0), Vector3f(6, 0, 0), Vector3f(5, 1, 0)));
    EXPECT_THAT(left.triangles, ElementsAre(Triangle(0, 1, 2)));
}

TEST(DeleteFaces, KeepsThePointsOfNeighbors)
{
    const Mesh mesh = makePlane({});
    const Mesh left = deleteFaces(mesh, only(mesh, 0));
    EXPECT_THAT(left.points, ElementsAre(mesh.points[0], mesh.points[2], mesh.points[3]));
    EXPECT_THAT(left.triangles, ElementsAre(Triangle(0, 1, 2)));
}

TEST(DeleteFaces, KeepsNormalsAndColors)
{
    Mesh mesh = makeTwoParts();
    for (std::uint8_t i = 0; i < 7; ++i)
    {
        mesh.normals.emplace_back(Vector3f::UnitZ() * static_cast<float>(i));
        mesh.vertexColors.push_back({i, 0, 0, 255});
    }
    mesh.faceColors = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    const Mesh left = deleteFaces(mesh, only(mesh, 0));
    EXPECT_THAT(left.normals, ElementsAre(Vector3f(0, 0, 4), Vector3f(0, 0, 5), Vector3f(0, 0, 6)));
    EXPECT_THAT(left.vertexColors, ElementsAre(Color{4, 0, 0, 255}, Color{5, 0, 0, 255}, Color{6, 0, 0, 255}));
    EXPECT_THAT(left.faceColors, ElementsAre(Color{5, 6, 7, 8}));
}

TEST(DeleteFaces, AllLeavesAnEmptyMesh)
{
    const Mesh left = deleteFaces(makeCube({}), FaceSet(12, true));
    EXPECT_THAT(left.points, IsEmpty());
    EXPECT_THAT(left.triangles, IsEmpty());
}

TEST(DeleteFaces, AnEmptyMeshStaysEmpty)
{
    EXPECT_THAT(deleteFaces(Mesh(), FaceSet()).triangles, IsEmpty());
}

TEST(DeleteFaces, NoneLeavesTheSurfaceAsItIs)
{
    const Mesh mesh = makeTorus({});
    EXPECT_EQ(cornersOf(deleteFaces(mesh, FaceSet(mesh.triangles.size()))), cornersOf(mesh));
}

TEST(DeleteFaces, LeavesALargeSurfaceInOrder)
{
    const Mesh mesh = makeTorus({.radius = 5, .tubeRadius = 1, .segments = 700, .tubeSegments = 300});
    FaceSet faces(mesh.triangles.size());
    Mesh expected = mesh;
    expected.triangles.clear();
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i)
    {
        const bool gone = i * 7919 % 13 < 6 || i < 100'000;
        faces.set(i, gone);
        if (!gone)
            expected.triangles.push_back(mesh.triangles[i]);
    }
    EXPECT_EQ(cornersOf(deleteFaces(mesh, faces)), cornersOf(expected));
}

} // namespace VX
