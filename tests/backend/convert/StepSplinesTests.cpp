#include "StepTextBuilder.h"

#include <gtest/gtest.h>

#include <backend/convert/StepScanner.h>
#include <backend/convert/StepSplines.h>

#include <string>

namespace VX
{

namespace
{

bool fits(const std::string& instance)
{
    const std::string text = Test::stepFileText("#1=" + instance + ";");
    const StepFile file = scanStepFile(text).value_or(StepFile());
    return hasFittingSplineCounts(file, file.find(1));
}

std::string curve(const std::string& degree, const std::string& points, const std::string& multiplicities)
{
    return "B_SPLINE_CURVE_WITH_KNOTS(''," + degree + "," + points + ",.UNSPECIFIED.,.F.,.F.," + multiplicities +
           ",(0.,1.),.UNSPECIFIED.)";
}

std::string surface(const std::string& points, const std::string& multiplicities)
{
    return "B_SPLINE_SURFACE_WITH_KNOTS('',1,2," + points + ",.UNSPECIFIED.,.F.,.F.,.F.," + multiplicities +
           ",(0.,1.),(0.,1.),.UNSPECIFIED.)";
}

std::string rational(const std::string& degree, const std::string& multiplicities)
{
    return "(BOUNDED_CURVE()B_SPLINE_CURVE(" + degree + ",(#2,#3,#4),.UNSPECIFIED.,.F.,.F.)B_SPLINE_CURVE_WITH_KNOTS(" +
           multiplicities + ",(0.,1.),.UNSPECIFIED.)CURVE()RATIONAL_B_SPLINE_CURVE((1.,1.,1.)))";
}

TEST(StepSplines, LetsEverythingElsePass)
{
    EXPECT_TRUE(fits("PLANE('',#2)"));
    EXPECT_TRUE(fits("(LENGTH_UNIT()NAMED_UNIT(*))"));
}

TEST(StepSplines, TakesCurvesWhoseCountsFit)
{
    EXPECT_TRUE(fits(curve("2", "(#2,#3,#4)", "(3,3)")));
    EXPECT_TRUE(fits(rational("2", "(3,3)")));
    EXPECT_TRUE(fits("BEZIER_CURVE('',2,(#2,#3,#4),.UNSPECIFIED.,.F.,.F.)"));
}

TEST(StepSplines, TakesMultiplicitiesThatAreALittleTooMany)
{
    EXPECT_TRUE(fits(curve("2", "(#2,#3,#4)", "(4,4)")));
}

TEST(StepSplines, RefusesDegreesBeyondAllReason)
{
    for (const char* degree : {"0", "-1", "26", "99999999999999999999", "$"})
    {
        EXPECT_FALSE(fits(curve(degree, "(#2,#3,#4)", "(3,3)"))) << degree;
        EXPECT_FALSE(fits(rational(degree, "(3,3)"))) << degree;
    }
}

TEST(StepSplines, RefusesMultiplicitiesBeyondThePoints)
{
    for (const char* multiplicities : {"(2000000000,3)", "(13,3)", "(-1,7)", "()", "$"})
    {
        EXPECT_FALSE(fits(curve("2", "(#2,#3,#4)", multiplicities))) << multiplicities;
        EXPECT_FALSE(fits(rational("2", multiplicities))) << multiplicities;
    }
}

TEST(StepSplines, RefusesCurvesWithoutPoints)
{
    EXPECT_FALSE(fits(curve("2", "()", "(3,3)")));
    EXPECT_FALSE(fits("BEZIER_CURVE('',2,$,.UNSPECIFIED.,.F.,.F.)"));
}

TEST(StepSplines, ChecksBothDirectionsOfSurfaces)
{
    EXPECT_TRUE(fits(surface("((#2,#3,#4),(#5,#6,#7))", "(2,2),(3,3)")));
    EXPECT_FALSE(fits(surface("((#2,#3,#4),(#5,#6,#7))", "(2,2),(3,13)")));
    EXPECT_FALSE(fits(surface("((#2,#3,#4),(#5,#6,#7))", "(2,12),(3,3)")));
}

TEST(StepSplines, RefusesSurfacesWithRowsOfDifferentLength)
{
    EXPECT_FALSE(fits(surface("((#2,#3,#4),(#5,#6))", "(2,2),(3,3)")));
    EXPECT_FALSE(fits(surface("((),())", "(2,2),(3,3)")));
    EXPECT_FALSE(fits(surface("(#2,#3)", "(2,2),(3,3)")));
}

} // namespace

} // namespace VX
