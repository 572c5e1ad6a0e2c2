#include "formats/ObjFormat.h"

#include "FormatTestSupport.h"

#include <VXMesh/ObjectLines.h>

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
    return readObj(sourceOf(content, "/folder/part.obj"), progress);
}

const std::string kSquarePoints = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

const ObjectMesh& meshAt(const Object& parent, std::size_t i)
{
    return dynamic_cast<const ObjectMesh&>(*parent.children().at(i));
}

} // namespace

TEST(ObjFormat, ReadsPolygons)
{
    const auto object = onlyMesh(read("# a square\n\n" + kSquarePoints + "s off\nusemtl none\nf 1 2 3 4\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->points, ElementsAre(Vector3f(0.0F, 0.0F, 0.0F), Vector3f(1.0F, 0.0F, 0.0F),
                                                    Vector3f(1.0F, 1.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F)));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
    EXPECT_EQ(object->name(), "part");
}

TEST(ObjFormat, ReadsAllFormsOfCorners)
{
    for (const std::string_view face : {"f 1 2 3", "f 1/1 2/2 3/3", "f 1//1 2//1 3//1", "f 1/1/1 2/2/1 3/3/1",
                                        "f -4 -3 -2", "f -4//-1 -3//-1 -2//-1", "f 1/ 2/ 3/"})
    {
        const auto object =
            onlyMesh(read(kSquarePoints + "vt 0 0\nvt 1 0\nvt 1 1\nvn 0 0 1\n" + std::string(face) + "\n"));
        ASSERT_TRUE(object) << face;
        EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2))) << face;
    }
}

TEST(ObjFormat, ReadsCarriageReturnsCommentsAndContinuedLines)
{
    const auto object = onlyMesh(read("v 0 0 \\\r\n 0\r\nv 1 0 0 # the second\r\n\tv  1\t1 0\r\nf 1 \\\n2 \\\n3"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 3U);
    EXPECT_EQ(object->mesh()->points[2], Vector3f(1.0F, 1.0F, 0.0F));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2)));
}

TEST(ObjFormat, NegativeIndicesCountBackFromTheirLine)
{
    const auto object = onlyMesh(read("v 0 0 0\nv 1 0 0\nv 1 1 0\nf -3 -2 -1\nv 0 1 0\nf -4 -2 -1\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
}

TEST(ObjFormat, FacesMayComeBeforeTheirPoints)
{
    const auto object = onlyMesh(read("f 1 2 3\n" + kSquarePoints));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
}

TEST(ObjFormat, FileOfManyPiecesKeepsItsOrder)
{
    constexpr std::uint32_t kCount = 150000;
    std::string text = "v 0.25 0 0\nv 0.25 1 0\n";
    for (std::uint32_t i = 2; i < kCount; ++i)
        text +=
            "v " + std::to_string(i) + ".25 " + std::to_string(i % 2) + " 0\nf -3 -2 " + std::to_string(i + 1) + "\n";
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    ASSERT_EQ(object->mesh()->points.size(), kCount);
    ASSERT_EQ(object->mesh()->triangles.size(), kCount - 2);
    for (std::uint32_t i = 2; i < kCount; ++i)
    {
        ASSERT_EQ(object->mesh()->points[i].x(), static_cast<float>(i) + 0.25F);
        ASSERT_EQ(object->mesh()->triangles[i - 2], Triangle(i - 2, i - 1, i));
    }
}

TEST(ObjFormat, PieceNeverEndsInsideAContinuedLine)
{
    std::string text = kSquarePoints;
    constexpr std::size_t kFaces = 200000;
    for (std::size_t i = 0; i < kFaces; ++i)
        text += "f 1 \\\n2 \\\r\n3\n";
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), kFaces);
}

TEST(ObjFormat, ReadsVertexColors)
{
    const auto object = onlyMesh(read("v 0 0 0 1 0 0\nv 1 0 0 0 0.502 0\nv 0 1 0\nf 1 2 3\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->vertexColors,
                ElementsAre(Color{255, 0, 0, 255}, Color{0, 128, 0, 255}, VisualObject::defaultColor()));
    const auto bytes = onlyMesh(read("v 0 0 0 255 0 0\nv 1 0 0 0 128 0\nv 0 1 0 0 0 1\nf 1 2 3\n"));
    ASSERT_TRUE(bytes);
    EXPECT_THAT(bytes->mesh()->vertexColors,
                ElementsAre(Color{255, 0, 0, 255}, Color{0, 128, 0, 255}, Color{0, 0, 1, 255}));
}

TEST(ObjFormat, KeepsNormalsWhereEachPointHasOne)
{
    const std::string normals = "vn 0 0 1\nvn 0 1 0\nvn 0 0 2\n";
    const auto same = onlyMesh(read(kSquarePoints + normals + "f 1//1 2//2 3//3\nf 1//1 3//3 4//1\n"));
    ASSERT_TRUE(same);
    EXPECT_THAT(same->mesh()->normals, ElementsAre(Vector3f(0.0F, 0.0F, 1.0F), Vector3f(0.0F, 1.0F, 0.0F),
                                                   Vector3f(0.0F, 0.0F, 1.0F), Vector3f(0.0F, 0.0F, 1.0F)));
    const auto different = onlyMesh(read(kSquarePoints + normals + "f 1//1 2//2 3//3\nf 1//2 3//3 4//1\n"));
    ASSERT_TRUE(different);
    EXPECT_THAT(different->mesh()->normals, IsEmpty());
    const auto missing = onlyMesh(read(kSquarePoints + normals + "f 1//1 2//2 3\n"));
    ASSERT_TRUE(missing);
    EXPECT_THAT(missing->mesh()->normals, IsEmpty());
}

TEST(ObjFormat, GroupsBecomeObjectsWithTheirOwnPoints)
{
    const auto loaded = read(kSquarePoints + "v 9 9 9\ng first\nf 1 2 3\ng second part\nf 5 4 3\ng first\nf 1 3 4\n");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    ASSERT_EQ(loaded->objects.size(), 1U);
    const Object& root = *loaded->objects.front();
    EXPECT_EQ(root.name(), "part");
    ASSERT_EQ(root.children().size(), 2U);
    EXPECT_EQ(root.children()[0]->name(), "first");
    EXPECT_THAT(meshAt(root, 0).mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
    EXPECT_EQ(meshAt(root, 0).mesh()->points.size(), 4U);
    EXPECT_EQ(root.children()[1]->name(), "second part");
    EXPECT_THAT(meshAt(root, 1).mesh()->points,
                ElementsAre(Vector3f(1.0F, 1.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F), Vector3f(9.0F, 9.0F, 9.0F)));
    EXPECT_THAT(meshAt(root, 1).mesh()->triangles, ElementsAre(Triangle(2, 1, 0)));
}

TEST(ObjFormat, GroupsOfOneObjectAreBelowIt)
{
    const auto loaded = read(kSquarePoints + "o lid\ng top\nf 1 2 3\ng side\nf 1 3 4\no box\ng any\nf 2 3 4\n");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const Object& root = *loaded->objects.front();
    ASSERT_EQ(root.children().size(), 2U);
    EXPECT_EQ(root.children()[0]->name(), "lid");
    EXPECT_EQ(root.children()[0]->typeName(), "Object");
    EXPECT_EQ(meshAt(*root.children()[0], 1).name(), "side");
    EXPECT_EQ(meshAt(root, 1).name(), "box");
}

TEST(ObjFormat, OnlyGroupGivesItsNameToTheObject)
{
    const auto object = onlyMesh(read("g unused\n" + kSquarePoints + "g plate\nf 1 2 3\n"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->name(), "plate");
}

TEST(ObjFormat, GroupsThatUseFewPointsFarApartWorkToo)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "v " + std::to_string(i) + " 0 0\n";
    const auto loaded = read(text + "g a\nf 1 500 1000\ng b\nf 1 2 3\n");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const Mesh& mesh = *meshAt(*loaded->objects.front(), 0).mesh();
    EXPECT_THAT(mesh.points,
                ElementsAre(Vector3f(0.0F, 0.0F, 0.0F), Vector3f(499.0F, 0.0F, 0.0F), Vector3f(999.0F, 0.0F, 0.0F)));
    EXPECT_THAT(mesh.triangles, ElementsAre(Triangle(0, 1, 2)));
}

TEST(ObjFormat, ReadsPolylines)
{
    const auto loaded = read(kSquarePoints + "l 1 2 3\nl 3/1 -1/1\nl 7 1\n");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const auto& lines = dynamic_cast<const ObjectLines&>(*loaded->objects.front());
    EXPECT_THAT(lines.lines()->segments, ElementsAre(Segment(0, 1), Segment(1, 2), Segment(2, 3)));
    EXPECT_EQ(lines.name(), "part");
}

TEST(ObjFormat, PointsAloneAreAPointCloud)
{
    const auto object = onlyPoints(read("v 1 2 3 0 0 1\nvn 0 1 0\nv 4 5 6 0 1 0\nvn 1 0 0\n"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->pointCloud()->points.size(), 2U);
    EXPECT_EQ(object->pointCloud()->colors[0], (Color{0, 0, 255, 255}));
    EXPECT_EQ(object->pointCloud()->normals[1], Vector3f(1.0F, 0.0F, 0.0F));
}

TEST(ObjFormat, CoordinatesFarFromTheOriginAreKeptExactly)
{
    const auto loaded = read("v 500000.001 0 0\nv 500000.002 0 0\nv 500000.001 0.002 0\ng a\nf 1 2 3\ng b\nf 3 2 1\n");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const ObjectMesh& mesh = meshAt(*loaded->objects.front(), 0);
    EXPECT_NEAR((mesh.worldTransform() * mesh.mesh()->points[1].cast<double>()).x(), 500000.002, 1e-9);
}

TEST(ObjFormat, DamagedFacesAreLeftOutWithAWarning)
{
    for (const std::string_view face :
         {"f 1 2 5", "f 0 1 2", "f 1 2 -5", "f 1 2 x", "f 1 2 3x", "f -1x 1 2", "f 1 2 99999999999999999999"})
    {
        const auto loaded = read(kSquarePoints + "f 1 2 3\n" + std::string(face) + "\n");
        const auto object = onlyMesh(loaded);
        ASSERT_TRUE(object) << face;
        EXPECT_EQ(object->mesh()->triangles.size(), 1U) << face;
        EXPECT_THAT(loaded->warnings,
                    ElementsAre("\"part.obj\": faces that refer to points that are not there were left out: 1."))
            << face;
    }
    EXPECT_EQ(read(kSquarePoints + "f 1 2 3\nf 1 2\n")->warnings.size(), 1U);
    EXPECT_EQ(read(kSquarePoints + "v 1 nan\nf 1 2 3\nf 1 2 5\n")->warnings.size(), 2U);
}

TEST(ObjFormat, ErrorsAreOneSentence)
{
    EXPECT_EQ(read(std::string("\0\1\2", 3)).error(), "Cannot open \"part.obj\": it is not an OBJ file.");
    EXPECT_EQ(read("hello\n").error(), "Cannot open \"part.obj\": it holds no points.");
    EXPECT_EQ(read("v 0 0 0\nf 1 2 3\n").error(), "Cannot open \"part.obj\": none of its faces can be used.");
    EXPECT_EQ(read("v 0 0 0\nl 1 2\n").error(), "Cannot open \"part.obj\": none of its lines and points can be used.");
    EXPECT_EQ(read("v x y z\n").error(), "Cannot open \"part.obj\": it holds no points.");
}

TEST(ObjFormat, StopsWhenCanceled)
{
    EXPECT_EQ(read(kSquarePoints, [](float) { return false; }).error(), operationCanceledText());
}

TEST(ObjFormat, SavedTreeKeepsItsObjects)
{
    const auto root = std::make_shared<Object>();
    const auto first = makeMeshObject(makeTetrahedron());
    first->setName("bolt");
    Mesh colored = makeTetrahedron();
    for (std::uint8_t i = 0; i < 4; ++i)
    {
        colored.vertexColors.push_back({i, 100, 200, 255});
        colored.normals.emplace_back(0.0F, 0.0F, 1.0F);
    }
    const auto second = makeMeshObject(colored);
    second->setName("bolt");
    second->setTransform(Transform(Eigen::Scaling(1.0, 1.0, -1.0)));
    auto segments = std::make_shared<Lines>();
    segments->points = {{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}, {1.0F, 1.0F, 0.0F}};
    segments->segments = {Segment(0, 1), Segment(2, 1)};
    const auto lines = std::make_shared<ObjectLines>(segments);
    lines->setName("edges");
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{7.0F, 8.0F, 9.0F}};
    const auto points = std::make_shared<ObjectPoints>(cloud);
    points->setName("scan\nhere");
    root->addChild(lines);
    root->addChild(points);
    root->addChild(first);
    root->addChild(second);

    const auto loaded = saveAndLoad(*root, "scene.obj");
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    EXPECT_THAT(loaded->warnings, IsEmpty());
    const Object& tree = *loaded->objects.front();
    ASSERT_EQ(tree.children().size(), 4U);
    EXPECT_EQ(tree.children()[0]->name(), "bolt");
    EXPECT_EQ(meshAt(tree, 0).mesh()->points, first->mesh()->points);
    EXPECT_EQ(meshAt(tree, 0).mesh()->triangles, first->mesh()->triangles);
    EXPECT_THAT(meshAt(tree, 0).mesh()->vertexColors, IsEmpty());
    EXPECT_EQ(tree.children()[1]->name(), "bolt 2");
    EXPECT_DOUBLE_EQ(sixfoldVolume(meshAt(tree, 1)), 1.0);
    EXPECT_EQ(meshAt(tree, 1).mesh()->vertexColors, colored.vertexColors);
    EXPECT_EQ(meshAt(tree, 1).mesh()->normals.front(), Vector3f(0.0F, 0.0F, -1.0F));
    EXPECT_EQ(tree.children()[2]->name(), "scan_here");
    EXPECT_EQ(dynamic_cast<const ObjectPoints&>(*tree.children()[2]).pointCloud()->points, cloud->points);
    EXPECT_EQ(tree.children()[3]->name(), "edges");
    EXPECT_EQ(dynamic_cast<const ObjectLines&>(*tree.children()[3]).lines()->segments, segments->segments);
}

TEST(ObjFormat, NamelessMeshTakesTheNameOfTheFile)
{
    const auto object = onlyMesh(saveAndLoad(*makeMeshObject(makeTetrahedron()), "plate.obj"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->name(), "plate");
}

TEST(ObjFormat, SavingFarFromTheOriginKeepsTheDetail)
{
    const auto mesh = makeMeshObject(makeTetrahedron());
    mesh->setTransform(Transform(Eigen::Translation3d(5e6, 0.0, 0.0) * Eigen::Scaling(0.001)));
    const auto object = onlyMesh(saveAndLoad(*mesh, "part.obj"));
    ASSERT_TRUE(object);
    EXPECT_NEAR(object->worldBox().sizes().x(), 0.001, 1e-9);
}

TEST(ObjFormat, ReadsTheSampleFile)
{
    if (!std::filesystem::exists(samplePath("fandisk.obj")))
        GTEST_SKIP() << "samples are not here";
    const auto object = onlyMesh(loadObjectFromFile(samplePath("fandisk.obj"), {}));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 2877U);
    EXPECT_EQ(object->mesh()->triangles.size(), 5750U);
    EXPECT_EQ(object->mesh()->normals.size(), 2877U);
}

} // namespace VX
