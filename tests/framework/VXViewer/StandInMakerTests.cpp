#include "render/StandInMaker.h"

#include "RenderShapes.h"

#include <gtest/gtest.h>

namespace VX
{

TEST(StandInMakerTests, MakesAQuarterAndASixteenthOfTheTriangles)
{
    const auto mesh = Shapes::makeSphere(100);
    const auto standIns = makeStandIns(*mesh, mesh->triangles.size());
    ASSERT_EQ(standIns.size(), 2U);
    EXPECT_NEAR(static_cast<double>(standIns[0].triangles.size()) / mesh->triangles.size(), 0.25, 0.05);
    EXPECT_NEAR(static_cast<double>(standIns[1].triangles.size()) / mesh->triangles.size(), 0.0625, 0.02);
}

TEST(StandInMakerTests, KeepsTheSceneInBounds)
{
    const auto mesh = Shapes::makeSphere(100);
    const auto standIns = makeStandIns(*mesh, 100'000'000);
    ASSERT_EQ(standIns.size(), 2U);
    EXPECT_LE(standIns[0].triangles.size(), mesh->triangles.size() / 100);
    EXPECT_LE(standIns[1].triangles.size(), mesh->triangles.size() / 400);
}

TEST(StandInMakerTests, ItsClustersCoverItsTriangles)
{
    const auto mesh = Shapes::makeSphere(100);
    for (const StandIn& standIn : makeStandIns(*mesh, mesh->triangles.size()))
    {
        std::size_t next = 0;
        for (const MeshCluster& cluster : standIn.clusters)
        {
            EXPECT_EQ(cluster.firstTriangle, next);
            next += cluster.triangleCount;
            EXPECT_TRUE(cluster.box.contains(mesh->points[standIn.triangles[cluster.firstTriangle][0]]));
        }
        EXPECT_EQ(next, standIn.triangles.size());
    }
}

TEST(StandInMakerTests, KeepsTheFaceColors)
{
    const auto mesh = Shapes::makeSphere(60);
    for (const Triangle& t : mesh->triangles)
        mesh->faceColors.push_back(mesh->points[t[0]].z() > 0 ? Color{255, 0, 0, 255} : Color{0, 0, 255, 255});
    for (const StandIn& standIn : makeStandIns(*mesh, mesh->triangles.size()))
    {
        ASSERT_EQ(standIn.faceColors.size(), standIn.triangles.size());
        for (std::size_t i = 0; i < standIn.triangles.size(); ++i)
        {
            const float z = mesh->points[standIn.triangles[i][0]].z();
            if (std::abs(z) > 0.1F)
            {
                EXPECT_EQ(standIn.faceColors[i].r, z > 0 ? 255 : 0);
            }
        }
    }
}

} // namespace VX
