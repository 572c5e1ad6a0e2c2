#include "SceneFacts.h"
#include "StepTextBuilder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <backend/convert/StepConversion.h>
#include <tests/support/TempDir.h>

#include <random>
#include <string>

namespace VX
{

namespace
{

using Test::readFile;
using Test::stepFileText;
using Test::StepTextBuilder;
using Test::TempDir;

constexpr const char* notStep = "The file is not a STEP file: it does not begin with ISO-10303-21.";
constexpr const char* cutOff = "The STEP file is cut off or damaged: its data has no end. Save or download it again.";
constexpr const char* cutBeforeData = "The STEP file is cut off: it ends before its data. Save or download it again.";
constexpr const char* noShape = "The STEP file holds no shape that can be shown.";
constexpr const char* tooDeep = "The STEP file's assemblies are nested too deeply.";
constexpr const char* tooMany = "The STEP file has more than a million parts.";

/// The sentence that a file ends with; empty where it opens.
std::string errorOf(const std::string& text)
{
    const TempDir folder;
    const auto scene = readStepFile(folder.write("input", text));
    return scene ? "" : scene.error();
}

std::size_t triangleCount(const std::string& text)
{
    const TempDir folder;
    const auto scene = readStepFile(folder.write("input", text));
    return scene ? Test::factsOf(**scene).triangles : 0;
}

std::string noise(std::size_t size)
{
    std::mt19937 random(7);
    std::string bytes(size, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random() & 0xFF);
    return bytes;
}

/// A part of a disc with the surface #20 bounded by the curve #15, and beside it, as a face of its own, a sound disc.
std::string discText(const std::string& surface, const std::string& curve, const std::string& more = {})
{
    return stepFileText(
        "#1=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));"
        "#4=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#1))REPRESENTATION_CONTEXT('',''));"
        "#5=CARTESIAN_POINT('',(0.,0.,0.));#6=DIRECTION('',(0.,0.,1.));#7=DIRECTION('',(1.,0.,0.));"
        "#8=AXIS2_PLACEMENT_3D('',#5,#6,#7);#10=FACE_OUTER_BOUND('',#11,.T.);#11=EDGE_LOOP('',(#12));"
        "#12=ORIENTED_EDGE('',*,*,#13,.T.);#13=EDGE_CURVE('',#14,#14,#15,.T.);#14=VERTEX_POINT('',#16);"
        "#16=CARTESIAN_POINT('',(1.,0.,0.));#19=ADVANCED_FACE('',(#10),#20,.T.);"
        "#30=FACE_OUTER_BOUND('',#31,.T.);#31=EDGE_LOOP('',(#32));#32=ORIENTED_EDGE('',*,*,#33,.T.);"
        "#33=EDGE_CURVE('',#34,#34,#35,.T.);#34=VERTEX_POINT('',#16);#35=CIRCLE('',#8,1.);"
        "#39=ADVANCED_FACE('',(#30),#40,.T.);#40=PLANE('',#8);#50=OPEN_SHELL('',(#19,#39));"
        "#51=SHELL_BASED_SURFACE_MODEL('',(#50));#52=MANIFOLD_SURFACE_SHAPE_REPRESENTATION('',(#51),#4);"
        "#15=" +
        curve + ";#20=" + surface + ";" + more);
}

constexpr const char* plane = "PLANE('',#8)";
constexpr const char* circle = "CIRCLE('',#8,1.)";

/// An assembly of `levels` levels, each with the next one twice, and a part at the bottom.
std::string doublingAssembly(int levels, int usesPerLevel)
{
    StepTextBuilder step;
    int product = step.part("Part");
    for (int level = 0; level < levels; ++level)
    {
        const int assembly = step.assembly("Level", step.context());
        for (int use = 0; use < usesPerLevel; ++use)
            step.useUnplaced("", assembly, product);
        product = assembly;
    }
    return step.text();
}

TEST(DamagedStep, IsRefusedWhenItIsNoStepAtAll)
{
    for (const std::string& text : {std::string("<!DOCTYPE html><html>Not found</html>"),
                                    std::string("PK\x03\x04") + noise(100), noise(100000), std::string("ISO-103")})
        EXPECT_EQ(errorOf(text), notStep);
}

TEST(DamagedStep, IsCalledEmptyWhenThereIsNothingInIt)
{
    for (const std::string& text : {std::string(), std::string(" \n\t\r\n"), std::string(5000, '\0')})
        EXPECT_EQ(errorOf(text), "The file is empty.");
}

TEST(DamagedStep, IsCalledCutOffWhereverItEnds)
{
    const std::string whole = readFile(QX_SOURCE_DIR "/samples/bearing-block.step");
    const std::size_t data = whole.find("DATA;") + 5;
    const std::size_t end = whole.rfind("ENDSEC;");
    for (std::size_t k = 0; k < 20; ++k)
        EXPECT_EQ(errorOf(whole.substr(0, data + (end - data) * k / 19)), cutOff) << k;
    for (const std::size_t length : {std::size_t{12}, std::size_t{13}, std::size_t{60}, data - 1})
        EXPECT_EQ(errorOf(whole.substr(0, length)), cutBeforeData) << length;
}

TEST(DamagedStep, IsCalledCutOffWhenNoiseFollowsItsHeader)
{
    EXPECT_EQ(errorOf("ISO-10303-21;HEADER;ENDSEC;DATA;" + noise(100000)), cutOff);
}

TEST(DamagedStep, SaysThatItHoldsNothing)
{
    EXPECT_EQ(errorOf(stepFileText("")), "The STEP file holds no data.");
    EXPECT_EQ(errorOf(stepFileText("#1=PRODUCT('P','P','',());")), noShape);
    EXPECT_EQ(errorOf(stepFileText("#18446744073709551615=A();#99999999999999999999999=B();#0=C(#0);")), noShape);
}

TEST(DamagedStep, ShowsTheSoundFaceBesideOneWithReferencesToNothing)
{
    const std::size_t sound = triangleCount(discText(plane, circle)) / 2;
    ASSERT_GT(sound, 0U);
    for (const char* reference : {"#5", "#8", "#10", "#11", "#12", "#13", "#14", "#15", "#20"})
    {
        // Its own copy of each, for the sound face needs some of them too.
        std::string text = discText("PLANE('',#60)", "CIRCLE('',#60,1.)",
                                    "#60=AXIS2_PLACEMENT_3D('',#61,$,$);"
                                    "#61=CARTESIAN_POINT('',(0.,0.,0.));");
        const std::string copy = std::string(reference) == "#5"   ? "#61"
                                 : std::string(reference) == "#8" ? "#60"
                                                                  : reference;
        text.replace(text.find(copy + "="), copy.size(), "#9" + copy.substr(1));
        EXPECT_EQ(triangleCount(text), sound) << reference;
    }
}

TEST(DamagedStep, ShowsTheSoundFaceBesideOneWithReferencesToTheWrongThings)
{
    const std::string whole = discText(plane, circle);
    const std::size_t sound = triangleCount(whole) / 2;
    for (const auto& [right, wrong] : {std::pair{"#19=ADVANCED_FACE('',(#10),#20", "#19=ADVANCED_FACE('',(#20),#10"},
                                       {"#10=FACE_OUTER_BOUND('',#11", "#10=FACE_OUTER_BOUND('',#5"},
                                       {"#11=EDGE_LOOP('',(#12", "#11=EDGE_LOOP('',(#14"},
                                       {"#12=ORIENTED_EDGE('',*,*,#13", "#12=ORIENTED_EDGE('',*,*,#8"},
                                       {"#13=EDGE_CURVE('',#14,#14,#15", "#13=EDGE_CURVE('',#15,#14,#14"},
                                       {"#14=VERTEX_POINT('',#16", "#14=VERTEX_POINT('',#6"},
                                       {"#15=CIRCLE('',#8", "#15=CIRCLE('',#39"},
                                       {"#20=PLANE('',#8", "#20=PLANE('',#7"}})
    {
        std::string text = whole;
        text.replace(text.find(right), std::string(right).size(), wrong);
        EXPECT_EQ(triangleCount(text), sound) << wrong;
    }
}

TEST(DamagedStep, ShowsTheSoundFaceBesideOneOfSurfacesInACircle)
{
    const std::size_t sound = triangleCount(discText(plane, circle)) / 2;
    for (const char* surface :
         {"OFFSET_SURFACE('',#20,1.,.F.)", "OFFSET_SURFACE('',#60,1.,.F.)",
          "RECTANGULAR_TRIMMED_SURFACE('',#20,0.,1.,0.,1.,.T.,.T.)", "CURVE_BOUNDED_SURFACE('',#20,(#20),.F.)"})
        EXPECT_EQ(triangleCount(discText(surface, circle, "#60=OFFSET_SURFACE('',#20,1.,.F.);")), sound) << surface;
}

TEST(DamagedStep, ShowsTheSoundFaceBesideOneOfCurvesInACircle)
{
    const std::size_t sound = triangleCount(discText(plane, circle)) / 2;
    for (const char* curve :
         {"TRIMMED_CURVE('',#15,(0.),(1.),.T.,.PARAMETER.)", "SURFACE_CURVE('',#15,(#15),.CURVE_3D.)",
          "OFFSET_CURVE_3D('',#15,1.,.F.,#6)", "COMPOSITE_CURVE('',1,(#60),.F.)"})
        EXPECT_EQ(triangleCount(discText(plane, curve, "#60=COMPOSITE_CURVE_SEGMENT(.CONTINUOUS.,.T.,#15);")), sound)
            << curve;
}

TEST(DamagedStep, SurvivesCurvesNestedBeyondAllReason)
{
    std::string chain;
    for (int k = 100; k < 100000; ++k)
        chain += fmt::format("#{}=TRIMMED_CURVE('',#{},(0.),(1.),.T.,.PARAMETER.);", k, k + 1);
    chain += "#100000=CIRCLE('',#8,1.);";
    const std::size_t sound = triangleCount(discText(plane, circle)) / 2;
    EXPECT_EQ(triangleCount(discText(plane, "TRIMMED_CURVE('',#100,(0.),(1.),.T.,.PARAMETER.)", chain)), sound);
}

TEST(DamagedStep, ShowsTheSoundFaceBesideOneOfWrongCounts)
{
    const std::size_t sound = triangleCount(discText(plane, circle)) / 2;
    for (const char* curve :
         {"B_SPLINE_CURVE_WITH_KNOTS('',1000000,(#5,#16),.UNSPECIFIED.,.F.,.F.,(2000000000,2000000000),(0.,1.),"
          ".UNSPECIFIED.)",
          "B_SPLINE_CURVE_WITH_KNOTS('',25,(#5,#16),.UNSPECIFIED.,.F.,.F.,(2147483647,2147483647),(0.,1.),"
          ".UNSPECIFIED.)",
          "B_SPLINE_CURVE_WITH_KNOTS('',99999999999999999999,(#5,#16),.UNSPECIFIED.,.F.,.F.,(-1,-1),(0.,1.),"
          ".UNSPECIFIED.)",
          "B_SPLINE_CURVE_WITH_KNOTS('',1,(),.UNSPECIFIED.,.F.,.F.,(),(),.UNSPECIFIED.)"})
        EXPECT_EQ(triangleCount(discText(plane, curve)), sound) << curve;
    for (const char* points : {"((#5,#16),(#5))", "((),())", "((#5,#16),(#5,#16))"})
        EXPECT_EQ(triangleCount(discText(fmt::format("B_SPLINE_SURFACE_WITH_KNOTS('',1,1,{},.UNSPECIFIED.,.F.,.F.,.F.,"
                                                     "(2,2000000000),(2,2),(0.,1.),(0.,1.),.UNSPECIFIED.)",
                                                     points),
                                         circle)),
                  sound)
            << points;
}

TEST(DamagedStep, TakesNoMemoryForTrianglesThatAreNotThere)
{
    const std::string face = "#1=TESSELLATED_SHELL('',(#2),$);#3=COORDINATES_LIST('',18446744073709551615,"
                             "((0.,0.,0.),(1.,0.,0.),(0.,1.,0.)));#4=TESSELLATED_SHAPE_REPRESENTATION('',(#1),$);";
    EXPECT_EQ(triangleCount(stepFileText(face + "#2=TRIANGULATED_FACE('',#3,4294967295,(),$,(),((1,2,3)));")), 1U);
    EXPECT_EQ(errorOf(stepFileText(face + "#2=TRIANGULATED_FACE('',#3,3,(),$,(),((1,2,4294967295)));")), noShape);
    EXPECT_EQ(errorOf(stepFileText(face + "#2=TRIANGULATED_FACE('',#3,3,(),$,(4294967295,0,-1),((1,2,3)));")), noShape);
}

TEST(DamagedStep, SurvivesListsNestedBeyondAllReason)
{
    const std::string deep(1000000, '(');
    const std::string item = "#51=SHELL_BASED_SURFACE_MODEL('',";
    std::string text = discText(plane, circle);
    text.insert(text.find(item) + item.size(), deep + std::string(deep.size(), ')') + ",");
    EXPECT_EQ(errorOf(text), noShape);
    EXPECT_EQ(errorOf(stepFileText("#1=A(" + deep + ";")), noShape);
}

TEST(DamagedStep, RefusesAssembliesNestedBeyondAllReason)
{
    EXPECT_EQ(errorOf(doublingAssembly(250, 1)), "");
    EXPECT_EQ(errorOf(doublingAssembly(5000, 1)), tooDeep);
}

TEST(DamagedStep, RefusesAssembliesThatDoubleAtEachLevel)
{
    EXPECT_EQ(errorOf(doublingAssembly(100, 2)), tooMany);
}

TEST(DamagedStep, OpensAnAssemblyThatContainsItself)
{
    StepTextBuilder step;
    const int part = step.part("Part");
    const int inner = step.assembly("Inner", step.context());
    const int outer = step.assembly("Outer", step.context());
    step.useUnplaced("", inner, part);
    step.useUnplaced("", outer, inner);
    step.useUnplaced("", inner, outer);
    EXPECT_EQ(triangleCount(step.text()), 4U);
}

} // namespace

} // namespace VX
