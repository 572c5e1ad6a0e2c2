#include "render/MeshAnalysis.h"

#include "RenderShapes.h"

#include <gtest/gtest.h>

namespace VX
{

TEST(MeshAnalysisTests, ASphereIsSolid)
{
    EXPECT_TRUE(analyzeMesh(*Shapes::makeSphere(20)).solid);
}

TEST(MeshAnalysisTests, ASurfaceWithAHoleIsNotSolid)
{
    auto mesh = Shapes::makeSphere(20);
    mesh->triangles.pop_back();
    EXPECT_FALSE(analyzeMesh(*mesh).solid);
}

TEST(MeshAnalysisTests, ASurfaceWithOneTriangleTurnedAroundIsNotSolid)
{
    auto mesh = Shapes::makeSphere(20);
    std::swap(mesh->triangles[7][0], mesh->triangles[7][1]);
    EXPECT_FALSE(analyzeMesh(*mesh).solid);
}

TEST(MeshAnalysisTests, ASphereInsideOutIsNotSolid)
{
    auto mesh = Shapes::makeSphere(20);
    Shapes::flip(*mesh);
    EXPECT_FALSE(analyzeMesh(*mesh).solid);
}

TEST(MeshAnalysisTests, EveryPartOfASolidFacesOutwards)
{
    auto mesh = Shapes::makeSphere(20);
    auto small = Shapes::makeCube({1000, 0, 0}, 0.01F);
    Shapes::append(*mesh, *small);
    EXPECT_TRUE(analyzeMesh(*mesh).solid);

    auto withFlippedPart = Shapes::makeSphere(20);
    Shapes::flip(*small);
    Shapes::append(*withFlippedPart, *small);
    EXPECT_FALSE(analyzeMesh(*withFlippedPart).solid);
}

TEST(MeshAnalysisTests, PointsThatNoTriangleUsesDoNotMatter)
{
    auto mesh = Shapes::makeCube();
    mesh->points.emplace_back(100, 100, 100);
    const MeshAnalysis analysis = analyzeMesh(*mesh);
    EXPECT_TRUE(analysis.solid);
    EXPECT_TRUE(analysis.box.isApprox(Box3f(Vector3f::Constant(-1), Vector3f::Constant(1))));
}

TEST(MeshAnalysisTests, AnEmptyMeshHasNoClustersAndIsNotSolid)
{
    const MeshAnalysis analysis = analyzeMesh(Mesh{});
    EXPECT_TRUE(analysis.clusters.empty());
    EXPECT_FALSE(analysis.solid);
    EXPECT_TRUE(analysis.box.isEmpty());
}

TEST(MeshAnalysisTests, ClustersHoldAllTrianglesWithTheirPlacesAndNormals)
{
    const auto mesh = Shapes::makeSphere(120);
    const MeshAnalysis analysis = analyzeMesh(*mesh);
    ASSERT_GT(analysis.clusters.size(), 2U);
    constexpr float rounding = 1e-6F;
    std::uint32_t next = 0;
    for (const MeshCluster& cluster : analysis.clusters)
    {
        ASSERT_EQ(cluster.firstTriangle, next);
        next += cluster.triangleCount;
        for (std::uint32_t i = cluster.firstTriangle; i < next; ++i)
        {
            const Triangle& t = mesh->triangles[i];
            const Vector3f normal = shapeOf(mesh->points[t[0]], mesh->points[t[1]], mesh->points[t[2]]).normal;
            ASSERT_LT(cluster.normals.exteriorDistance(normal), rounding);
            for (int k = 0; k < 3; ++k)
                ASSERT_TRUE(cluster.box.contains(mesh->points[t[k]]));
        }
    }
    EXPECT_EQ(next, mesh->triangles.size());
}

TEST(MeshAnalysisTests, NormalsOfASpherePointOutwards)
{
    const auto mesh = Shapes::makeSphere(40);
    const MeshAnalysis analysis = analyzeMesh(*mesh);
    for (std::uint32_t i = 0; i < mesh->points.size(); ++i)
        ASSERT_LT((analysis.normalSums->sum(i).normalized() - mesh->points[i]).norm(), 0.01F) << i;
}

TEST(MeshAnalysisTests, NormalsAreWeightedByAngleNotByTheNumberOfTriangles)
{
    // At a corner of the cube one face has two triangles and the others one or two: each face still counts the same.
    const auto mesh = Shapes::makeCube();
    const MeshAnalysis analysis = analyzeMesh(*mesh);
    for (std::uint32_t i = 0; i < 8; ++i)
        EXPECT_LT((analysis.normalSums->sum(i).normalized() - mesh->points[i].normalized()).norm(), 0.001F) << i;
}

TEST(MeshAnalysisTests, TinyAndDegenerateTrianglesKeepTheirPlace)
{
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1e-12F, 0, 0}, {0, 1e-12F, 0}};
    mesh.triangles = {{0, 1, 2}, {0, 0, 1}};
    const MeshAnalysis analysis = analyzeMesh(mesh);
    EXPECT_LT((analysis.normalSums->sum(0).normalized() - Vector3f::UnitZ()).norm(), 0.001F);
    EXPECT_EQ(analysis.clusters.front().triangleCount, 2U);
}

TEST(MeshAnalysisTests, AMeshWithNormalsKeepsThem)
{
    auto mesh = Shapes::makeCube();
    mesh->normals.assign(8, Vector3f::UnitX());
    EXPECT_FALSE(analyzeMesh(*mesh).normalSums);
}

TEST(NormalSumsTests, AddsUpWhateverTheSigns)
{
    NormalSums sums(1);
    sums.add(0, {-1, 0, 0}, 1);
    sums.add(0, {0, -1, 0}, 2);
    sums.add(0, {0, 0, 1}, 3);
    sums.add(0, {0, 1, 0}, 0.5F);
    EXPECT_LT((sums.sum(0) - Vector3f(-1, -1.5F, 3)).norm(), 0.001F);
}

TEST(NormalSumsTests, AnEmptySumIsShownAsUp)
{
    const OctahedralNormal normal = encodeNormal(NormalSums(1).sum(0));
    EXPECT_EQ(normal.x, 0);
    EXPECT_EQ(normal.y, 0);
}

TEST(FastAcosTests, IsExactEnough)
{
    for (float cosine = -1; cosine <= 1; cosine += 0.001F)
        ASSERT_NEAR(fastAcos<1>(Lanes<1>::Constant(cosine))[0], std::acos(cosine), 0.0002F) << cosine;
}

} // namespace VX
