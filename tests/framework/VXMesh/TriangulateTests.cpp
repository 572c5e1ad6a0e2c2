#include "formats/Triangulate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace VX
{

namespace
{

std::vector<Triangle> cut(const std::vector<Vector3d>& corners)
{
    std::vector<Triangle> triangles(corners.size() - 2);
    triangulatePolygon(corners, triangles);
    return triangles;
}

/// Twice the area of a polygon in the plane z = 0.
double twiceArea(const std::vector<Vector3d>& corners)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
        sum += corners[i].cross(corners[(i + 1) % corners.size()]).z();
    return sum;
}

/// All triangles turn as the polygon does, and together they cover it once.
void expectCovered(const std::vector<Vector3d>& corners)
{
    const double expected = twiceArea(corners);
    double sum = 0.0;
    for (const Triangle& triangle : cut(corners))
    {
        const double area = twiceArea({corners[triangle[0]], corners[triangle[1]], corners[triangle[2]]});
        EXPECT_GE(area * expected, 0.0);
        sum += area;
    }
    EXPECT_NEAR(sum, expected, 1e-9 * std::abs(expected));
}

} // namespace

TEST(Triangulate, ConvexPolygonBecomesAFan)
{
    const std::vector<Vector3d> pentagon = {{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}};
    EXPECT_EQ(cut(pentagon), (std::vector{Triangle(0, 1, 2), Triangle(0, 2, 3), Triangle(0, 3, 4)}));
}

TEST(Triangulate, ConcaveQuadIsCutAtItsInnerCorner)
{
    const std::vector<Vector3d> arrow = {{0, 0, 0}, {2, 2, 0}, {0, 1, 0}, {-2, 2, 0}};
    expectCovered(arrow);
    std::vector<Vector3d> turned = arrow;
    std::ranges::rotate(turned, turned.begin() + 1);
    expectCovered(turned);
    std::ranges::reverse(turned);
    expectCovered(turned);
}

TEST(Triangulate, CombIsCovered)
{
    std::vector<Vector3d> comb = {{0, 0, 0}, {20, 0, 0}};
    for (int tooth = 9; tooth >= 0; --tooth)
    {
        comb.emplace_back(2.0 * tooth + 1.5, 10.0, 0.0);
        comb.emplace_back(2.0 * tooth + 0.5, 1.0, 0.0);
    }
    expectCovered(comb);
}

TEST(Triangulate, StarIsCovered)
{
    std::vector<Vector3d> star;
    for (int i = 0; i < 100; ++i)
    {
        const double angle = 2.0 * std::numbers::pi * i / 100.0;
        star.push_back(Vector3d(std::cos(angle), std::sin(angle), 0.0) * (i % 2 == 0 ? 1.0 : 0.2));
    }
    expectCovered(star);
}

TEST(Triangulate, PolygonWithABridgeToItsHoleIsCovered)
{
    expectCovered(
        {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}, {1, 1, 0}, {1, 3, 0}, {3, 3, 0}, {3, 1, 0}, {1, 1, 0}});
}

TEST(Triangulate, DegeneratePolygonsGiveTheirNumberOfTriangles)
{
    const std::vector<Vector3d> point(7, Vector3d(1, 2, 3));
    EXPECT_EQ(cut(point).size(), 5U);
    std::vector<Vector3d> line;
    for (int i = 0; i < 6; ++i)
        line.emplace_back(i % 4, 0.0, 0.0);
    for (const Triangle& triangle : cut(line))
        EXPECT_LT(triangle.maxCoeff(), 6U);
    const std::vector<Vector3d> crossed = {{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}, {0.5, 3, 0}};
    for (const Triangle& triangle : cut(crossed))
        EXPECT_LT(triangle.maxCoeff(), 5U);
}

} // namespace VX
