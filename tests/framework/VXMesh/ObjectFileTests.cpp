#include "FormatTestSupport.h"

#include <VXMesh/ObjectFile.h>

#include <gmock/gmock.h>

#include <set>
#include <vector>

namespace VX
{

namespace
{

constexpr std::string_view kKnown = "Known are .vxu, .stl, .ply, .obj, .off, .xyz.";

} // namespace

TEST(ObjectFile, UnknownEndingNamesTheKnownOnes)
{
    EXPECT_EQ(loadObjectFromFile("/folder/part.abc", {}).error(),
              "Cannot open \"part.abc\": the format \".abc\" is unknown. " + std::string(kKnown));
    EXPECT_EQ(saveObjectToFile(Object(), "/folder/part.abc", {}).error(),
              "Cannot write \"part.abc\": the format \".abc\" is unknown. " + std::string(kKnown));
    EXPECT_EQ(loadObjectFromFile("/folder/part", {}).error(),
              "Cannot open \"part\": a name without an ending tells no file format. " + std::string(kKnown));
}

TEST(ObjectFile, EndingsCountInAnyLetterCase)
{
    const TempDir folder;
    EXPECT_EQ(loadObjectFromFile(folder.write("part.PLY", "x"), {}).error(),
              "Cannot open \"part.PLY\": it is not a PLY file.");
}

TEST(ObjectFile, MissingAndEmptyFilesAreErrorsInEveryFormat)
{
    const TempDir folder;
    for (const FileFormat& format : fileFormats())
    {
        const std::string name = "part" + format.extensions.front();
        EXPECT_EQ(loadObjectFromFile(folder.path() / name, {}).error(),
                  "Cannot open \"" + name + "\": no such file or directory.");
        EXPECT_EQ(loadObjectFromFile(folder.write(name, ""), {}).error(),
                  "Cannot open \"" + name + "\": the file is empty.");
    }
}

TEST(ObjectFile, TextOfAnotherKindIsAnErrorInEveryFormat)
{
    const TempDir folder;
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.write("letter" + format.extensions.front(),
                                       "Dear reader,\n\nthis is a letter and not a model.\n\nYours\n");
        const auto loaded = loadObjectFromFile(path, {});
        ASSERT_FALSE(loaded.has_value()) << path;
        EXPECT_TRUE(loaded.error().starts_with("Cannot open \"letter.")) << loaded.error();
    }
}

TEST(ObjectFile, SavingIntoAMissingFolderIsAnErrorInEveryFormat)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const std::string name = "part" + format.extensions.front();
        EXPECT_EQ(saveObjectToFile(*mesh, folder.path() / "missing" / name, {}).error(),
                  "Cannot write \"" + name + "\": no such file or directory.");
    }
}

TEST(ObjectFile, EveryFormatSavesAndLoadsAMesh)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.path() / ("part" + format.extensions.front());
        ASSERT_TRUE(saveObjectToFile(*mesh, path, {}).has_value()) << path;
        const auto loaded = loadObjectFromFile(path, {});
        ASSERT_TRUE(loaded.has_value()) << loaded.error();
        EXPECT_EQ(loaded->objects.front()->worldBox().max(), Vector3d(1.0, 1.0, 1.0)) << path;
    }
}

TEST(ObjectFile, ProgressGrowsFromZeroToOneInEveryFormat)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.path() / ("part" + format.extensions.front());
        ASSERT_TRUE(saveObjectToFile(*mesh, path, {}).has_value());
        std::vector<float> reported;
        const auto note = [&](float fraction)
        {
            reported.push_back(fraction);
            return true;
        };
        ASSERT_TRUE(loadObjectFromFile(path, note).has_value());
        EXPECT_TRUE(std::ranges::is_sorted(reported)) << path;
        EXPECT_EQ(reported.front(), 0.0F) << path;
        EXPECT_EQ(reported.back(), 1.0F) << path;
    }
}

TEST(ObjectFile, CanceledSavingLeavesTheOldFileInEveryFormat)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const std::string name = "part" + format.extensions.front();
        const auto path = folder.write(name, "old");
        EXPECT_EQ(saveObjectToFile(*mesh, path, [](float) { return false; }).error(), operationCanceledText()) << name;
        EXPECT_EQ(readFile(path), "old");
    }
    const auto files = std::distance(std::filesystem::directory_iterator(folder.path()), {});
    EXPECT_EQ(static_cast<std::size_t>(files), fileFormats().size()) << "temporary files remain";
}

TEST(ObjectFile, SavingThatIsCanceledWhenAllIsWrittenLeavesTheOldFileInEveryFormat)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.write("part" + format.extensions.front(), "old");
        float last = 0;
        const auto saved = saveObjectToFile(*mesh, path, [&](float fraction) { return (last = fraction) < 1; });
        ASSERT_FALSE(saved) << path;
        EXPECT_EQ(saved.error(), operationCanceledText());
        EXPECT_EQ(last, 1);
        EXPECT_EQ(readFile(path), "old");
    }
}

TEST(ObjectFile, SavingKeepsAFileOfTheNameInEveryFormatWhereToldTo)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.write("part" + format.extensions.front(), "old");
        EXPECT_FALSE(saveObjectToFile(*mesh, path, {}, AtomicFile::Existing::Keep)) << path;
        EXPECT_EQ(readFile(path), "old");
    }
}

TEST(ObjectFile, CanceledLoadingSaysSoInEveryFormat)
{
    const TempDir folder;
    const auto mesh = makeMeshObject(makeTetrahedron());
    for (const FileFormat& format : fileFormats())
    {
        const auto path = folder.path() / ("part" + format.extensions.front());
        ASSERT_TRUE(saveObjectToFile(*mesh, path, {}).has_value());
        // At the begin, in the middle, at the end.
        for (const float limit : {0.0F, 0.5F, 1.0F})
            EXPECT_EQ(loadObjectFromFile(path, [&](float fraction) { return fraction < limit; }).error(),
                      operationCanceledText())
                << path << " at " << limit;
    }
}

} // namespace VX
