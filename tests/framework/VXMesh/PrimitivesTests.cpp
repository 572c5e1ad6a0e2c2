#include <VXMesh/PointsBox.h>
#include <VXMesh/Primitives.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <numbers>
#include <set>
#include <utility>

namespace VX
{

namespace
{

/// Every edge has two triangles, which run along it in opposite ways, and every point a triangle.
bool isClosed(const Mesh& mesh)
{
    std::set<std::pair<std::uint32_t, std::uint32_t>> sides;
    std::set<std::uint32_t> points;
    for (const Triangle& t : mesh.triangles)
    {
        for (int k = 0; k < 3; ++k)
        {
            points.insert(t[k]);
            if (!sides.emplace(t[k], t[(k + 1) % 3]).second)
                return false;
        }
    }
    for (const auto& [from, to] : sides)
    {
        if (!sides.contains({to, from}))
            return false;
    }
    return points.size() == mesh.points.size();
}

/// Positive where the triangles of a closed mesh face outwards.
double volumeOf(const Mesh& mesh)
{
    double volume = 0;
    for (const Triangle& t : mesh.triangles)
        volume += mesh.points[t[0]].cast<double>().dot(
                      mesh.points[t[1]].cast<double>().cross(mesh.points[t[2]].cast<double>())) /
                  6;
    return volume;
}

Vector3f sizeOf(const Mesh& mesh)
{
    return computeBox(mesh.points).sizes();
}

constexpr double pi = std::numbers::pi;

} // namespace

TEST(Primitives, CubeHasItsThreeLengths)
{
    const Mesh mesh = makeCube({2, 3, 4});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_DOUBLE_EQ(volumeOf(mesh), 24);
    EXPECT_EQ(sizeOf(mesh), Vector3f(2, 3, 4));
}

TEST(Primitives, CylinderFillsItsVolume)
{
    const Mesh mesh = makeCylinder({2, 5, 200});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), pi * 4 * 5, 0.05);
    EXPECT_TRUE(sizeOf(mesh).isApprox(Vector3f(4, 4, 5)));
}

TEST(Primitives, SphereFillsItsVolume)
{
    const Mesh mesh = makeSphere({3, 200});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), 4.0 / 3 * pi * 27, 0.1);
    EXPECT_TRUE(sizeOf(mesh).isApprox(Vector3f(6, 6, 6)));
}

TEST(Primitives, PrismHasItsSides)
{
    const Mesh mesh = makePrism({2, 3, 4});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), 2.0 * 2 * 2 * 3, 1e-5);
}

TEST(Primitives, TorusFillsItsVolume)
{
    const Mesh mesh = makeTorus({5, 1, 300, 100});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), 2 * pi * pi * 5, 0.1);
    EXPECT_TRUE(sizeOf(mesh).isApprox(Vector3f(12, 12, 2)));
}

TEST(Primitives, ArrowIsAShaftWithAHead)
{
    const Mesh mesh = makeArrow({.length = 10, .shaftRadius = 1, .headLength = 4, .headRadius = 2, .segments = 300});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), pi * 6 + pi * 4 * 4 / 3, 0.05);
    EXPECT_FLOAT_EQ(computeBox(mesh.points).min().z(), 0);
    EXPECT_FLOAT_EQ(computeBox(mesh.points).max().z(), 10);
}

TEST(Primitives, ConeFillsItsVolume)
{
    const Mesh mesh = makeCone({3, 4, 300});
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(volumeOf(mesh), pi * 9 * 4 / 3, 0.05);
}

TEST(Primitives, PlaneFacesUpwards)
{
    const Mesh mesh = makePlane({4, 6});
    EXPECT_EQ(sizeOf(mesh), Vector3f(4, 6, 0));
    for (const Triangle& t : mesh.triangles)
        EXPECT_GT((mesh.points[t[1]] - mesh.points[t[0]]).cross(mesh.points[t[2]] - mesh.points[t[0]]).z(), 0);
}

TEST(Primitives, RoundShapesHaveAtLeastThreeSegments)
{
    EXPECT_TRUE(isClosed(makeCylinder({1, 1, 0})));
    EXPECT_TRUE(isClosed(makeSphere({1, -1})));
    EXPECT_TRUE(isClosed(makeTorus({3, 1, 1, 1})));
}

} // namespace VX
