#include <VXMesh/StringConvert.h>

#include <gtest/gtest.h>

namespace VX
{

TEST(ToLower, ChangesLatinLettersOnly)
{
    EXPECT_EQ(toLower("Apple_X86_64 ÄÖ"), "apple_x86_64 ÄÖ");
    EXPECT_EQ(toLower(""), "");
}

TEST(TrimLeft, TakesWhiteSpaceOffTheFrontOnly)
{
    EXPECT_EQ(trimLeft(" \t\r\n a b "), "a b ");
    EXPECT_EQ(trimLeft("a"), "a");
    EXPECT_EQ(trimLeft(" \n"), "");
    EXPECT_EQ(trimLeft(""), "");
}

TEST(Utf8Path, GoesThereAndBack)
{
    const std::string text = "folder/Größe 部品.stl";
    EXPECT_EQ(utf8string(pathFromUtf8(text)), text);
    EXPECT_EQ(pathFromUtf8(text).filename(), pathFromUtf8("Größe 部品.stl"));
}

TEST(CommonFilesName, IsTheKindOfTheFiles)
{
    EXPECT_EQ(commonFilesName({"/home/ann/part.stl"}), "STL file");
    EXPECT_EQ(commonFilesName({"a.STEP"}), "STEP file");
    EXPECT_EQ(commonFilesName({"a.stl", "b.STL", "c.Stl"}), "3 STL files");
    EXPECT_EQ(commonFilesName({"a.stl", "b.ply", "c.stl"}), "3 files");
    EXPECT_EQ(commonFilesName({}), "0 files");
}

TEST(CommonFilesName, SaysNothingOfNamesAndUnknownEndings)
{
    EXPECT_EQ(commonFilesName({"report.secret"}), "file");
    EXPECT_EQ(commonFilesName({"stl"}), "file");
    EXPECT_EQ(commonFilesName({".stl"}), "file");
    EXPECT_EQ(commonFilesName({"a.jones", "b.smith"}), "2 files");
    EXPECT_EQ(commonFilesName({"a.stl", "b"}), "2 files");
}

TEST(CommonFilesName, KnowsEveryKindInItsList)
{
    for (const char* name : {"a.3mf", "a.xyz", "a.vxu", "a.obj", "a.off", "a.ply", "a.stp", "a.png"})
        EXPECT_NE(commonFilesName({name}), "file") << name;
}

} // namespace VX
