#include "StepTextBuilder.h"

#include <gmock/gmock.h>

#include <backend/convert/StepScanner.h>
#include <backend/convert/TessellatedGeometry.h>
#include <backend/convert/TriangulatedFace.h>

#include <string>

namespace VX
{

namespace
{

using Test::ref;
using Test::refs;
using Test::StepTextBuilder;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Corner coordinates of each triangle.
using Corners = std::vector<std::array<Vector3d, 3>>;

Corners cornersOf(const TriangulatedFace& face)
{
    Corners corners;
    for (const Triangle& triangle : face.triangles)
        corners.push_back({face.points[triangle[0]], face.points[triangle[1]], face.points[triangle[2]]});
    return corners;
}

constexpr const char* fivePoints =
    "#1=COORDINATES_LIST('',5,((0.,0.,0.),(1.,0.,0.),(0.,1.,0.),(1.,1.,0.),(0.,2.,0.)));";
const Vector3d p1(0, 0, 0);
const Vector3d p2(1, 0, 0);
const Vector3d p3(0, 1, 0);
const Vector3d p4(1, 1, 0);
const Vector3d p5(0, 2, 0);

TriangulatedFace readFace(const std::string& entity)
{
    const std::string text = Test::stepFileText(fivePoints + ("#2=" + entity + ";"));
    const StepFile file = scanStepFile(text).value_or(StepFile());
    const StepIndex face = file.find(2);
    return readTriangulatedFace(file, face, readCoordinatesList(file, coordinatesListOf(file, face)));
}

TEST(TriangulatedFace, ReadsTriangles)
{
    const TriangulatedFace face = readFace("TRIANGULATED_FACE('',#1,5,(),$,(),((1,2,3),(3,2,4)))");
    EXPECT_EQ(cornersOf(face), (Corners{{p1, p2, p3}, {p3, p2, p4}}));
    EXPECT_THAT(face.points, SizeIs(4));
    EXPECT_THAT(face.normals, IsEmpty());
}

TEST(TriangulatedFace, FindsPointsThroughItsIndices)
{
    EXPECT_EQ(cornersOf(readFace("TRIANGULATED_FACE('',#1,3,(),$,(5,4,3),((1,2,3)))")), (Corners{{p5, p4, p3}}));
}

TEST(TriangulatedFace, TurnsEveryOtherTriangleOfAStrip)
{
    EXPECT_EQ(cornersOf(readFace("COMPLEX_TRIANGULATED_FACE('',#1,5,(),$,(),((1,2,3,4,5)),())")),
              (Corners{{p1, p2, p3}, {p3, p2, p4}, {p3, p4, p5}}));
}

TEST(TriangulatedFace, ReadsFansBehindStrips)
{
    EXPECT_EQ(cornersOf(readFace("COMPLEX_TRIANGULATED_FACE('',#1,5,(),$,(),((1,2,3)),((1,2,4,5),(3,4,5)))")),
              (Corners{{p1, p2, p3}, {p1, p2, p4}, {p1, p4, p5}, {p3, p4, p5}}));
}

TEST(TriangulatedFace, ReadsOneNormalForEachPointOrOneForAll)
{
    const TriangulatedFace each =
        readFace("TRIANGULATED_FACE('',#1,3,((1.,0.,0.),(0.,3.,0.),(0.,0.,-1.)),$,(),((1,2,3)))");
    EXPECT_THAT(each.normals,
                ElementsAre(Vector3f(Vector3f::UnitX()), Vector3f(Vector3f::UnitY()), Vector3f(-Vector3f::UnitZ())));
    const TriangulatedFace one = readFace("TRIANGULATED_FACE('',#1,3,((0.,1.,0.)),$,(),((1,2,3)))");
    EXPECT_THAT(one.normals, Each(Vector3f(Vector3f::UnitY())));
}

TEST(TriangulatedFace, CompletesNormalsThatAreMissing)
{
    const TriangulatedFace face = readFace("TRIANGULATED_FACE('',#1,3,((1.,0.,0.),(0.,0.,0.)),$,(),((1,2,3)))");
    EXPECT_THAT(face.normals,
                ElementsAre(Vector3f(Vector3f::UnitX()), Vector3f(Vector3f::UnitZ()), Vector3f(Vector3f::UnitZ())));
}

TEST(TriangulatedFace, LeavesOutTrianglesThatReferToNothing)
{
    EXPECT_EQ(cornersOf(readFace("TRIANGULATED_FACE('',#1,5,(),$,(),((1,2,6),(0,1,2),(1,1,2),(1,2,-3),(1,2),(1,2,3,4),"
                                 "(1,2,99999999999),(1.5,2,3),(1,2,3)))")),
              (Corners{{p1, p2, p3}}));
    EXPECT_EQ(cornersOf(readFace("TRIANGULATED_FACE('',#1,3,(),$,(1,2,9),((1,2,3),(1,2,4)))")), Corners());
    EXPECT_EQ(cornersOf(readFace("TRIANGULATED_FACE('',#9,3,(),$,(),((1,2,3)))")), Corners());
    EXPECT_EQ(cornersOf(readFace("TRIANGULATED_FACE('')")), Corners());
}

/// The body that the items of a file make up.
std::optional<BodyGeometry> bodyOf(const StepTextBuilder& step, const std::vector<std::pair<int, int>>& itemContexts)
{
    const std::string text = step.text();
    const StepFile file = scanStepFile(text).value_or(StepFile());
    std::vector<StepItem> items;
    for (const auto& [item, context] : itemContexts)
        items.push_back(
            {file.find(static_cast<StepId>(item)), noStepInstance, file.find(static_cast<StepId>(context))});
    return readTessellatedBody(file, StepStyles(file), items);
}

TEST(TessellatedGeometry, JoinsTheFacesOfASolidInMillimetres)
{
    StepTextBuilder step;
    const int context = step.context("INCH");
    const int solid = step.tetrahedron("", 2);
    const auto inches = bodyOf(step, {{solid, context}});
    ASSERT_TRUE(inches);
    EXPECT_THAT(inches->mesh->triangles, SizeIs(4));
    EXPECT_THAT(inches->mesh->points, SizeIs(12));
    Box3f box;
    for (const Vector3f& point : inches->mesh->points)
        box.extend(point);
    EXPECT_TRUE(box.max().isApprox(Vector3f::Constant(50.8F)));
    EXPECT_THAT(inches->mesh->normals, IsEmpty());
}

TEST(TessellatedGeometry, GivesFacesTheirColours)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    step.styledItem(step.surfaceStyle(0, 0, 1), solid);
    step.styledItem(step.surfaceStyle(1, 0, 0), step.faces()[1]);
    const auto body = bodyOf(step, {{solid, 0}});
    ASSERT_TRUE(body);
    const Color red{255, 0, 0};
    const Color blue{0, 0, 255};
    EXPECT_THAT(body->mesh->faceColors, ElementsAre(blue, red, blue, blue));
    EXPECT_EQ(body->color, blue);
}

TEST(TessellatedGeometry, KeepsOneColourForAllFacesOffTheMesh)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    step.styledItem(step.surfaceStyle(1, 0, 0), solid);
    const auto body = bodyOf(step, {{solid, 0}});
    ASSERT_TRUE(body);
    EXPECT_THAT(body->mesh->faceColors, IsEmpty());
    EXPECT_EQ(body->color, (Color{255, 0, 0}));
}

TEST(TessellatedGeometry, JoinsSeveralItemsAndReadsFacesOnTheirOwn)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    static_cast<void>(step.tetrahedron(""));
    const int shell = step.add("TESSELLATED_SHELL('',(" + ref(step.faces()[0]) + "),$)");
    const auto body = bodyOf(step, {{solid, 0}, {shell, 0}, {step.faces()[3], 0}});
    ASSERT_TRUE(body);
    EXPECT_THAT(body->mesh->triangles, SizeIs(6));
}

TEST(TessellatedGeometry, ReadsAFaceOnceHoweverOftenItIsNamed)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int again = step.add("TESSELLATED_SHELL(''," + refs({step.faces()[0], step.faces()[0]}) + ",$)");
    const auto body = bodyOf(step, {{solid, 0}, {again, 0}});
    ASSERT_TRUE(body);
    EXPECT_THAT(body->mesh->triangles, SizeIs(4));
}

TEST(TessellatedGeometry, KeepsTheDetailOfBodiesFarAway)
{
    StepTextBuilder step;
    const int points = step.add("COORDINATES_LIST('',3,((1.0E7,0.,0.),(10000000.01,0.,0.),(1.0E7,0.01,0.)))");
    const int face = step.add("TRIANGULATED_FACE('',#" + std::to_string(points) + ",3,(),$,(),((1,2,3)))");
    const auto body = bodyOf(step, {{face, 0}});
    ASSERT_TRUE(body);
    EXPECT_NEAR(body->mesh->points[1].x() - body->mesh->points[0].x(), 0.01, 1e-6);
    EXPECT_NEAR(body->offset.x() + body->mesh->points[0].x(), 1e7, 1e-6);
}

TEST(TessellatedGeometry, HasNoBodyWithoutATriangleOrBeyondAllNumbers)
{
    StepTextBuilder step;
    const int empty = step.add("TESSELLATED_SOLID('',(),$)");
    const int points = step.add("COORDINATES_LIST('',3,((0.,0.,0.),(1.E300,0.,0.),(0.,1.,0.)))");
    const int face = step.add("TRIANGULATED_FACE('',#" + std::to_string(points) + ",3,(),$,(),((1,2,3)))");
    EXPECT_FALSE(bodyOf(step, {{empty, 0}}));
    EXPECT_FALSE(bodyOf(step, {{face, 0}}));
}

} // namespace

} // namespace VX
