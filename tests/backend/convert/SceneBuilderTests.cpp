#include "StepTextBuilder.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>

#include <gmock/gmock.h>

#include <backend/convert/SceneBuilder.h>
#include <backend/convert/StepScanner.h>

#include <string>

namespace VX
{

namespace
{

using testing::SizeIs;
using Scene = tl::expected<std::shared_ptr<Object>, std::string>;

constexpr Color red{255, 0, 0};

NodeBody bodyOf(const std::string& name, bool withFaceColors = false)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh->triangles = {Triangle(0, 1, 2)};
    if (withFaceColors)
        mesh->faceColors = {Color{1, 2, 3}};
    auto lines = std::make_shared<Lines>();
    lines->points = {{0, 0, 0}, {1, 0, 0}};
    lines->segments = {Segment(0, 1)};
    NodeBody body;
    body.name = name;
    body.items = {{7, 8, 9}};
    body.geometry.mesh = mesh;
    body.geometry.edges = lines;
    return body;
}

StepChild childOf(std::size_t node, const std::string& name = {}, StepIndex usage = noStepInstance)
{
    StepChild child;
    child.node = node;
    child.name = name;
    child.usage = usage;
    child.isProduct = true;
    return child;
}

Scene build(const StepStructure& structure, const std::vector<std::vector<NodeBody>>& bodies)
{
    const StepFile file;
    return buildScene(structure, StepStyles(file), bodies);
}

const ObjectMesh& meshAt(const Object& parent, std::size_t index)
{
    return dynamic_cast<const ObjectMesh&>(*parent.children().at(index));
}

TEST(SceneBuilder, MakesAPartOfOneBodyAMeshWithItsEdgesBelow)
{
    StepStructure structure;
    structure.nodes.resize(1);
    structure.nodes[0].name = "Bracket";
    structure.roots = {0};
    NodeBody body = bodyOf("solid");
    body.geometry.color = red;
    body.geometry.offset = {5, 0, 0};
    const Scene scene = build(structure, {{body}});
    ASSERT_TRUE(scene);
    EXPECT_EQ((*scene)->name(), "");
    ASSERT_THAT((*scene)->children(), SizeIs(1));
    const ObjectMesh& part = meshAt(**scene, 0);
    EXPECT_EQ(part.name(), "Bracket");
    EXPECT_EQ(part.color(), red);
    EXPECT_EQ(part.mesh(), body.geometry.mesh);
    EXPECT_TRUE(part.transform().translation().isApprox(Vector3d(5, 0, 0)));
    ASSERT_THAT(part.children(), SizeIs(1));
    const auto& edges = dynamic_cast<const ObjectLines&>(*part.children()[0]);
    EXPECT_EQ(edges.name(), "Edges");
    EXPECT_EQ(edges.lines(), body.geometry.edges);
}

TEST(SceneBuilder, SharesMeshesBetweenInstances)
{
    StepStructure structure;
    structure.nodes.resize(2);
    structure.nodes[0].name = "Top";
    structure.nodes[0].children = {childOf(1, "Bolt:1"), childOf(1)};
    structure.nodes[0].children[0].transform.translate(Vector3d(1, 2, 3));
    structure.nodes[1].name = "Bolt";
    structure.roots = {0};
    const Scene scene = build(structure, {{}, {bodyOf("")}});
    ASSERT_TRUE(scene);
    const Object& top = *(*scene)->children().at(0);
    EXPECT_EQ(top.typeName(), "Object");
    ASSERT_THAT(top.children(), SizeIs(2));
    EXPECT_EQ(meshAt(top, 0).name(), "Bolt:1");
    EXPECT_EQ(meshAt(top, 1).name(), "Bolt");
    EXPECT_EQ(meshAt(top, 0).mesh(), meshAt(top, 1).mesh());
    EXPECT_TRUE(meshAt(top, 0).transform().translation().isApprox(Vector3d(1, 2, 3)));
}

TEST(SceneBuilder, PutsSeveralBodiesBelowTheirPart)
{
    StepStructure structure;
    structure.nodes.resize(1);
    structure.nodes[0].name = "Part";
    structure.roots = {0};
    NodeBody hidden = bodyOf("");
    hidden.isHidden = true;
    const Scene scene = build(structure, {{bodyOf("Lid"), hidden}});
    ASSERT_TRUE(scene);
    const Object& part = *(*scene)->children().at(0);
    EXPECT_EQ(part.name(), "Part");
    EXPECT_EQ(meshAt(part, 0).name(), "Lid");
    EXPECT_TRUE(meshAt(part, 0).isVisible());
    EXPECT_EQ(meshAt(part, 1).name(), "Part");
    EXPECT_FALSE(meshAt(part, 1).isVisible());
}

TEST(SceneBuilder, PlacesMappedGeometryAsThePartItself)
{
    StepStructure structure;
    structure.nodes.resize(2);
    structure.nodes[0].name = "Part";
    structure.nodes[0].children = {childOf(1)};
    structure.nodes[0].children[0].isProduct = false;
    structure.nodes[0].children[0].transform.translate(Vector3d(0, 0, 4));
    structure.roots = {0};
    const Scene scene = build(structure, {{}, {bodyOf("")}});
    ASSERT_TRUE(scene);
    EXPECT_EQ(meshAt(**scene, 0).name(), "Part");
    EXPECT_TRUE(meshAt(**scene, 0).transform().translation().isApprox(Vector3d(0, 0, 4)));
}

/// Two uses, 20 and 21, of a part whose body is item 7; a colour for some of them.
Scene buildColored(const std::vector<StepIndex>& usages)
{
    Test::StepTextBuilder step;
    const int solid = step.tetrahedron("");
    while (step.add("A()") < 22)
    {
    }
    std::string contexts;
    for (const StepIndex usage : usages)
        contexts += (contexts.empty() ? "#" : ",#") + std::to_string(usage);
    static_cast<void>(solid);
    std::string text = step.text();
    for (const StepIndex usage : {20, 21})
        text.replace(text.find("#" + std::to_string(usage) + "=A()"), 7,
                     "#" + std::to_string(usage) + "=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',$,$,$)");
    const std::size_t end = text.rfind("ENDSEC;");
    text.insert(end, "#30=COLOUR_RGB('',1.,0.,0.);#31=SURFACE_SIDE_STYLE('',(#30));#32=SURFACE_STYLE_USAGE(.BOTH.,#31);"
                     "#33=PRESENTATION_STYLE_ASSIGNMENT((#32));"
                     "#34=CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM('',(#33),#7,$,(" +
                         contexts + "));");
    const StepFile file = scanStepFile(text).value_or(StepFile());
    const StepStyles styles(file);

    StepStructure structure;
    structure.nodes.resize(2);
    structure.nodes[0].children = {childOf(1, "a", file.find(20)), childOf(1, "b", file.find(21))};
    structure.roots = {0};
    NodeBody body = bodyOf("", true);
    body.items = {{file.find(7), 0, 0}};
    return buildScene(structure, styles, {{}, {body}});
}

TEST(SceneBuilder, ColoursOneInstance)
{
    const Scene scene = buildColored({21});
    ASSERT_TRUE(scene);
    const Object& top = *(*scene)->children().at(0);
    EXPECT_THAT(meshAt(top, 0).mesh()->faceColors, SizeIs(1));
    EXPECT_THAT(meshAt(top, 1).mesh()->faceColors, SizeIs(0));
    EXPECT_EQ(meshAt(top, 1).color(), red);
}

TEST(SceneBuilder, ColoursNothingWhereTheWholePathDoesNotMatch)
{
    const Scene scene = buildColored({20, 21});
    ASSERT_TRUE(scene);
    const Object& top = *(*scene)->children().at(0);
    EXPECT_NE(meshAt(top, 0).color(), red);
    EXPECT_NE(meshAt(top, 1).color(), red);
}

/// A chain of assemblies, each with `width` uses of the next.
StepStructure chain(std::size_t depth, std::size_t width)
{
    StepStructure structure;
    structure.nodes.resize(depth + 1);
    for (std::size_t level = 0; level < depth; ++level)
        structure.nodes[level].children.assign(width, childOf(level + 1));
    structure.roots = {0};
    return structure;
}

TEST(SceneBuilder, RefusesAssembliesThatNestTooDeeply)
{
    std::vector<std::vector<NodeBody>> bodies(1001);
    bodies.back() = {bodyOf("")};
    const Scene scene = build(chain(1000, 1), bodies);
    ASSERT_FALSE(scene);
    EXPECT_EQ(scene.error(), "The STEP file's assemblies are nested too deeply.");
}

TEST(SceneBuilder, RefusesMoreThanAMillionParts)
{
    std::vector<std::vector<NodeBody>> bodies(41);
    bodies.back() = {bodyOf("")};
    const Scene scene = build(chain(40, 2), bodies);
    ASSERT_FALSE(scene);
    EXPECT_EQ(scene.error(), "The STEP file has more than a million parts.");
}

TEST(SceneBuilder, NamesWhatHasNoName)
{
    StepStructure structure;
    structure.nodes.resize(2);
    structure.nodes[0].children = {childOf(1), childOf(1)};
    structure.roots = {0};
    const Scene scene = build(structure, {{}, {bodyOf("")}});
    ASSERT_TRUE(scene);
    EXPECT_EQ((*scene)->children().at(0)->name(), "Assembly");
    EXPECT_EQ((*scene)->children().at(0)->children().at(0)->name(), "Part");
}

} // namespace

} // namespace VX
