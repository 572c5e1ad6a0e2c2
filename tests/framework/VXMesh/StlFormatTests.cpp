#include "formats/StlFormat.h"

#include "FormatTestSupport.h"

#include <VXMesh/ObjectLines.h>

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;

using Facet = std::array<Vector3f, 3>;

std::string binaryStl(const std::vector<Facet>& facets, std::uint32_t statedCount,
                      std::string header = "made by a test")
{
    header.resize(80, '\0');
    std::string bytes = header;
    append(bytes, statedCount);
    for (const Facet& facet : facets)
    {
        append(bytes, Vector3f(0.0F, 0.0F, 0.0F));
        append(bytes, facet);
        bytes.append(2, '\0');
    }
    return bytes;
}

std::string binaryStl(const std::vector<Facet>& facets)
{
    return binaryStl(facets, static_cast<std::uint32_t>(facets.size()));
}

/// Two triangles of a square.
std::vector<Facet> square()
{
    const Vector3f a(0.0F, 0.0F, 0.0F);
    const Vector3f b(1.0F, 0.0F, 0.0F);
    const Vector3f c(1.0F, 1.0F, 0.0F);
    const Vector3f d(0.0F, 1.0F, 0.0F);
    return {{a, b, c}, {a, c, d}};
}

tl::expected<LoadedObjects, std::string> read(const std::string& content, const ProgressCallback& progress = {})
{
    return readStl(sourceOf(content, "/folder/part.stl"), progress);
}

constexpr std::string_view kTextSquare = "solid square\n"
                                         "  facet normal 0 0 1\n"
                                         "    outer loop\n"
                                         "      vertex 0 0 0\n"
                                         "      vertex 1e0 0 0\n"
                                         "      vertex 1.0 +1 0\n"
                                         "    endloop\n"
                                         "  endfacet\n"
                                         "  facet normal 0 0 1\n"
                                         "    outer loop\n"
                                         "      vertex 0 -0 0\n"
                                         "      vertex 1 1 0\n"
                                         "      vertex 0 1 0\n"
                                         "    endloop\n"
                                         "  endfacet\n"
                                         "endsolid square\n";

} // namespace

TEST(StlFormat, EqualCornersBecomeOnePointInTheOrderOfTheFile)
{
    const auto object = onlyMesh(read(binaryStl(square())));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->points, ElementsAre(Vector3f(0.0F, 0.0F, 0.0F), Vector3f(1.0F, 0.0F, 0.0F),
                                                    Vector3f(1.0F, 1.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F)));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
    EXPECT_EQ(object->name(), "part");
}

TEST(StlFormat, MinusZeroIsZero)
{
    auto facets = square();
    facets[1][0] = Vector3f(-0.0F, 0.0F, -0.0F);
    const auto object = onlyMesh(read(binaryStl(facets)));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 4U);
}

TEST(StlFormat, PointsOneBitApartStayApart)
{
    auto facets = square();
    facets[1][1].x() = std::nextafter(1.0F, 2.0F);
    const auto object = onlyMesh(read(binaryStl(facets)));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 5U);
}

TEST(StlFormat, WeldsAcrossTheChunksOfALargeFile)
{
    // Each row of a grid shares its points with the next one, and the last row with the first of another chunk.
    constexpr int kSize = 300;
    std::vector<Facet> facets;
    const auto at = [](int x, int y) { return Vector3f(static_cast<float>(x), static_cast<float>(y), 0.0F); };
    for (int y = 0; y < kSize; ++y)
    {
        for (int x = 0; x < kSize; ++x)
        {
            facets.push_back({at(x, y), at(x + 1, y), at(x + 1, y + 1)});
            facets.push_back({at(x, y), at(x + 1, y + 1), at(x, y + 1)});
        }
    }
    const auto object = onlyMesh(read(binaryStl(facets)));
    ASSERT_TRUE(object);
    const Mesh& mesh = *object->mesh();
    EXPECT_EQ(mesh.points.size(), std::size_t{kSize + 1} * (kSize + 1));
    ASSERT_EQ(mesh.triangles.size(), facets.size());
    std::uint32_t nextNew = 0;
    for (std::size_t i = 0; i < facets.size(); ++i)
    {
        for (std::size_t k = 0; k < 3; ++k)
        {
            const std::uint32_t index = mesh.triangles[i][static_cast<int>(k)];
            ASSERT_EQ(mesh.points[index], facets[i][k]);
            ASSERT_LE(index, nextNew) << "points are not in the order of their first occurrence";
            nextNew = std::max(nextNew, index + 1);
        }
    }
}

TEST(StlFormat, ReadsText)
{
    const auto object = onlyMesh(read(std::string(kTextSquare)));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 4U);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
}

TEST(StlFormat, ReadsTextInCapitalsWithCarriageReturns)
{
    std::string text(kTextSquare);
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::string lines;
    for (const char c : text)
        lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const auto object = onlyMesh(read(lines));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 2U);
}

TEST(StlFormat, ReadsTextOfManyPieces)
{
    std::string text = "solid\n";
    constexpr int kFacets = 60000;
    for (int i = 0; i < kFacets; ++i)
        text += "facet normal 0 0 1\nouter loop\nvertex " + std::to_string(i) + " 0 0\nvertex " +
                std::to_string(i + 1) + " 0 0\nvertex 0 1 0\nendloop\nendfacet\n";
    const auto object = onlyMesh(read(text + "endsolid\n"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), std::size_t{kFacets});
    EXPECT_EQ(object->mesh()->points.size(), std::size_t{kFacets} + 2);
    EXPECT_EQ(object->mesh()->triangles.back(), Triangle(kFacets, kFacets + 1, 2));
}

TEST(StlFormat, BinaryFileWhoseHeaderBeginsWithSolidIsBinary)
{
    const auto facets = square();
    const auto exact = onlyMesh(read(binaryStl(facets, 2, "solid part\nfacet of our work")));
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->mesh()->triangles.size(), 2U);
    const auto withWrongCount = onlyMesh(read(binaryStl(facets, 3, "solid part")));
    ASSERT_TRUE(withWrongCount);
    EXPECT_EQ(withWrongCount->mesh()->triangles.size(), 2U);
}

TEST(StlFormat, TruncatedFileGivesWhatIsThereAndAWarning)
{
    std::string bytes = binaryStl(square());
    bytes.resize(bytes.size() - 1);
    const auto loaded = read(bytes);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"part.stl\": the file ends too early; 1 of its 2 triangles were read."));
}

TEST(StlFormat, CountOfZeroInAFileWithTrianglesIsNotBelieved)
{
    const auto loaded = read(binaryStl(square(), 0));
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 2U);
    EXPECT_EQ(loaded->warnings.size(), 1U);
}

TEST(StlFormat, BytesAfterTheLastTriangleAreLeftOutWithAWarning)
{
    const auto loaded = read(binaryStl(square()) + "something else");
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 2U);
    EXPECT_EQ(loaded->warnings.size(), 1U);
}

TEST(StlFormat, TrianglesWithCoordinatesThatAreNotFiniteAreLeftOut)
{
    auto facets = square();
    facets[0][1].y() = std::numeric_limits<float>::quiet_NaN();
    facets.push_back(square()[0]);
    facets[2][0].z() = std::numeric_limits<float>::infinity();
    const auto loaded = read(binaryStl(facets));
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
    EXPECT_EQ(object->mesh()->points.size(), 3U);
    EXPECT_THAT(loaded->warnings, ElementsAre("\"part.stl\": triangles whose coordinates are not finite numbers "
                                              "were left out: 2."));
}

TEST(StlFormat, TextThatStopsInsideAFacetGivesTheFacetsBefore)
{
    const std::string text(kTextSquare.substr(0, kTextSquare.find("vertex 1 1 0")));
    const auto loaded = read(text);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
    EXPECT_EQ(loaded->warnings.size(), 1U);
}

TEST(StlFormat, WordsInPlaceOfNumbersLeaveTheTriangleOut)
{
    std::string text(kTextSquare);
    text.replace(text.find("1e0"), 3, "abc");
    const auto loaded = read(text);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
}

TEST(StlFormat, NumbersThatSinglePrecisionCannotHoldLeaveTheTriangleOut)
{
    std::string text(kTextSquare);
    text.replace(text.find("1e0"), 3, "1e300");
    const auto loaded = read(text);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
    EXPECT_TRUE(object->mesh()->points.front().allFinite());
    EXPECT_EQ(loaded->warnings.size(), 1U);
}

TEST(StlFormat, ErrorsAreOneSentence)
{
    const std::string notStl = "Cannot open \"part.stl\": it is not an STL file.";
    EXPECT_EQ(read("hello").error(), notStl);
    EXPECT_EQ(read(std::string(500, 'x')).error(), notStl);
    std::string noise;
    for (std::uint32_t i = 0; i < 4000; ++i)
        append(noise, i * 2654435761U);
    EXPECT_EQ(read(noise).error(), notStl);
    EXPECT_EQ(read(binaryStl({})).error(), "Cannot open \"part.stl\": it holds no triangles.");
    EXPECT_EQ(read("solid empty\nendsolid\n").error(), "Cannot open \"part.stl\": it holds no triangles.");
    EXPECT_EQ(read(binaryStl({}, 7)).error(), "Cannot open \"part.stl\": it ends before its first triangle.");
}

TEST(StlFormat, StopsWhenCanceled)
{
    const auto cancel = [](float) { return false; };
    EXPECT_EQ(read(binaryStl(square()), cancel).error(), operationCanceledText());
    EXPECT_EQ(read(std::string(kTextSquare), cancel).error(), operationCanceledText());
}

TEST(StlFormat, CoordinatesFarFromTheOriginAreKeptExactly)
{
    const std::string text =
        "solid\nfacet\nouter loop\nvertex 1000000.0625 5 0\nvertex 1000000.125 5 0\nvertex 1000000.125 5.5 0\n"
        "endloop\nendfacet\nendsolid\n";
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 3U);
    EXPECT_NEAR(object->mesh()->points[1].x() - object->mesh()->points[0].x(), 0.0625, 1e-6);
    const Vector3d first = object->transform() * object->mesh()->points[0].cast<double>();
    EXPECT_NEAR(first.x(), 1000000.0625, 1e-7);
    EXPECT_NEAR(first.y(), 5.0, 1e-7);
}

TEST(StlFormat, SavedFileReadsBackTheSame)
{
    const auto object = onlyMesh(saveAndLoad(*makeMeshObject(makeTetrahedron()), "tetrahedron.STL"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 4U);
    EXPECT_EQ(object->mesh()->triangles.size(), 4U);
    EXPECT_DOUBLE_EQ(sixfoldVolume(*object), 1.0);
}

TEST(StlFormat, SavingAppliesTransformsAndLeavesHiddenObjectsOut)
{
    const auto root = std::make_shared<Object>();
    const auto moved = makeMeshObject(makeTetrahedron());
    const auto hidden = makeMeshObject(makeTetrahedron());
    const auto belowHidden = makeMeshObject(makeTetrahedron());
    root->addChild(moved);
    root->addChild(hidden);
    hidden->addChild(belowHidden);
    hidden->setVisible(false);
    root->setTransform(Transform(Eigen::Translation3d(10.0, 0.0, 0.0)));
    moved->setTransform(Transform(Eigen::Scaling(2.0)));

    const auto object = onlyMesh(saveAndLoad(*root, "part.stl"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 4U);
    EXPECT_EQ(object->worldBox().min(), Vector3d(10.0, 0.0, 0.0));
    EXPECT_EQ(object->worldBox().max(), Vector3d(12.0, 2.0, 2.0));
}

TEST(StlFormat, MirroredMeshIsSavedWithItsOutsideOut)
{
    const auto mesh = makeMeshObject(makeTetrahedron());
    mesh->setTransform(Transform(Eigen::Scaling(-1.0, 1.0, 1.0)));
    const auto object = onlyMesh(saveAndLoad(*mesh, "part.stl"));
    ASSERT_TRUE(object);
    EXPECT_DOUBLE_EQ(sixfoldVolume(*object), 1.0);
}

TEST(StlFormat, SavingPointsAloneIsAnError)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points.emplace_back(0.0F, 0.0F, 0.0F);
    const ObjectPoints points(std::move(cloud));
    const TempDir folder;
    const auto saved = saveObjectToFile(points, folder.path() / "points.stl", {});
    ASSERT_FALSE(saved.has_value());
    EXPECT_EQ(saved.error(), "Cannot write \"points.stl\": STL files hold triangles, and nothing visible has any.");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(StlFormat, ReadsTheSampleFiles)
{
    if (!std::filesystem::exists(samplePath("busted.STL")))
        GTEST_SKIP() << "samples are not here";
    const auto busted = onlyMesh(loadObjectFromFile(samplePath("busted.STL"), {}));
    ASSERT_TRUE(busted);
    EXPECT_EQ(busted->mesh()->points.size(), 1941U);
    EXPECT_EQ(busted->mesh()->triangles.size(), 3878U);
    const auto counter = onlyMesh(loadObjectFromFile(samplePath("counter.unitsmm.STL"), {}));
    ASSERT_TRUE(counter);
    EXPECT_EQ(counter->mesh()->points.size(), 41837U);
    EXPECT_EQ(counter->mesh()->triangles.size(), 83750U);
    EXPECT_EQ(counter->name(), "counter.unitsmm");
}

} // namespace VX
