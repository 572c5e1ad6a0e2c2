#include "formats/OffFormat.h"

#include "FormatTestSupport.h"

#include <gmock/gmock.h>

#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

tl::expected<LoadedObjects, std::string> read(const std::string& content, const ProgressCallback& progress = {})
{
    return readOff(sourceOf(content, "/folder/part.off"), progress);
}

const std::string kSquarePoints = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n";

} // namespace

TEST(OffFormat, ReadsPolygons)
{
    const auto loaded = read("OFF\n4 2 0\n" + kSquarePoints + "4 0 1 2 3\n3 0 1 3\n");
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 4U);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3), Triangle(0, 1, 3)));
    EXPECT_EQ(object->name(), "part");
    EXPECT_THAT(loaded->warnings, IsEmpty());
}

TEST(OffFormat, ReadsHeadersAsProgramsWriteThem)
{
    for (const std::string_view header : {"OFF 4 1 0\n", "# made by hand\n\nOFF # kind\n# counts\n4 1 0\n\n",
                                          "OFF\r\n4 1 0\r\n", "OFF\n4 1\n", "\xEF\xBB\xBFOFF\n4 1 0\n"})
    {
        const auto object = onlyMesh(read(std::string(header) + kSquarePoints + "4 0 1 2 3\n"));
        ASSERT_TRUE(object) << header;
        EXPECT_EQ(object->mesh()->triangles.size(), 2U) << header;
    }
}

TEST(OffFormat, CommentsAndEmptyLinesStandAnywhere)
{
    const auto object = onlyMesh(read("OFF\n3 1 0\n0 0 0 # first\n\n# second\n1 0 0\n  \n0 1 0\n\n# face\n3 0 1 2\n"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points[2], Vector3f(0.0F, 1.0F, 0.0F));
}

TEST(OffFormat, ReadsColorsOfPoints)
{
    const auto object = onlyMesh(read("COFF\n3 1 0\n0 0 0 255 128 0 255\n1 0 0 0.5 0 1.0 0.2\n0 1 0 1 0 0\n3 0 1 2\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->vertexColors,
                ElementsAre(Color{255, 128, 0, 255}, Color{128, 0, 255, 51}, Color{255, 0, 0, 255}));
}

TEST(OffFormat, ReadsNormalsBeforeColors)
{
    const auto object = onlyPoints(read("CNOFF\n1 0 0\n1 2 3 0 0 1 10 20 30 255\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->pointCloud()->normals, ElementsAre(Vector3f(0.0F, 0.0F, 1.0F)));
    EXPECT_THAT(object->pointCloud()->colors, ElementsAre(Color{10, 20, 30, 255}));
}

TEST(OffFormat, ReadsColorsOfFaces)
{
    const auto object = onlyMesh(read("OFF\n4 3 0\n" + kSquarePoints + "3 0 1 2\n4 0 1 2 3 200 100 50\n3 0 1 3 7\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->faceColors, ElementsAre(VisualObject::defaultColor(), Color{200, 100, 50, 255},
                                                        Color{200, 100, 50, 255}, VisualObject::defaultColor()));
}

TEST(OffFormat, TruncatedFilesGiveWhatIsThereAndAWarning)
{
    const auto loaded = read("OFF\n4 2 0\n" + kSquarePoints + "4 0 1 2 3\n");
    ASSERT_TRUE(onlyMesh(loaded));
    EXPECT_THAT(loaded->warnings, ElementsAre("\"part.off\": the file ends too early; 1 of its 2 faces were read."));
    const auto lying = read("OFF\n9000000000000000000 9000000000000000000 0\n" + kSquarePoints);
    ASSERT_TRUE(onlyPoints(lying));
    EXPECT_EQ(lying->warnings.size(), 2U);
}

TEST(OffFormat, DamagedFacesAreLeftOutWithAWarning)
{
    for (const std::string_view face : {"3 0 1 4", "3 0 1 -1", "3 0 1 x", "4 0 1 2", "2 0 1", "x", "-3 0 1 2"})
    {
        const auto loaded = read("OFF\n4 2 0\n" + kSquarePoints + "3 0 1 2\n" + std::string(face) + "\n");
        const auto object = onlyMesh(loaded);
        ASSERT_TRUE(object) << face;
        EXPECT_EQ(object->mesh()->triangles.size(), 1U) << face;
        EXPECT_EQ(loaded->warnings.size(), 1U) << face;
    }
}

TEST(OffFormat, ErrorsAreOneSentence)
{
    const std::string notOff = "Cannot open \"part.off\": it is not an OFF file, or one of a kind that is not known.";
    for (const std::string_view content :
         {"hello\n", "OFF", "OFF\n4 x 0\n", "OFF\n-4 1 0\n", "4OFF\n1 0 0\n", "OFF BINARY\n", "\1\2\3"})
        EXPECT_EQ(read(std::string(content)).error(), notOff) << content;
    EXPECT_EQ(read("OFF\n0 0 0\n").error(), "Cannot open \"part.off\": it holds no points.");
}

TEST(OffFormat, StopsWhenCanceled)
{
    EXPECT_EQ(read("OFF\n4 0 0\n" + kSquarePoints, [](float) { return false; }).error(), operationCanceledText());
}

TEST(OffFormat, SavedMeshReadsBackTheSame)
{
    expectMeshReadsBackTheSame("part.off");
}

TEST(OffFormat, SavingMergesObjectsAndKeepsTheOutsideOut)
{
    const auto root = std::make_shared<Object>();
    const auto mirrored = makeMeshObject(makeTetrahedron());
    mirrored->setTransform(Transform(Eigen::Translation3d(5.0, 0.0, 0.0) * Eigen::Scaling(-1.0, 1.0, 1.0)));
    root->addChild(makeMeshObject(makeTetrahedron()));
    root->addChild(mirrored);
    const auto object = onlyMesh(saveAndLoad(*root, "part.off"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 8U);
    EXPECT_DOUBLE_EQ(sixfoldVolume(*object), 2.0);
}

} // namespace VX
