#include "StepTextBuilder.h"

#include <gtest/gtest.h>

#include <backend/convert/StepPlacement.h>
#include <backend/convert/StepScanner.h>
#include <backend/convert/StepUnits.h>

#include <string>

namespace VX
{

namespace
{

struct Placed
{
    Placed(std::string_view data, StepId id, double unit = 1)
        : text(Test::stepFileText(data))
        , file(scanStepFile(text).value_or(StepFile()))
        , transform(stepPlacement(file, file.find(id), unit))
    {
    }

    [[nodiscard]] Vector3d apply(const Vector3d& point) const
    {
        return transform ? Vector3d(*transform * point) : Vector3d(Vector3d::Constant(1e9));
    }

    std::string text;
    StepFile file;
    std::optional<Transform> transform;
};

double unitOf(const std::string& unit)
{
    Test::StepTextBuilder builder;
    const int context = builder.context(unit);
    const std::string text = builder.text();
    const StepFile file = scanStepFile(text).value_or(StepFile());
    return stepLengthUnit(file, file.find(static_cast<StepId>(context)));
}

double unitOfContext(const std::string& data)
{
    const std::string text = Test::stepFileText(data);
    const StepFile file = scanStepFile(text).value_or(StepFile());
    return stepLengthUnit(file, file.find(1));
}

TEST(StepPlacement, PlacesAxes)
{
    const Placed placed("#1=AXIS2_PLACEMENT_3D('',#2,#3,#4);#2=CARTESIAN_POINT('',(1.,2.,3.));"
                        "#3=DIRECTION('',(1.,0.,0.));#4=DIRECTION('',(0.,2.,0.));",
                        1, 10);
    EXPECT_TRUE(placed.apply({0, 0, 0}).isApprox(Vector3d(10, 20, 30)));
    EXPECT_TRUE(placed.apply({0, 0, 1}).isApprox(Vector3d(11, 20, 30)));
    EXPECT_TRUE(placed.apply({1, 0, 0}).isApprox(Vector3d(10, 21, 30)));
    EXPECT_TRUE(placed.apply({0, 1, 0}).isApprox(Vector3d(10, 20, 31)));
}

TEST(StepPlacement, MakesTheFirstAxisPerpendicularAndFillsInWhatIsUnset)
{
    const Placed slanted("#1=AXIS2_PLACEMENT_3D('',#2,$,#4);#2=CARTESIAN_POINT('',(0.,0.,0.));"
                         "#4=DIRECTION('',(1.,0.,1.));",
                         1);
    EXPECT_TRUE(slanted.transform->isApprox(Transform::Identity()));
    const Placed parallel("#1=AXIS2_PLACEMENT_3D('',#2,#3,#3);#2=CARTESIAN_POINT('',(0.,0.,0.));"
                          "#3=DIRECTION('',(0.,0.,1.));",
                          1);
    EXPECT_TRUE(parallel.transform->linear().isUnitary());
}

TEST(StepPlacement, ScalesAndMirrors)
{
    const Placed placed("#1=CARTESIAN_TRANSFORMATION_OPERATOR_3D('',$,$,$,#5,#2,2.,$);"
                        "#2=CARTESIAN_POINT('',(1.,0.,0.));#5=DIRECTION('',(0.,-1.,0.));",
                        1);
    EXPECT_TRUE(placed.apply({1, 1, 1}).isApprox(Vector3d(3, -2, 2)));
}

TEST(StepPlacement, GivesNothingForDamagedPlacements)
{
    EXPECT_FALSE(Placed("#1=AXIS2_PLACEMENT_3D('',#2,$,$);", 1).transform);
    EXPECT_FALSE(Placed("#1=AXIS2_PLACEMENT_3D('',#2,$,$);#2=CARTESIAN_POINT('',());", 1).transform);
    EXPECT_FALSE(Placed("#1=AXIS2_PLACEMENT_3D('',#1,$,$);", 1).transform);
    EXPECT_FALSE(Placed("#1=LINE('',#1);", 1).transform);
    EXPECT_FALSE(Placed("#1=LINE('',#1);", 9).transform);
}

TEST(StepUnits, KnowsMetricUnitsAndInches)
{
    EXPECT_DOUBLE_EQ(unitOf("MILLI"), 1);
    EXPECT_DOUBLE_EQ(unitOf("CENTI"), 10);
    EXPECT_DOUBLE_EQ(unitOf(""), 1000);
    EXPECT_DOUBLE_EQ(unitOf("MICRO"), 0.001);
    EXPECT_DOUBLE_EQ(unitOf("INCH"), 25.4);
}

TEST(StepUnits, FollowsUnitsThatAreBasedOnOthers)
{
    EXPECT_DOUBLE_EQ(unitOfContext("#1=(GLOBAL_UNIT_ASSIGNED_CONTEXT((#2))REPRESENTATION_CONTEXT('',''));"
                                   "#2=(CONVERSION_BASED_UNIT('FOOT',#3)LENGTH_UNIT()NAMED_UNIT(*));"
                                   "#3=(LENGTH_MEASURE_WITH_UNIT()MEASURE_WITH_UNIT(LENGTH_MEASURE(12.),#4));"
                                   "#4=(CONVERSION_BASED_UNIT('INCH',#5)LENGTH_UNIT()NAMED_UNIT(*));"
                                   "#5=MEASURE_WITH_UNIT(LENGTH_MEASURE(0.0254),#6);"
                                   "#6=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT($,.METRE.));"),
                     304.8);
}

TEST(StepUnits, TakesMillimetresWhereUnitsAreMissingOrDamaged)
{
    EXPECT_DOUBLE_EQ(unitOfContext("#1=REPRESENTATION_CONTEXT('','');"), 1);
    EXPECT_DOUBLE_EQ(unitOfContext("#2=A();"), 1);
    EXPECT_DOUBLE_EQ(unitOfContext("#1=(GLOBAL_UNIT_ASSIGNED_CONTEXT((#2)));"
                                   "#2=(CONVERSION_BASED_UNIT('X',#3)LENGTH_UNIT());#3=MEASURE_WITH_UNIT(2.,#2);"),
                     1);
    EXPECT_DOUBLE_EQ(unitOfContext("#1=(GLOBAL_UNIT_ASSIGNED_CONTEXT((#2)));"
                                   "#2=(CONVERSION_BASED_UNIT('X',#3)LENGTH_UNIT());#3=MEASURE_WITH_UNIT(0.,#4);"
                                   "#4=(LENGTH_UNIT()SI_UNIT($,.METRE.));"),
                     1);
}

} // namespace

} // namespace VX
