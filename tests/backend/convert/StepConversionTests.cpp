#include "SceneFacts.h"
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

#include <cstdlib>
#include <filesystem>
#include <string>

namespace VX
{

namespace
{

using Test::expectBox;
using Test::factsOf;
using Test::readFile;
using Test::SceneFacts;
using Test::stepFileText;
using Test::StepTextBuilder;
using Test::TempDir;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using Scene = tl::expected<std::shared_ptr<Object>, std::string>;

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
    expectBox(**scene, Box3d(Vector3d(-12, 0, 0), Vector3d(12, 2, 2)));
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
    expectBox(**scene, Box3d(Vector3d(0, 0, 0), Vector3d(1, 2, 3)));
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
