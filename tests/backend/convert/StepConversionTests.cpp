#include "StepTextBuilder.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>

#include <gmock/gmock.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <STEPControl_Writer.hxx>
#include <backend/convert/StepConversion.h>
#include <tests/support/TempDir.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace VX
{

namespace
{

using Test::readFile;
using Test::stepFileText;
using Test::StepTextBuilder;
using Test::TempDir;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using Scene = tl::expected<std::shared_ptr<Object>, std::string>;

/// What a scene shows.
struct SceneFacts
{
    std::vector<const ObjectMesh*> parts;
    std::set<const Mesh*> meshes;
    std::multiset<std::string> names;
    std::set<std::string> colors; ///< of faces, "#rrggbb"
    std::size_t triangles = 0;
    double area = 0;
    bool isFinite = true;
};

std::string hex(Color color)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", color.r, color.g, color.b);
    return text.data();
}

void addMesh(SceneFacts& facts, const ObjectMesh& object)
{
    const Mesh& mesh = *object.mesh();
    facts.parts.push_back(&object);
    facts.meshes.insert(&mesh);
    facts.triangles += mesh.triangles.size();
    for (const Vector3f& point : mesh.points)
        facts.isFinite = facts.isFinite && point.allFinite();
    for (const Triangle& t : mesh.triangles)
        facts.area += (mesh.points[t[1]] - mesh.points[t[0]]).cross(mesh.points[t[2]] - mesh.points[t[0]]).norm() / 2;
    if (mesh.faceColors.empty())
        facts.colors.insert(hex(object.color()));
    for (const Color& color : mesh.faceColors)
        facts.colors.insert(hex(color));
}

SceneFacts factsOf(const Object& scene)
{
    SceneFacts facts;
    visitObjects(scene,
                 [&](const Object& object)
                 {
                     if (object.typeName() != "ObjectLines" && !object.name().empty())
                         facts.names.insert(object.name());
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
                         addMesh(facts, *mesh);
                 });
    return facts;
}

/// The box within a thousandth of its diagonal, as exactly as the triangles follow the surfaces.
void expectBox(const Object& scene, const Vector3d& min, const Vector3d& max)
{
    const Box3d box = scene.worldBox();
    const double tolerance = 0.001 * (max - min).norm();
    for (int axis = 0; axis < 3; ++axis)
    {
        EXPECT_NEAR(box.min()[axis], min[axis], tolerance) << axis;
        EXPECT_NEAR(box.max()[axis], max[axis], tolerance) << axis;
    }
}

Scene readText(const std::string& text)
{
    const TempDir folder;
    return readStepFile(folder.write("input", text));
}

std::string errorOf(const std::string& text)
{
    const Scene scene = readText(text);
    return scene ? "" : scene.error();
}

/// A box of 1 x 2 x 3 as the library writes it; the writer leaves the numbers as they are, whatever the unit.
std::string boxText(const char* unit)
{
    const TempDir folder;
    const std::filesystem::path path = folder.path() / "box.step";
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    STEPControl_Writer writer;
    Interface_Static::SetCVal("write.step.unit", unit);
    writer.Transfer(BRepPrimAPI_MakeBox(1, 2, 3).Shape(), STEPControl_AsIs);
    writer.Write(path.c_str());
    Interface_Static::SetCVal("write.step.unit", "MM");
    return readFile(path);
}

class SampleFiles : public testing::Test
{
protected:
    /// Reads one of the samples that are kept beside the repository.
    Scene read_(const std::string& name)
    {
        const std::filesystem::path path = std::filesystem::path(QX_SOURCE_DIR "/../shared/samples") / name;
        if (!std::filesystem::exists(path))
            return tl::unexpected<std::string>("samples are not here");
        return readStepFile(path);
    }
};

// The boxes and areas are those of the solids in the whole file, computed by the library from the exact surfaces.

TEST_F(SampleFiles, Ctc01)
{
    const Scene scene = read_("nist_ctc_01_asme1_ap242-e1.stp");
    if (!scene && scene.error() == "samples are not here")
        GTEST_SKIP() << scene.error();
    ASSERT_TRUE(scene) << scene.error();
    const SceneFacts facts = factsOf(**scene);
    EXPECT_THAT(facts.parts, SizeIs(1));
    EXPECT_THAT(facts.names, UnorderedElementsAre("NIST Complex Test Case 1"));
    EXPECT_THAT(facts.colors, UnorderedElementsAre("#c0a9f9"));
    EXPECT_GT(facts.triangles, 1000U);
    EXPECT_TRUE(facts.isFinite);
    EXPECT_NEAR(facts.area, 807080.822, 807.0);
    expectBox(**scene, {-400, -225, -100}, {400, 225, 50});
}

TEST_F(SampleFiles, Ctc03)
{
    const Scene scene = read_("nist_ctc_03_asme1_ap242-e2.stp");
    if (!scene && scene.error() == "samples are not here")
        GTEST_SKIP() << scene.error();
    ASSERT_TRUE(scene) << scene.error();
    const SceneFacts facts = factsOf(**scene);
    EXPECT_THAT(facts.parts, SizeIs(1));
    EXPECT_THAT(facts.names, UnorderedElementsAre("Test Case 3 Baseline"));
    EXPECT_THAT(facts.colors, UnorderedElementsAre("#d2d2ff"));
    EXPECT_TRUE(facts.isFinite);
    EXPECT_NEAR(facts.area, 354787.650, 355.0);
    expectBox(**scene, {-249.557540, 0, 0}, {53.402246, 485.444800, 162.689737});
}

TEST_F(SampleFiles, Stc06)
{
    const Scene scene = read_("nist_stc_06_asme1_ap242-e3.stp");
    if (!scene && scene.error() == "samples are not here")
        GTEST_SKIP() << scene.error();
    ASSERT_TRUE(scene) << scene.error();
    const SceneFacts facts = factsOf(**scene);
    EXPECT_THAT(facts.parts, SizeIs(1));
    EXPECT_THAT(facts.names, UnorderedElementsAre("nist_stc_06_asme1"));
    EXPECT_THAT(facts.colors, UnorderedElementsAre("#98aaaf"));
    EXPECT_TRUE(facts.isFinite);
    EXPECT_NEAR(facts.area, 283414.452, 284.0);
    expectBox(**scene, {0, -152.4, 0}, {247.65, 152.4, 97.79});
}

TEST(OwnSample, HasItsAssemblyNamesColoursAndSharedParts)
{
    const Scene scene = readStepFile(QX_SOURCE_DIR "/samples/bearing-block.step");
    ASSERT_TRUE(scene) << scene.error();
    ASSERT_THAT((*scene)->children(), SizeIs(1));
    EXPECT_EQ((*scene)->children()[0]->name(), "Bearing block");
    const SceneFacts facts = factsOf(**scene);
    EXPECT_THAT(facts.parts, SizeIs(25));
    // The block, two rings of the bearing, the ball, the shaft, the bolt, the washer and the retaining ring.
    EXPECT_THAT(facts.meshes, SizeIs(8));
    EXPECT_EQ(facts.names.count("Ball bearing"), 1U);
    EXPECT_EQ(facts.names.count("Ball 11"), 1U);
    EXPECT_EQ(facts.names.count("Bolt 4"), 1U);
    EXPECT_EQ(facts.names.count("Washer M8"), 4U);
    EXPECT_TRUE(facts.isFinite);
    expectBox(**scene, {-60, -65, -9.4}, {60, 65, 82});

    std::map<std::string, const ObjectMesh*> byName;
    for (const ObjectMesh* part : facts.parts)
        byName[part->name()] = part;
    EXPECT_THAT(byName.at("Block")->mesh()->faceColors, testing::Contains(Color{72, 122, 168}));
    EXPECT_THAT(byName.at("Block")->mesh()->faceColors, testing::Contains(Color{206, 210, 214}));
    EXPECT_EQ(byName.at("Shaft")->color(), (Color{168, 173, 178}));
    EXPECT_EQ(byName.at("Retaining ring front")->color(), (Color{64, 66, 70}));
    EXPECT_EQ(byName.at("Retaining ring back")->color(), (Color{214, 62, 48}));
    EXPECT_EQ(byName.at("Retaining ring front")->mesh(), byName.at("Retaining ring back")->mesh());
}

TEST(StepConversion, ConvertsUnitsToMillimetres)
{
    for (const auto& [unit, factor] : {std::pair{"MM", 1.0}, {"INCH", 25.4}, {"M", 1000.0}})
    {
        const Scene scene = readText(boxText(unit));
        ASSERT_TRUE(scene) << scene.error();
        const Box3d box = (*scene)->worldBox();
        EXPECT_TRUE(box.max().isApprox(Vector3d(1, 2, 3) * factor, 1e-5)) << unit;
        EXPECT_THAT(factsOf(**scene).parts, SizeIs(1));
    }
}

TEST(StepConversion, ReadsTessellatedAssemblies)
{
    StepTextBuilder step;
    const int top = step.assembly("Top", step.context());
    const int part = step.part("Wedge", 2);
    step.use("Wedge:1", top, part, {10, 0, 0});
    step.use("Wedge:2", top, part, {-10, 0, 0}, true);
    const Scene scene = readText(step.text());
    ASSERT_TRUE(scene) << scene.error();
    const SceneFacts facts = factsOf(**scene);
    EXPECT_THAT(facts.names, UnorderedElementsAre("Top", "Wedge:1", "Wedge:2"));
    EXPECT_THAT(facts.meshes, SizeIs(1));
    EXPECT_EQ(facts.triangles, 8U);
    expectBox(**scene, {-12, 0, 0}, {12, 2, 2});
}

TEST(StepConversion, TakesExactGeometryWhereThereIsBoth)
{
    std::string text = boxText("MM");
    const std::size_t items = text.find("ADVANCED_BREP_SHAPE_REPRESENTATION('',(");
    ASSERT_NE(items, std::string::npos);
    text.insert(text.find('(', text.find("'',", items)) + 1, "#9003,");
    text.insert(text.rfind("ENDSEC;"), "#9001=COORDINATES_LIST('',3,((0.,0.,0.),(50.,0.,0.),(0.,50.,0.)));"
                                       "#9002=TRIANGULATED_FACE('',#9001,3,(),$,(),((1,2,3)));"
                                       "#9003=TESSELLATED_SHELL('',(#9002),$);");
    const Scene scene = readText(text);
    ASSERT_TRUE(scene) << scene.error();
    expectBox(**scene, {0, 0, 0}, {1, 2, 3});
}

TEST(StepConversion, TellsBodiesOfAPartApartByTheirNames)
{
    StepTextBuilder step;
    const int lid = step.tetrahedron("Lid");
    const int pot = step.tetrahedron("Pot");
    step.product("Pot with lid", step.representation({lid, pot}, step.context()));
    const int left = step.tetrahedron("Body");
    const int right = step.tetrahedron("Body");
    step.product("Pair", step.representation({left, right}, step.context()));
    const Scene scene = readText(step.text());
    ASSERT_TRUE(scene) << scene.error();
    EXPECT_THAT(factsOf(**scene).names, UnorderedElementsAre("Pot with lid", "Lid", "Pot", "Pair"));
}

TEST(StepConversion, SaysWhatIsWrongWithAFile)
{
    EXPECT_EQ(errorOf("Dear Sir or Madam"), "The file is not a STEP file: it does not begin with ISO-10303-21.");
    const std::string box = boxText("MM");
    EXPECT_EQ(errorOf(box.substr(0, box.size() / 2)),
              "The STEP file is cut off or damaged: its data has no end. Save or download it again.");
    EXPECT_EQ(errorOf(stepFileText("#1=CARTESIAN_POINT('',(0.,0.,0.));")),
              "The STEP file holds no shape that can be shown.");
    const Scene missing = readStepFile("/nowhere/part.step");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), "Cannot open \"part.step\": no such file or directory.");
}

TEST(StepConversion, ShowsWhatIsLeftOfADamagedSolid)
{
    std::string text = boxText("MM");
    // One face of six loses its surface.
    const std::size_t face = text.find("ADVANCED_FACE('',(");
    const std::size_t surface = text.find("),#", face) + 3;
    text.replace(surface, text.find(',', surface) - surface, "999999");
    const Scene scene = readText(text);
    ASSERT_TRUE(scene) << scene.error();
    EXPECT_EQ(factsOf(**scene).triangles, 10U);
}

TEST(StepConversion, WritesASceneFileWhateverItsName)
{
    const TempDir folder;
    const std::filesystem::path output = folder.path() / "result";
    StageTimes times;
    const auto done = convertStepFile(folder.write("input", boxText("MM")), output, &times);
    ASSERT_TRUE(done) << done.error();
    EXPECT_EQ(times.back().first, "save");
    std::filesystem::rename(output, folder.path() / "result.vxu");
    const auto loaded = loadObjectFromFile(folder.path() / "result.vxu", {});
    ASSERT_TRUE(loaded) << loaded.error();
    ASSERT_THAT(loaded->objects, SizeIs(1));
    const auto* part = dynamic_cast<const ObjectMesh*>(loaded->objects[0].get());
    ASSERT_TRUE(part);
    EXPECT_EQ(part->mesh()->triangles.size(), 12U);
    EXPECT_EQ(part->children().at(0)->name(), "Edges");
}

TEST(StepConversion, WritesNothingWhenItFails)
{
    const TempDir folder;
    const std::filesystem::path output = folder.path() / "result";
    EXPECT_FALSE(convertStepFile(folder.write("input", "no"), output));
    EXPECT_FALSE(std::filesystem::exists(output));
}

/// How the program ended and what it printed.
struct ProgramRun
{
    int status = -1;
    std::string output;
    std::string error;
};

ProgramRun runConverter(const TempDir& folder, const std::string& arguments)
{
    const std::string command = QX_BIN_DIR "/quorvix-convert " + arguments + " >" +
                                (folder.path() / "stdout").string() + " 2>" + (folder.path() / "stderr").string();
    const int status = std::system(command.c_str());
    return {status, readFile(folder.path() / "stdout"), readFile(folder.path() / "stderr")};
}

TEST(ConvertProgram, PrintsNothingWhenItSucceeds)
{
    const TempDir folder;
    const std::string input = folder.write("input", boxText("MM")).string();
    const ProgramRun run = runConverter(folder, input + " " + (folder.path() / "result").string());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "result"));
}

TEST(ConvertProgram, PrintsOneSentenceWhenItFails)
{
    const TempDir folder;
    const std::string input = folder.write("input", "solid cube\nendsolid\n").string();
    const ProgramRun run = runConverter(folder, input + " " + (folder.path() / "result").string());
    EXPECT_NE(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "The file is not a STEP file: it does not begin with ISO-10303-21.\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "result"));
}

TEST(ConvertProgram, ExplainsItsArguments)
{
    const TempDir folder;
    const ProgramRun run = runConverter(folder, "");
    EXPECT_NE(run.status, 0);
    EXPECT_EQ(run.error, "Usage: quorvix-convert IN OUT [--timings]\n");
}

} // namespace

} // namespace VX
