#include <gmock/gmock.h>

#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <TopExp_Explorer.hxx>
#include <backend/convert/SolidGeometry.h>
#include <backend/convert/StepTessellation.h>
#include <gp_Pln.hxx>
#include <gp_Trsf.hxx>

#include <array>
#include <cmath>

namespace VX
{

namespace
{

using testing::IsEmpty;
using testing::SizeIs;

constexpr Color red{255, 0, 0};
constexpr Color blue{0, 0, 255};

StepSolid solidOf(const TopoDS_Shape& shape)
{
    StepSolid solid;
    solid.shape.shape = shape;
    return solid;
}

std::optional<BodyGeometry> bodyOf(StepSolid solid)
{
    std::array solids{std::move(solid)};
    healStepSolids(solids);
    const std::array<const StepSolid*, 1> part{solids.data()};
    const TessellationTask task{solids.data(), diagonalOf(part)};
    tessellateStepSolids({&task, 1});
    return makeSolidGeometry(part);
}

BodyGeometry bodyOf(const TopoDS_Shape& shape)
{
    return bodyOf(solidOf(shape)).value_or(BodyGeometry{std::make_shared<Mesh>(), std::make_shared<Lines>()});
}

double lengthOf(const Lines& lines)
{
    double length = 0;
    for (const Segment& segment : lines.segments)
        length += (lines.points[segment[1]] - lines.points[segment[0]]).norm();
    return length;
}

/// Six times the volume that the triangles enclose; positive when they are seen from outside.
double volumeOf(const Mesh& mesh)
{
    double sum = 0;
    for (const Triangle& t : mesh.triangles)
        sum += mesh.points[t[0]].cross(mesh.points[t[1]]).dot(mesh.points[t[2]]);
    return sum / 6;
}

TEST(SolidGeometry, MeshesABoxWithFlatSidesAndTwelveEdges)
{
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeBox(10, 20, 30).Shape());
    EXPECT_THAT(body.mesh->points, SizeIs(24));
    EXPECT_THAT(body.mesh->triangles, SizeIs(12));
    EXPECT_NEAR(volumeOf(*body.mesh), 6000, 1e-3);
    for (const Triangle& triangle : body.mesh->triangles)
    {
        const Vector3f& a = body.mesh->points[triangle[0]];
        const Vector3f normal =
            (body.mesh->points[triangle[1]] - a).cross(body.mesh->points[triangle[2]] - a).normalized();
        for (const std::uint32_t corner : {triangle[0], triangle[1], triangle[2]})
            EXPECT_TRUE(body.mesh->normals[corner].isApprox(normal, 1e-5F));
    }
    ASSERT_TRUE(body.edges);
    EXPECT_THAT(body.edges->segments, SizeIs(12));
    EXPECT_NEAR(lengthOf(*body.edges), 4 * (10 + 20 + 30), 1e-3);
}

TEST(SolidGeometry, LeavesTheSeamOfACylinderOut)
{
    constexpr double radius = 10;
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeCylinder(radius, 40).Shape());
    ASSERT_TRUE(body.edges);
    EXPECT_NEAR(lengthOf(*body.edges), 4 * M_PI * radius, 4 * M_PI * radius * 0.01);
    EXPECT_NEAR(volumeOf(*body.mesh), M_PI * radius * radius * 40, 0.02 * M_PI * radius * radius * 40);
}

TEST(SolidGeometry, TakesNormalsFromTheSurface)
{
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeSphere(5).Shape());
    ASSERT_THAT(body.mesh->points, SizeIs(body.mesh->normals.size()));
    for (std::size_t k = 0; k < body.mesh->points.size(); ++k)
        EXPECT_GT(body.mesh->normals[k].dot(body.mesh->points[k].normalized()), 0.999F);
    EXPECT_FALSE(body.edges);
}

TEST(SolidGeometry, GivesTheTipOfAConeANormal)
{
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeCone(5, 0, 10).Shape());
    for (const Vector3f& normal : body.mesh->normals)
        EXPECT_NEAR(normal.norm(), 1, 1e-4);
    ASSERT_TRUE(body.edges);
    EXPECT_NEAR(lengthOf(*body.edges), 2 * M_PI * 5, 0.5);
}

TEST(SolidGeometry, StaysWithinTheTolerances)
{
    constexpr double radius = 100;
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeCylinder(radius, 1).Shape());
    const double chord = chordTolerance * std::sqrt(8 * radius * radius + 1);
    const auto fromAxis = [&](const Vector3f& point) { return point.head<2>().norm(); };
    for (const Segment& segment : body.edges->segments)
    {
        const Vector3f& a = body.edges->points[segment[0]];
        const Vector3f& b = body.edges->points[segment[1]];
        EXPECT_LE(radius - fromAxis((a + b) / 2), chord * 1.01);
        EXPECT_LE(std::acos(a.head<2>().normalized().dot(b.head<2>().normalized())), angleTolerance * 1.01);
    }
}

TEST(SolidGeometry, ColoursFacesThatDiffer)
{
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(1, 1, 1).Shape();
    StepSolid solid = solidOf(box);
    solid.color = blue;
    solid.faceColors.emplace_back(TopExp_Explorer(box, TopAbs_FACE).Current(), red);
    const auto body = bodyOf(std::move(solid));
    ASSERT_TRUE(body);
    ASSERT_THAT(body->mesh->faceColors, SizeIs(12));
    EXPECT_EQ(std::ranges::count(body->mesh->faceColors, red), 2);
    EXPECT_EQ(std::ranges::count(body->mesh->faceColors, blue), 10);
    EXPECT_EQ(body->color, blue);
}

TEST(SolidGeometry, KeepsOneColourOffTheMesh)
{
    StepSolid solid = solidOf(BRepPrimAPI_MakeBox(1, 1, 1).Shape());
    solid.color = blue;
    const auto body = bodyOf(std::move(solid));
    ASSERT_TRUE(body);
    EXPECT_THAT(body->mesh->faceColors, IsEmpty());
    EXPECT_EQ(body->color, blue);
}

TEST(SolidGeometry, TurnsMirroredShapesTheRightWayOut)
{
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0)));
    const BodyGeometry body = bodyOf(BRepBuilderAPI_Transform(BRepPrimAPI_MakeBox(1, 2, 3).Shape(), mirror).Shape());
    EXPECT_NEAR(volumeOf(*body.mesh), 6, 1e-4);
}

TEST(SolidGeometry, KeepsTheDetailOfShapesFarAway)
{
    gp_Trsf far;
    far.SetTranslation(gp_Vec(1e7, 0, 0));
    const BodyGeometry body = bodyOf(BRepPrimAPI_MakeBox(0.5, 0.5, 0.5).Shape().Moved(TopLoc_Location(far)));
    Box3d box;
    for (const Vector3f& point : body.mesh->points)
        box.extend(point.cast<double>() + body.offset);
    EXPECT_NEAR(box.min().x(), 1e7, 1e-6);
    EXPECT_NEAR(box.max().x(), 1e7 + 0.5, 1e-6);
}

TEST(SolidGeometry, DrawsTheBoundaryOfAnOpenSurface)
{
    const BodyGeometry body = bodyOf(BRepBuilderAPI_MakeFace(gp_Pln(), 0, 2, 0, 3).Face());
    ASSERT_TRUE(body.edges);
    EXPECT_NEAR(lengthOf(*body.edges), 10, 1e-4);
}

TEST(SolidGeometry, HasNoBodyWithoutAShape)
{
    EXPECT_FALSE(bodyOf(StepSolid()));
    const std::array<const StepSolid*, 0> none{};
    EXPECT_FALSE(makeSolidGeometry(none));
    EXPECT_EQ(diagonalOf(none), 0);
}

} // namespace

} // namespace VX
