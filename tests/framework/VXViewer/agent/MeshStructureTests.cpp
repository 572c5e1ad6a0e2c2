#include "agent/MeshStructure.h"

#include "panels/MeshMeasure.h"

#include <VXMesh/Primitives.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// The same surface with points of its own for each triangle.
Mesh withOwnPoints(const Mesh& mesh)
{
    Mesh apart;
    for (const Triangle& t : mesh.triangles)
    {
        const auto first = static_cast<std::uint32_t>(apart.points.size());
        for (int k = 0; k < 3; ++k)
            apart.points.push_back(mesh.points[t[k]]);
        apart.triangles.emplace_back(first, first + 1, first + 2);
    }
    return apart;
}

} // namespace

TEST(MeshStructure, OfAClosedSurfaceIsOnePartWithoutHoles)
{
    const auto structure = findMeshStructure(makeTorus({}));
    ASSERT_TRUE(structure);
    EXPECT_EQ(structure->components, 1U);
    EXPECT_EQ(structure->holes, 0U);
}

TEST(MeshStructure, CountsPartsAndBorders)
{
    Mesh mesh = makePlane({});
    const auto offset = static_cast<std::uint32_t>(mesh.points.size());
    for (const Vector3f& point : makePlane({}).points)
        mesh.points.push_back(point + Vector3f(100, 0, 0));
    for (const Triangle& t : makePlane({}).triangles)
        mesh.triangles.push_back(t + Triangle(offset, offset, offset));
    const auto structure = findMeshStructure(mesh);
    ASSERT_TRUE(structure);
    EXPECT_EQ(structure->components, 2U);
    EXPECT_EQ(structure->holes, 2U);
    EXPECT_EQ(structure->borderEdges, 8U);
}

TEST(MeshStructure, OfAnEmptyMeshIsNothing)
{
    const auto structure = findMeshStructure({});
    ASSERT_TRUE(structure);
    EXPECT_EQ(structure->components, 0U);
}

TEST(MeshStructure, StopsWhereToldTo)
{
    EXPECT_FALSE(findMeshStructure(makeCube({}), [] { return true; }));
}

TEST(JoinEqualPoints, ClosesASurfaceWhoseFacesHavePointsOfTheirOwn)
{
    const Mesh apart = withOwnPoints(makeSphere({}));
    EXPECT_FALSE(measureMesh(apart, Transform::Identity()).volume);
    const Mesh joined = joinEqualPoints(apart);
    EXPECT_TRUE(measureMesh(joined, Transform::Identity()).volume);
    EXPECT_EQ(findMeshStructure(joined)->components, 1U);
    EXPECT_EQ(findMeshStructure(joined)->holes, 0U);
}

} // namespace VX
