#include "AgentFixture.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class FolderToolsTests : public VX::Test::AgentFixture
{
protected:
    [[nodiscard]] Json::Value list_(const std::string& more = {})
    {
        return call_("files.list", R"({"folder": ")" + folder_.path().string() + "\"" + more + "}");
    }
};

TEST_F(FolderToolsTests, ListsFoldersAndWhatCanBeLoaded)
{
    folder_.write("part.STL", "12345");
    folder_.write("notes.txt~", "");
    folder_.write("zebra/deep.stl", "");
    folder_.write(".hidden/part.stl", "");
    folder_.write(".part.stl", "");
    const Json::Value list = list_();
    ASSERT_THAT(namesOf_(list["entries"]), ElementsAre("zebra", "part.STL"));
    EXPECT_EQ(list["entries"][0]["kind"].asString(), "folder");
    EXPECT_EQ(list["entries"][1]["kind"].asString(), "file");
    EXPECT_EQ(list["entries"][1]["bytes"].asInt(), 5);
    EXPECT_EQ(list["total"].asInt(), 2);
}

TEST_F(FolderToolsTests, TellsPathsThatCanBeLoaded)
{
    folder_.write("part.stl", VX::Test::triangleStl());
    Json::Value file;
    file["path"] = list_()["entries"][0]["path"];
    EXPECT_EQ(call_("scene.loadFile", file.toStyledString())["objects"].size(), 1U);
}

TEST_F(FolderToolsTests, GoesOnWhereTheListBeforeEnded)
{
    folder_.write("a.stl", "");
    folder_.write("b.stl", "");
    const Json::Value first = list_(R"(, "limit": 1)");
    EXPECT_THAT(namesOf_(first["entries"]), ElementsAre("a.stl"));
    EXPECT_THAT(namesOf_(list_(R"(, "cursor": ")" + first["nextCursor"].asString() + "\"")["entries"]),
                ElementsAre("b.stl"));
}

TEST_F(FolderToolsTests, ListsTheFoldersThatMayBeUsedWhereNoneIsNamed)
{
    const Json::Value list = call_("files.list");
    ASSERT_EQ(list["entries"].size(), 1U);
    EXPECT_EQ(list["entries"][0]["path"].asString(), std::filesystem::canonical(folder_.path()).string());
}

TEST_F(FolderToolsTests, TellsNothingOfOtherFolders)
{
    const VX::Test::TempDir elsewhere;
    elsewhere.write("part.stl", "");
    EXPECT_THAT(error_("files.list", R"({"folder": ")" + elsewhere.path().string() + "\"}"),
                HasSubstr("in no folder that agents may use"));
    std::filesystem::create_directory_symlink(elsewhere.path(), folder_.path() / "way out");
    std::filesystem::create_symlink(elsewhere.path() / "part.stl", folder_.path() / "part.stl");
    EXPECT_TRUE(list_()["entries"].empty());
}

TEST_F(FolderToolsTests, ListsNoFile)
{
    const auto file = folder_.write("part.stl", "");
    EXPECT_THAT(error_("files.list", R"({"folder": ")" + file.string() + "\"}"), HasSubstr("is no folder"));
}

} // namespace VX
