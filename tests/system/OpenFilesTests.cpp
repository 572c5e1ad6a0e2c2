#include "tests/system/ProgramRun.h"

#include <VXMesh/Json.h>
#include <VXViewer/ImageFile.h>

#include <gtest/gtest.h>

namespace VX::Test
{

namespace
{

const std::string ownAssembly = QX_SOURCE_DIR "/samples/bearing-block.step";

constexpr const char* triangle = "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 10 0 0\nvertex 0 20 0\n"
                                 "endloop\nendfacet\nendsolid t\n";

/// The nodes of `type` below `node`.
int countOf(const Json::Value& node, const std::string& type)
{
    int count = node["type"].asString() == type ? 1 : 0;
    for (const auto& child : node["children"])
        count += countOf(child, type);
    return count;
}

class OpenFiles : public testing::Test
{
protected:
    [[nodiscard]] Json::Value sceneOf(const std::vector<std::string>& files) const
    {
        auto arguments = files;
        arguments.insert(arguments.end(), {"-sceneInfo", "-"});
        const auto result = program_.run(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return deserializeJsonValue(result.output).value_or(Json::Value());
    }

    [[nodiscard]] std::string fileOf(const std::string& name, std::string_view content) const
    {
        return program_.folder().write(name, content).string();
    }

    ProgramRun program_;
};

TEST_F(OpenFiles, PrintsTheTreeOfAMesh)
{
    const auto scene = sceneOf({fileOf("one.stl", triangle)});
    ASSERT_EQ(scene["children"].size(), 1U);
    EXPECT_EQ(scene["children"][0]["triangles"].asInt(), 1);
    EXPECT_EQ(scene["box"]["max"][1].asDouble(), 20);
}

TEST_F(OpenFiles, OpensSeveralInTheOrderGiven)
{
    const auto scene = sceneOf({fileOf("b.stl", triangle), fileOf("a.stl", triangle)});
    ASSERT_EQ(scene["children"].size(), 2U);
    EXPECT_EQ(scene["children"][0]["name"].asString(), "b");
    EXPECT_EQ(scene["children"][1]["name"].asString(), "a");
}

TEST_F(OpenFiles, ConvertsAnAssemblyThroughTheLocalServices)
{
    const auto scene = sceneOf({ownAssembly});
    EXPECT_GT(countOf(scene, "ObjectMesh"), 1);
    EXPECT_GT(countOf(scene, "ObjectLines"), 0);
}

TEST_F(OpenFiles, ConvertsTwoFilesOfTheSameStem)
{
    std::filesystem::copy_file(ownAssembly, program_.folder().path() / "bearing-block.STP");
    const auto scene = sceneOf({ownAssembly, (program_.folder().path() / "bearing-block.STP").string()});
    EXPECT_EQ(scene["children"].size(), 2U);
}

TEST_F(OpenFiles, TakesAPictureOfTheScene)
{
    const auto picture = program_.folder().path() / "picture.png";
    const auto result =
        program_.run({fileOf("one.stl", triangle), "--screenshot", picture.string(), "-size", "320x200"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const auto image = readPng(picture);
    ASSERT_TRUE(image) << image.error();
    EXPECT_EQ(image->size, (PixelSize{320, 200}));
    // The triangle in the middle is lighter than the background in the corner.
    EXPECT_GT(image->at(160, 100).g, image->at(2, 2).g + 40);
}

TEST_F(OpenFiles, TakesAPictureOfTheWindow)
{
    const auto picture = program_.folder().path() / "window.png";
    const auto result = program_.run({fileOf("one.stl", triangle), "-windowShot", picture.string()});
    EXPECT_EQ(result.status, 0) << result.errors;
    const auto image = readPng(picture);
    ASSERT_TRUE(image) << image.error();
    EXPECT_EQ(image->size, (PixelSize{1280, 800}));
}

TEST_F(OpenFiles, WritesNothingButTheTreeToStandardOutput)
{
    const auto result = program_.run({ownAssembly, "-sceneInfo", "-"});
    EXPECT_TRUE(result.output.starts_with("{")) << result.output.substr(0, 100);
    EXPECT_EQ(result.errors, "");
}

TEST_F(OpenFiles, NamesAMissingFileAndEndsWithOne)
{
    const auto result = program_.run({"/no/such/file.stl", "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"file.stl\": no such file or directory.\n");
}

TEST_F(OpenFiles, OpensTheGoodOnesBesideABadOne)
{
    const auto result = program_.run({"/no/such/file.stl", fileOf("one.stl", triangle), "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(deserializeJsonValue(result.output).value_or(Json::Value())["children"].size(), 1U);
}

TEST_F(OpenFiles, SaysThatAStepFileIsNone)
{
    const auto result = program_.run({fileOf("text.step", "Dear reader,\n"), "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("not a STEP file"), std::string::npos) << result.errors;
}

TEST_F(OpenFiles, SaysThatAStepFileIsCutOff)
{
    const auto whole = readFile(ownAssembly);
    const auto result =
        program_.run({fileOf("half.step", std::string_view(whole).substr(0, whole.size() / 2)), "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("cut off"), std::string::npos) << result.errors;
}

TEST_F(OpenFiles, RefusesAnUnknownOptionWithTwo)
{
    const auto result = program_.run({"-frobnicate"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "Unknown option \"-frobnicate\". \"Quorvix -help\" lists them.\n");
}

TEST_F(OpenFiles, RefusesADeploymentThatIsNotThereWithTwo)
{
    EXPECT_EQ(program_.run({"-deployment", "/no/such.json", "-sceneInfo", "-"}).status, 2);
}

TEST_F(OpenFiles, PrintsItsVersion)
{
    const auto result = program_.run({"-version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "Quorvix 1.0.0.0\n");
}

TEST_F(OpenFiles, FailsWhereThePictureCannotBeWritten)
{
    const auto result = program_.run({fileOf("one.stl", triangle), "-screenshot", "/no/such/folder/p.png"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("Cannot write \"p.png\""), std::string::npos) << result.errors;
}

} // namespace

} // namespace VX::Test
