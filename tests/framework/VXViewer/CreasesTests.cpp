#include "render/Creases.h"

#include "RenderShapes.h"
#include "render/MeshAnalysis.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace VX
{

namespace
{

Creases creasesOf(const Mesh& mesh)
{
    return findCreases(mesh, *analyzeMesh(mesh).normalSums);
}

std::set<std::pair<std::uint32_t, std::uint32_t>> sorted(const std::vector<Segment>& edges)
{
    std::set<std::pair<std::uint32_t, std::uint32_t>> result;
    for (const Segment& edge : edges)
        result.emplace(std::min(edge[0], edge[1]), std::max(edge[0], edge[1]));
    return result;
}

/// The normal that each corner of each triangle is drawn with.
std::map<std::pair<std::size_t, int>, Vector3f> cornerNormals(const Mesh& mesh, const Creases& creases)
{
    const MeshAnalysis analysis = analyzeMesh(mesh);
    std::vector<Vector3f> normals;
    for (std::uint32_t i = 0; i < mesh.points.size(); ++i)
        normals.push_back(analysis.normalSums->sum(i));
    for (const Creases::Vertex& vertex : creases.changed)
        normals[vertex.point] = vertex.normal;
    std::map<std::pair<std::size_t, int>, Vector3f> result;
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i)
    {
        for (int k = 0; k < 3; ++k)
            result[{i, k}] = normals[mesh.triangles[i][k]].normalized();
    }
    for (const Creases::Patch& patch : creases.patches)
    {
        const Creases::Vertex& vertex = creases.added.at(patch.vertex);
        EXPECT_EQ(vertex.point, mesh.triangles[patch.corner / 3][patch.corner % 3]);
        result[{patch.corner / 3, static_cast<int>(patch.corner % 3)}] = vertex.normal.normalized();
    }
    return result;
}

} // namespace

TEST(CreasesTests, ACubeHasItsTwelveEdgesAndNoDiagonals)
{
    const auto edges = creasesOf(*Shapes::makeCube()).edges;
    EXPECT_EQ(edges.size(), 12U);
    EXPECT_EQ(sorted(edges),
              (std::set<std::pair<std::uint32_t, std::uint32_t>>{
                  {0, 1}, {0, 2}, {0, 4}, {1, 3}, {1, 5}, {2, 3}, {2, 6}, {3, 7}, {4, 5}, {4, 6}, {5, 7}, {6, 7}}));
}

TEST(CreasesTests, EachCornerOfACubeIsShadedLikeItsFace)
{
    const auto mesh = Shapes::makeCube();
    const Creases creases = creasesOf(*mesh);
    EXPECT_EQ(creases.added.size(), 16U);
    for (const auto& [corner, normal] : cornerNormals(*mesh, creases))
    {
        const Triangle& t = mesh->triangles[corner.first];
        const Vector3f face = shapeOf(mesh->points[t[0]], mesh->points[t[1]], mesh->points[t[2]]).normal;
        EXPECT_LT((normal - face).norm(), 0.001F) << corner.first << " " << corner.second;
    }
}

TEST(CreasesTests, ARoundSurfaceIsLeftAlone)
{
    const Creases creases = creasesOf(*Shapes::makeSphere(30));
    EXPECT_TRUE(creases.edges.empty());
    EXPECT_TRUE(creases.changed.empty());
    EXPECT_TRUE(creases.added.empty());
    EXPECT_TRUE(creases.patches.empty());
}

TEST(CreasesTests, AnOpenBorderIsAnEdge)
{
    const auto edges = sorted(creasesOf(*Shapes::makeSquare()).edges);
    EXPECT_EQ(edges, (std::set<std::pair<std::uint32_t, std::uint32_t>>{{0, 1}, {0, 3}, {1, 2}, {2, 3}}));
}

TEST(CreasesTests, AFoldBelowTheLimitIsSmooth)
{
    for (const auto& [degrees, edgeCount] : {std::pair(30.0, 6U), std::pair(36.0, 7U)})
    {
        // Two squares that share an edge, one turned about it.
        Mesh mesh;
        const double angle = degrees * std::numbers::pi / 180;
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
        for (const float x : {1.0F, 0.0F})
            mesh.points.emplace_back(x, 1 + static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)));
        mesh.triangles = {{0, 1, 2}, {0, 2, 3}, {3, 2, 4}, {3, 4, 5}};
        EXPECT_EQ(creasesOf(mesh).edges.size(), edgeCount) << degrees;
    }
}

TEST(CreasesTests, ASingleSharpEdgeInARoundSurfaceIsNoise)
{
    auto mesh = Shapes::makeSphere(30);
    mesh->points[400] *= 1.06F;
    const Creases creases = creasesOf(*mesh);
    EXPECT_TRUE(creases.edges.empty());
    EXPECT_TRUE(creases.patches.empty());
}

TEST(CreasesTests, TheResultDoesNotDependOnTheRun)
{
    // Many parts, so that several threads have work.
    Mesh mesh;
    for (int i = 0; i < 1000; ++i)
        Shapes::append(mesh, *Shapes::makeCube({static_cast<float>(i) * 3, 0, 0}));
    const Creases first = creasesOf(mesh);
    const Creases second = creasesOf(mesh);
    EXPECT_EQ(first.edges.size(), 12000U);
    ASSERT_EQ(first.patches.size(), second.patches.size());
    for (std::size_t i = 0; i < first.patches.size(); ++i)
    {
        ASSERT_EQ(first.patches[i].corner, second.patches[i].corner);
        ASSERT_EQ(first.patches[i].vertex, second.patches[i].vertex);
    }
}

} // namespace VX
