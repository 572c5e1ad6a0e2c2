#include "StepTextBuilder.h"

#include <gmock/gmock.h>

#include <backend/convert/StepScanner.h>
#include <backend/convert/StepStructure.h>

#include <numbers>
#include <string>

namespace VX
{

namespace
{

using Test::ref;
using Test::StepTextBuilder;
using testing::IsEmpty;
using testing::SizeIs;

StepStructure read(const std::string& text)
{
    const auto file = scanStepFile(text);
    return file ? readStepStructure(*file) : StepStructure();
}

const StepNode& rootOf(const StepStructure& structure, std::size_t index = 0)
{
    static const StepNode none;
    return index < structure.roots.size() ? structure.nodes[structure.roots[index]] : none;
}

const StepNode& nodeBelow(const StepStructure& structure, const StepNode& node, std::size_t index)
{
    return structure.nodes[node.children.at(index).node];
}

TEST(StepStructure, ReadsAPart)
{
    StepTextBuilder step;
    step.part("Bracket");
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    EXPECT_EQ(rootOf(structure).name, "Bracket");
    EXPECT_THAT(rootOf(structure).tessellated, SizeIs(1));
    EXPECT_THAT(rootOf(structure).children, IsEmpty());
}

TEST(StepStructure, NamesAProductWithoutNameByItsIdentifier)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int product = step.add("PRODUCT('4711-0815','','',())");
    const int formation = step.add("PRODUCT_DEFINITION_FORMATION('','',#" + std::to_string(product) + ")");
    const int definition =
        step.add("PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS('','',#" + std::to_string(formation) + ",$,())");
    const int shape = step.add("PRODUCT_DEFINITION_SHAPE('','',#" + std::to_string(definition) + ")");
    const int representation = step.representation({solid}, step.context());
    step.add("SHAPE_DEFINITION_REPRESENTATION(" + ref(shape) + "," + ref(representation) + ")");
    EXPECT_EQ(rootOf(read(step.text())).name, "4711-0815");
}

TEST(StepStructure, FollowsRelatedRepresentationsBothWays)
{
    for (const bool isReversed : {false, true})
    {
        StepTextBuilder step;
        const int context = step.context();
        const int shape = step.representation({}, context, "SHAPE_REPRESENTATION");
        const int solid = step.tetrahedron("");
        const int geometry = step.representation({solid}, context);
        const int first = isReversed ? geometry : shape;
        const int second = isReversed ? shape : geometry;
        step.add("SHAPE_REPRESENTATION_RELATIONSHIP('',''," + ref(first) + "," + ref(second) + ")");
        step.product("Part", shape);
        const StepStructure structure = read(step.text());
        ASSERT_THAT(structure.roots, SizeIs(1));
        EXPECT_THAT(rootOf(structure).tessellated, SizeIs(1));
    }
}

TEST(StepStructure, SharesAPartThatIsUsedTwice)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context());
    const int part = step.part("Bolt");
    step.use("Bolt:1", top, part, {10, 0, 0});
    step.use("Bolt:2", top, part, {0, 20, 0}, true);
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    const StepNode& root = rootOf(structure);
    ASSERT_THAT(root.children, SizeIs(2));
    EXPECT_EQ(root.children[0].node, root.children[1].node);
    EXPECT_EQ(root.children[0].name, "Bolt:1");
    EXPECT_EQ(root.children[1].name, "Bolt:2");
    EXPECT_TRUE((root.children[0].transform * Vector3d(1, 0, 0)).isApprox(Vector3d(11, 0, 0)));
    EXPECT_TRUE((root.children[1].transform * Vector3d(1, 0, 0)).isApprox(Vector3d(0, 21, 0)));
}

TEST(StepStructure, PlacesInTheUnitsOfTheAssembly)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context("INCH"));
    step.use("", top, step.part("Part"), {2, 0, 0});
    const StepStructure structure = read(step.text());
    EXPECT_TRUE(rootOf(structure).children.at(0).transform.translation().isApprox(Vector3d(50.8, 0, 0)));
}

/// An assembly whose part is placed at (5, 0, 0) by a relation written in an unusual way.
std::string placedText(bool swapRepresentations, bool swapPlacements)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int context = step.context();
    const int from = step.placement({0, 0, 0});
    const int to = step.placement({5, 0, 0});
    const int part = step.product("Part", step.representation({solid, from}, context));
    const int top = step.product("Top", step.representation({to}, context, "SHAPE_REPRESENTATION"));
    const int transformation = step.add("ITEM_DEFINED_TRANSFORMATION('',''," + ref(swapPlacements ? to : from) + "," +
                                        ref(swapPlacements ? from : to) + ")");
    const int component = step.representationOf(part);
    const int assembly = step.representationOf(top);
    const int relation =
        step.add("(REPRESENTATION_RELATIONSHIP('',''," + ref(swapRepresentations ? assembly : component) + "," +
                 ref(swapRepresentations ? component : assembly) + ")REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(" +
                 ref(transformation) + ")SHAPE_REPRESENTATION_RELATIONSHIP())");
    const int usage = step.useUnplaced("", top, part);
    const int shape = step.add("PRODUCT_DEFINITION_SHAPE('',''," + ref(usage) + ")");
    step.add("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(" + ref(relation) + "," + ref(shape) + ")");
    return step.text();
}

TEST(StepStructure, UnderstandsRelationsWrittenTheOtherWayRound)
{
    for (const bool swapRepresentations : {false, true})
        for (const bool swapPlacements : {false, true})
        {
            const StepStructure structure = read(placedText(swapRepresentations, swapPlacements));
            ASSERT_THAT(rootOf(structure).children, SizeIs(1));
            EXPECT_TRUE(rootOf(structure).children[0].transform.translation().isApprox(Vector3d(5, 0, 0)))
                << swapRepresentations << swapPlacements;
        }
}

TEST(StepStructure, PlacesMappedGeometry)
{
    StepTextBuilder step;
    const int context = step.context();
    const int solid = step.tetrahedron("");
    const int mapped = step.representation({solid}, context);
    const int map = step.add("REPRESENTATION_MAP(" + ref(step.placement({1, 0, 0})) + "," + ref(mapped) + ")");
    const int item = step.add("MAPPED_ITEM('copy'," + ref(map) + "," + ref(step.placement({4, 0, 0})) + ")");
    step.product("Part", step.representation({item}, context));
    const StepStructure structure = read(step.text());
    ASSERT_THAT(rootOf(structure).children, SizeIs(1));
    EXPECT_EQ(rootOf(structure).children[0].name, "copy");
    EXPECT_FALSE(rootOf(structure).children[0].isProduct);
    EXPECT_TRUE(rootOf(structure).children[0].transform.translation().isApprox(Vector3d(3, 0, 0)));
    EXPECT_THAT(nodeBelow(structure, rootOf(structure), 0).tessellated, SizeIs(1));
}

TEST(StepStructure, TakesThePlaceOfAUsageFromAMappedItem)
{
    StepTextBuilder step;
    const int context = step.context();
    const int solid = step.tetrahedron("");
    const int shape = step.representation({solid}, context);
    const int part = step.product("Part", shape);
    const int map = step.add("REPRESENTATION_MAP(" + ref(step.placement({0, 0, 0})) + "," + ref(shape) + ")");
    const int item = step.add("MAPPED_ITEM(''," + ref(map) + "," + ref(step.placement({0, 0, 7})) + ")");
    const int top = step.product("Top", step.representation({item}, context));
    step.useUnplaced("one", top, part);
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    ASSERT_THAT(rootOf(structure).children, SizeIs(1));
    EXPECT_EQ(rootOf(structure).children[0].name, "one");
    EXPECT_TRUE(rootOf(structure).children[0].transform.translation().isApprox(Vector3d(0, 0, 7)));
}

TEST(StepStructure, KeepsAUsageWithoutAnyPlace)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context());
    step.useUnplaced("", top, step.part("Part"));
    const StepStructure structure = read(step.text());
    ASSERT_THAT(rootOf(structure).children, SizeIs(1));
    EXPECT_TRUE(rootOf(structure).children[0].transform.isApprox(Transform::Identity()));
}

TEST(StepStructure, LeavesOutWhatHasNoGeometry)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context());
    step.use("", top, step.assembly("Empty", step.context()), {0, 0, 0});
    step.use("", top, step.part("Part"), {0, 0, 0});
    step.product("Document", 0);
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    ASSERT_THAT(rootOf(structure).children, SizeIs(1));
    EXPECT_EQ(nodeBelow(structure, rootOf(structure), 0).name, "Part");
}

TEST(StepStructure, BreaksCircles)
{
    StepTextBuilder step;
    const int a = step.assembly("A", step.context());
    const int b = step.assembly("B", step.context());
    step.use("", a, b, {0, 0, 0});
    step.use("", b, a, {0, 0, 0});
    step.use("", b, step.part("Part"), {0, 0, 0});
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    EXPECT_EQ(rootOf(structure).name, "A");
    ASSERT_THAT(rootOf(structure).children, SizeIs(1));
    EXPECT_THAT(nodeBelow(structure, rootOf(structure), 0).children, SizeIs(1));
}

TEST(StepStructure, TakesTheShapeOfAnAspectForNoPart)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int context = step.context();
    const int part = step.product("Part", step.representation({solid}, context));
    const int aspect = step.add("SHAPE_ASPECT('',''," + ref(part) + ",.T.)");
    const int property = step.add("PROPERTY_DEFINITION('',''," + ref(aspect) + ")");
    const int copy = step.representation({solid}, context, "SHAPE_REPRESENTATION");
    step.add("SHAPE_DEFINITION_REPRESENTATION(" + ref(property) + "," + ref(copy) + ")");
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    EXPECT_THAT(rootOf(structure).tessellated, SizeIs(1));
}

TEST(StepStructure, TakesConstructionGeometryForNoPart)
{
    StepTextBuilder step;
    const int solid = step.tetrahedron("");
    const int plane = step.add("PLANE('',$)");
    const int set = step.add("GEOMETRIC_SET('',(" + ref(plane) + "))");
    const int curves = step.add("GEOMETRIC_CURVE_SET('',())");
    step.product("Part", step.representation({set, curves, solid}, step.context(), "SHAPE_REPRESENTATION"));
    const StepStructure structure = read(step.text());
    EXPECT_THAT(rootOf(structure).solids, IsEmpty());
    EXPECT_THAT(rootOf(structure).tessellated, SizeIs(1));
}

TEST(StepStructure, ReadsRepresentationsWithoutProducts)
{
    StepTextBuilder step;
    const int context = step.context();
    const int solid = step.tetrahedron("");
    const int geometry = step.representation({solid}, context);
    const int shape = step.representation({}, context, "SHAPE_REPRESENTATION");
    step.add("SHAPE_REPRESENTATION_RELATIONSHIP('',''," + ref(shape) + "," + ref(geometry) + ")");
    const StepStructure structure = read(step.text());
    ASSERT_THAT(structure.roots, SizeIs(1));
    EXPECT_THAT(rootOf(structure).tessellated, SizeIs(1));
}

TEST(StepStructure, DropsStandInsForNames)
{
    EXPECT_EQ(usableStepName("NONE"), "");
    EXPECT_EQ(usableStepName("=>[0:1:1:2]"), "");
    EXPECT_EQ(usableStepName("None of these"), "None of these");
}

TEST(StepStructure, SurvivesDeepNesting)
{
    StepTextBuilder step;
    int below = step.part("Part");
    for (int level = 0; level < 5000; ++level)
    {
        const int above = step.assembly("A", 1);
        step.useUnplaced("", above, below);
        below = above;
    }
    const StepStructure structure = read(step.text());
    EXPECT_THAT(structure.roots, SizeIs(1));
    EXPECT_THAT(structure.nodes, SizeIs(5001));
}

} // namespace

} // namespace VX
