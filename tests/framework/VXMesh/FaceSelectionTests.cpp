#include "FaceSetNumbers.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/MeshTopology.h>
#include <VXMesh/Primitives.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// A strip of `count` triangles in a row; face i touches faces i - 2 to i + 2.
Mesh makeStrip(std::uint32_t count)
{
    Mesh mesh;
    for (std::uint32_t i = 0; i < count + 2; ++i)
        mesh.points.emplace_back(static_cast<float>(i / 2), static_cast<float>(i % 2), 0.0F);
    for (std::uint32_t i = 0; i < count; ++i)
        mesh.triangles.emplace_back(i % 2 == 0 ? Triangle(i, i + 2, i + 1) : Triangle(i, i + 1, i + 2));
    return mesh;
}

FaceSet setOf(const Mesh& mesh, const std::vector<std::size_t>& faces)
{
    return VX::setOf(mesh.triangles.size(), faces);
}

FaceSet grow(const Mesh& mesh, std::uint32_t seed, double tolerance)
{
    return growRegion(mesh, MeshTopology(mesh), seed, tolerance);
}

std::uint32_t faceAt(const Mesh& mesh, const Vector3f& direction)
{
    std::uint32_t best = 0;
    float furthest = 0;
    for (std::uint32_t i = 0; i < mesh.triangles.size(); ++i)
    {
        const Triangle& t = mesh.triangles[i];
        const float distance = (mesh.points[t[0]] + mesh.points[t[1]] + mesh.points[t[2]]).dot(direction);
        if (i == 0 || distance > furthest)
        {
            furthest = distance;
            best = i;
        }
    }
    return best;
}

} // namespace

TEST(MeshTopology, LinksTheTwoFacesOfAnEdge)
{
    const Mesh mesh = makeStrip(2);
    const MeshTopology topology(mesh);
    // Side 1 of face 0 and side 0 of face 1 lie along the edge between points 1 and 2.
    EXPECT_EQ(topology.nextOnEdge(1), 3U);
    EXPECT_EQ(topology.nextOnEdge(3), 1U);
}

TEST(MeshTopology, ASideAtTheBorderIsAlone)
{
    const MeshTopology topology(makeStrip(1));
    for (std::uint32_t side = 0; side < 3; ++side)
        EXPECT_EQ(topology.nextOnEdge(side), side);
}

TEST(MeshTopology, AllSheetsOfAnEdgeFormOneRing)
{
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, -1, 0}};
    mesh.triangles = {{0, 1, 2}, {0, 1, 3}, {1, 0, 4}};
    const MeshTopology topology(mesh);
    EXPECT_EQ(topology.nextOnEdge(0), 3U);
    EXPECT_EQ(topology.nextOnEdge(3), 6U);
    EXPECT_EQ(topology.nextOnEdge(6), 0U);
}

TEST(MeshTopology, ASideOfNoLengthIsAlone)
{
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}};
    mesh.triangles = {{0, 0, 1}, {0, 0, 1}};
    const MeshTopology topology(mesh);
    EXPECT_EQ(topology.nextOnEdge(0), 0U);
    EXPECT_EQ(topology.nextOnEdge(3), 3U);
}

/// A strip whose two halves have points of their own along the line where they meet.
Mesh makeStripWithSeam()
{
    Mesh mesh = makeStrip(4);
    const auto first = static_cast<std::uint32_t>(mesh.points.size());
    for (const std::uint32_t point : {2U, 3U})
        mesh.points.push_back(mesh.points[point]);
    mesh.points.back().z() = -0.0F;
    for (const std::size_t face : {2U, 3U})
    {
        for (std::uint32_t& corner : mesh.triangles[face].reshaped())
            corner = corner == 2 || corner == 3 ? first + corner - 2 : corner;
    }
    return mesh;
}

TEST(MeshTopology, PointsAtOnePlaceCountAsOne)
{
    const MeshTopology seamless(makeStrip(4));
    const MeshTopology topology(makeStripWithSeam());
    for (std::uint32_t side = 0; side < 12; ++side)
        EXPECT_EQ(topology.nextOnEdge(side), seamless.nextOnEdge(side)) << side;
}

TEST(FaceSelection, SelectsAcrossASeam)
{
    const Mesh mesh = makeStripWithSeam();
    EXPECT_EQ(growRegion(mesh, MeshTopology(mesh), 0, 1).count(), 4U);
    EXPECT_THAT(facesOf(expandFaces(mesh, setOf(mesh, {1}))), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(facesOf(shrinkFaces(mesh, setOf(mesh, {0, 1}))), IsEmpty());
}

TEST(FaceSelection, ExpandsByTheFacesThatShareAPoint)
{
    const Mesh mesh = makeStrip(10);
    EXPECT_THAT(facesOf(expandFaces(mesh, setOf(mesh, {5}))), ElementsAre(3, 4, 5, 6, 7));
    EXPECT_FALSE(expandFaces(mesh, setOf(mesh, {})).any());
}

TEST(FaceSelection, ShrinksByTheFacesNextToOthers)
{
    const Mesh mesh = makeStrip(10);
    EXPECT_THAT(facesOf(shrinkFaces(mesh, setOf(mesh, {2, 3, 4, 5, 6, 7}))), ElementsAre(4, 5));
}

TEST(FaceSelection, TheBorderOfTheSurfaceDoesNotShrinkASelection)
{
    const Mesh mesh = makeStrip(10);
    EXPECT_EQ(shrinkFaces(mesh, FaceSet(10, true)).count(), 10U);
    EXPECT_THAT(facesOf(shrinkFaces(mesh, setOf(mesh, {0, 1, 2, 3}))), ElementsAre(0, 1));
}

TEST(FaceSelection, InvertsToTheOtherFaces)
{
    const Mesh mesh = makeStrip(4);
    EXPECT_THAT(facesOf(invertFaces(setOf(mesh, {1, 2}))), ElementsAre(0, 3));
}

TEST(FaceSelection, RegionOnACubeIsItsFlatSide)
{
    const Mesh mesh = makeCube({});
    for (std::uint32_t seed = 0; seed < 12; ++seed)
        EXPECT_THAT(facesOf(grow(mesh, seed, 20)), ElementsAre(seed / 2 * 2, seed / 2 * 2 + 1));
}

TEST(FaceSelection, RegionOnACylinderGoesRoundItAndStopsAtTheRims)
{
    const Mesh mesh = makeCylinder({5, 10, 64});
    EXPECT_EQ(grow(mesh, faceAt(mesh, Vector3f::UnitX()), 10).count(), 128U);
    EXPECT_EQ(grow(mesh, faceAt(mesh, Vector3f::UnitZ()), 10).count(), 64U);
}

TEST(FaceSelection, RegionOnASphereIsTheSphere)
{
    const Mesh mesh = makeSphere({});
    EXPECT_EQ(grow(mesh, 7, 10).count(), mesh.triangles.size());
}

TEST(FaceSelection, RegionOfNoToleranceIsOnePlane)
{
    const Mesh mesh = makeSphere({5, 16});
    EXPECT_EQ(grow(mesh, faceAt(mesh, Vector3f::UnitX()), 0).count(), 2U);
    const Mesh plane = makeStrip(100);
    EXPECT_EQ(grow(plane, 50, 0).count(), 100U);
}

TEST(FaceSelection, RegionOfFullToleranceIsAllThatIsConnected)
{
    Mesh mesh = makeCube({});
    const std::vector<Vector3f> first = mesh.points;
    for (const Vector3f& point : first)
        mesh.points.emplace_back(point + Vector3f(20, 0, 0));
    for (std::size_t i = 0; i < 12; ++i)
        mesh.triangles.emplace_back(mesh.triangles[i].array() + 8);
    EXPECT_EQ(grow(mesh, 0, 180).count(), 12U);
}

TEST(FaceSelection, RegionPassesOverDegenerateFaces)
{
    Mesh mesh = makeStrip(4);
    // Between faces 1 and 2: a face without an area, with a point of its own on their edge.
    mesh.points.emplace_back((mesh.points[2] + mesh.points[3]) / 2);
    mesh.triangles = {{0, 2, 1}, {1, 2, 3}, {2, 6, 3}, {2, 4, 6}, {6, 4, 3}};
    EXPECT_EQ(grow(mesh, 0, 5).count(), 5U);
    EXPECT_EQ(grow(mesh, 2, 5).count(), 5U);
}

TEST(FaceSelection, RegionMindsNoFlippedNeighbors)
{
    Mesh mesh = makeStrip(10);
    for (std::size_t i = 0; i < 10; i += 3)
        std::swap(mesh.triangles[i][0], mesh.triangles[i][1]);
    EXPECT_EQ(grow(mesh, 4, 5).count(), 10U);
}

TEST(FaceSelection, RegionFarFromTheOriginIsFlatAsWell)
{
    Mesh mesh = makeStrip(50);
    const Eigen::AngleAxisf turn(0.7F, Vector3f(1, 2, 3).normalized());
    for (Vector3f& point : mesh.points)
        point = turn * point + Vector3f(300, -200, 500);
    EXPECT_EQ(grow(mesh, 20, 1).count(), 50U);
}

TEST(FaceSelection, RegionStopsWhenItIsAskedTo)
{
    // All faces share one edge.
    constexpr std::uint32_t count = 1000;
    Mesh fan;
    fan.points = {Vector3f(0, 0, 0), Vector3f(0, 0, 1)};
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const float angle = static_cast<float>(i) * 0.006F;
        fan.points.emplace_back(std::cos(angle), std::sin(angle), 0.0F);
        fan.triangles.emplace_back(0, 1, i + 2);
    }
    int questions = 0;
    const FaceSet found = growRegion(fan, MeshTopology(fan), 0, 1,
                                     [&]
                                     {
                                         ++questions;
                                         return true;
                                     });
    EXPECT_EQ(questions, 1);
    EXPECT_LT(found.count(), count);
}

} // namespace VX
