#include <gtest/gtest.h>

#include <backend/convert/StepGeometryTypes.h>

namespace VX
{

namespace
{

TEST(StepGeometryTypes, TellsReferencesApartByTheirOrder)
{
    EXPECT_TRUE(mayReferTo("LINE"_step, 0, 2, "CARTESIAN_POINT"_step));
    EXPECT_TRUE(mayReferTo("LINE"_step, 1, 2, "VECTOR"_step));
    EXPECT_FALSE(mayReferTo("LINE"_step, 0, 2, "VECTOR"_step));
    EXPECT_FALSE(mayReferTo("LINE"_step, 1, 2, "CARTESIAN_POINT"_step));
}

TEST(StepGeometryTypes, TakesTheLastNeedForAllFurtherReferences)
{
    EXPECT_TRUE(mayReferTo("POLYLINE"_step, 17, 20, "CARTESIAN_POINT"_step));
    EXPECT_FALSE(mayReferTo("POLYLINE"_step, 17, 20, "VERTEX_POINT"_step));
}

TEST(StepGeometryTypes, KnowsTheSurfaceOfAFaceByItsPlaceAtTheEnd)
{
    for (const std::size_t bounds : {std::size_t{1}, std::size_t{5}})
    {
        EXPECT_TRUE(mayReferTo("ADVANCED_FACE"_step, bounds, bounds + 1, "PLANE"_step));
        EXPECT_FALSE(mayReferTo("ADVANCED_FACE"_step, bounds, bounds + 1, "FACE_BOUND"_step));
        EXPECT_TRUE(mayReferTo("ADVANCED_FACE"_step, bounds - 1, bounds + 1, "FACE_BOUND"_step));
        EXPECT_FALSE(mayReferTo("ADVANCED_FACE"_step, bounds - 1, bounds + 1, "PLANE"_step));
    }
}

TEST(StepGeometryTypes, TakesOrientedEdgesThatNameTheirVertices)
{
    EXPECT_TRUE(mayReferTo("ORIENTED_EDGE"_step, 0, 1, "EDGE_CURVE"_step));
    EXPECT_TRUE(mayReferTo("ORIENTED_EDGE"_step, 0, 3, "VERTEX_POINT"_step));
    EXPECT_FALSE(mayReferTo("ORIENTED_EDGE"_step, 0, 1, "VERTEX_POINT"_step));
}

TEST(StepGeometryTypes, LetsPassWhatItDoesNotKnow)
{
    EXPECT_TRUE(mayReferTo("SOMETHING_NEW"_step, 0, 1, "PLANE"_step));
    EXPECT_TRUE(mayReferTo("VERTEX_POINT"_step, 0, 1, "POINT_ON_SURFACE"_step));
    EXPECT_TRUE(mayReferTo("EDGE_CURVE"_step, 2, 3, complexStepType));
    EXPECT_TRUE(mayReferTo("PCURVE"_step, 1, 2, "DEFINITIONAL_REPRESENTATION"_step));
}

} // namespace

} // namespace VX
