#include "StepTextBuilder.h"

#include <gmock/gmock.h>

#include <backend/convert/StepScanner.h>
#include <backend/convert/StepStyles.h>

#include <string>

namespace VX
{

namespace
{

using Test::ref;
using Test::refs;
using Test::StepTextBuilder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Color red{255, 0, 0};
constexpr Color blue{0, 0, 255};

/// The styles of a file, with its instances found by number.
struct Styled
{
    explicit Styled(const StepTextBuilder& step)
        : text(step.text())
        , file(scanStepFile(text).value_or(StepFile()))
        , styles(file)
    {
    }

    [[nodiscard]] StepIndex index(int id) const { return file.find(static_cast<StepId>(id)); }

    [[nodiscard]] std::optional<Color> color(int id) const { return styles.colorOf(index(id)); }

    std::string text;
    StepFile file;
    StepStyles styles;
};

TEST(StepStyles, ReadsTheColourOfAnItem)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    step.styledItem(step.surfaceStyle(0.2, 0.4, 0.6), solid);
    const Styled styled(step);
    EXPECT_EQ(styled.color(solid), (Color{51, 102, 153}));
    EXPECT_EQ(styled.color(step.faces()[0]), std::nullopt);
    EXPECT_THAT(styled.styles.faceColorsOf(styled.index(solid)), IsEmpty());
}

TEST(StepStyles, GivesFacesTheirOwnColours)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    step.styledItem(step.surfaceStyle(0, 0, 1), solid);
    step.styledItem(step.surfaceStyle(1, 0, 0), step.faces()[2]);
    const Styled styled(step);
    EXPECT_EQ(styled.color(solid), blue);
    EXPECT_THAT(styled.styles.faceColorsOf(styled.index(solid)),
                ElementsAre(std::pair(styled.index(step.faces()[2]), red)));
}

TEST(StepStyles, GivesFacesTheColourOfTheirShell)
{
    StepTextBuilder step;
    const int face = step.add("ADVANCED_FACE('',(),$,.T.)");
    const int other = step.add("ADVANCED_FACE('',(),$,.T.)");
    const int shell = step.add("CLOSED_SHELL(''," + refs({face, other}) + ")");
    const int oriented = step.add("ORIENTED_CLOSED_SHELL('',*," + ref(shell) + ",.F.)");
    const int solid = step.add("BREP_WITH_VOIDS('',$,(" + ref(oriented) + "))");
    step.styledItem(step.surfaceStyle(1, 0, 0), shell);
    step.styledItem(step.surfaceStyle(0, 0, 1), other);
    const Styled styled(step);
    EXPECT_THAT(
        styled.styles.faceColorsOf(styled.index(solid)),
        testing::UnorderedElementsAre(std::pair(styled.index(face), red), std::pair(styled.index(other), blue)));
}

TEST(StepStyles, KnowsPredefinedColours)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int color = step.add("DRAUGHTING_PRE_DEFINED_COLOUR('blue')");
    const int rendering = step.add("SURFACE_STYLE_RENDERING(.NORMAL_SHADING.," + ref(color) + ")");
    const int side = step.add("SURFACE_SIDE_STYLE('',(" + ref(rendering) + "))");
    const int usage = step.add("SURFACE_STYLE_USAGE(.BOTH.," + ref(side) + ")");
    step.styledItem(step.add("PRESENTATION_STYLE_ASSIGNMENT((" + ref(usage) + "))"), solid);
    EXPECT_EQ(Styled(step).color(solid), blue);
}

TEST(StepStyles, ReadsTransparency)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int color = step.add("COLOUR_RGB('',1.,0.,0.)");
    const int transparent = step.add("SURFACE_STYLE_TRANSPARENT(0.6)");
    const int rendering = step.add("SURFACE_STYLE_RENDERING_WITH_PROPERTIES(.NORMAL_SHADING.," + ref(color) + ",(" +
                                   ref(transparent) + "))");
    const int side = step.add("SURFACE_SIDE_STYLE('',(" + ref(rendering) + "))");
    const int usage = step.add("SURFACE_STYLE_USAGE(.BOTH.," + ref(side) + ")");
    step.styledItem(step.add("PRESENTATION_STYLE_ASSIGNMENT((" + ref(usage) + "))"), solid);
    EXPECT_EQ(Styled(step).color(solid), (Color{255, 0, 0, 102}));
}

TEST(StepStyles, TakesNoColourFromCurvesAndBoundaries)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int color = step.add("COLOUR_RGB('',1.,0.,0.)");
    const int curve = step.add("CURVE_STYLE('',$,POSITIVE_LENGTH_MEASURE(0.1)," + ref(color) + ")");
    const int boundary = step.add("SURFACE_STYLE_BOUNDARY(" + ref(curve) + ")");
    const int side = step.add("SURFACE_SIDE_STYLE('',(" + ref(boundary) + "))");
    const int usage = step.add("SURFACE_STYLE_USAGE(.BOTH.," + ref(side) + ")");
    step.styledItem(step.add("PRESENTATION_STYLE_ASSIGNMENT((" + refs({curve, usage}).substr(1) + ")"), solid);
    EXPECT_EQ(Styled(step).color(solid), std::nullopt);
}

TEST(StepStyles, LetsOverridingItemsWin)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int overridden = 1000;
    step.add("OVER_RIDING_STYLED_ITEM('',(" + ref(step.surfaceStyle(1, 0, 0)) + ")," + ref(solid) + "," +
             ref(overridden) + ")");
    step.styledItem(step.surfaceStyle(0, 0, 1), solid);
    EXPECT_EQ(Styled(step).color(solid), red);
}

TEST(StepStyles, ReadsColoursOfInstances)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context());
    const int solid = step.tetrahedron("");
    const int part = step.product("Part", step.representation({solid}, step.context()));
    const int usage = step.use("", top, part, {0, 0, 0});
    const int usageShape = step.add("PRODUCT_DEFINITION_SHAPE('',''," + ref(usage) + ")");
    const int shape = step.representation({}, 1, "SHAPE_REPRESENTATION");
    step.add("SHAPE_DEFINITION_REPRESENTATION(" + ref(usageShape) + "," + ref(shape) + ")");
    const int base = step.styledItem(step.surfaceStyle(0, 0, 1), solid);
    const int assignment = step.surfaceStyle(1, 0, 0);
    const int byContext = step.add("PRESENTATION_STYLE_BY_CONTEXT((" + ref(assignment - 1) + ")," + ref(shape) + ")");
    step.add("OVER_RIDING_STYLED_ITEM('',(" + ref(byContext) + ")," + ref(solid) + "," + ref(base) + ")");
    const Styled styled(step);
    EXPECT_EQ(styled.color(solid), blue);
    ASSERT_THAT(styled.styles.instanceColors(), SizeIs(1));
    const StepInstanceColor& color = styled.styles.instanceColors()[0];
    EXPECT_EQ(color.item, styled.index(solid));
    EXPECT_THAT(color.usages, ElementsAre(styled.index(usage)));
    EXPECT_EQ(color.color, red);
}

TEST(StepStyles, FollowsUsagesOfUsages)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int upper = step.useUnplaced("", 1, 1);
    const int lower = step.useUnplaced("", 1, 1);
    const int higher =
        step.add("SPECIFIED_HIGHER_USAGE_OCCURRENCE('','','',#1,#1,$," + ref(upper) + "," + ref(lower) + ")");
    const int shape = step.add("PRODUCT_DEFINITION_SHAPE('',''," + ref(higher) + ")");
    const int dependent = step.add("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION($," + ref(shape) + ")");
    step.add("CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM('',(" + ref(step.surfaceStyle(1, 0, 0)) + ")," + ref(solid) +
             ",$,(" + ref(dependent) + "))");
    const Styled styled(step);
    ASSERT_THAT(styled.styles.instanceColors(), SizeIs(1));
    EXPECT_THAT(styled.styles.instanceColors()[0].usages, ElementsAre(styled.index(upper), styled.index(lower)));
}

TEST(StepStyles, KnowsWhatIsHidden)
{
    StepTextBuilder step;
    const int byStyle = step.tetrahedron("");
    const int byLayer = step.tetrahedron("");
    const int shown = step.tetrahedron("");
    const int style = step.styledItem(step.surfaceStyle(1, 0, 0), byStyle);
    const int layer = step.add("PRESENTATION_LAYER_ASSIGNMENT('','',(" + ref(byLayer) + "))");
    step.add("INVISIBILITY(" + refs({style, layer}) + ")");
    const Styled styled(step);
    EXPECT_TRUE(styled.styles.isHidden(styled.index(byStyle)));
    EXPECT_TRUE(styled.styles.isHidden(styled.index(byLayer)));
    EXPECT_FALSE(styled.styles.isHidden(styled.index(shown)));
}

TEST(StepStyles, SurvivesCirclesAndDamage)
{
    StepTextBuilder step;
    const int circle = step.add("PRESENTATION_STYLE_ASSIGNMENT((#1,#1,#2))");
    step.add("SURFACE_STYLE_USAGE(.BOTH.,#1)");
    const int shell = step.add("CLOSED_SHELL('',(#3,#3,#99))");
    step.styledItem(circle, shell);
    step.styledItem(circle, 99);
    step.add("STYLED_ITEM()");
    step.add("STYLED_ITEM('',(),#3)");
    const int usage = step.add("SPECIFIED_HIGHER_USAGE_OCCURRENCE('','','',$,$,$,#8,#8)");
    step.add("CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM('',(#1),#3,$,(" + ref(usage) + "))");
    const Styled styled(step);
    EXPECT_EQ(styled.color(shell), std::nullopt);
    EXPECT_THAT(styled.styles.faceColorsOf(styled.index(shell)), IsEmpty());
    EXPECT_THAT(styled.styles.faceColorsOf(noStepInstance), IsEmpty());
}

} // namespace

} // namespace VX
