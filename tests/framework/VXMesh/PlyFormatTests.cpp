#include "formats/PlyFormat.h"

#include "FormatTestSupport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

tl::expected<LoadedObjects, std::string> read(const std::string& content, const ProgressCallback& progress = {})
{
    return readPly(sourceOf(content, "/folder/part.ply"), progress);
}

template <typename Value>
void appendSwapped(std::string& bytes, Value value)
{
    std::string part;
    append(part, value);
    std::ranges::reverse(part);
    bytes += part;
}

constexpr std::string_view kTextSquare = "ply\n"
                                         "format ascii 1.0\n"
                                         "comment a square\n"
                                         "element vertex 4\n"
                                         "property float x\n"
                                         "property float y\n"
                                         "property float z\n"
                                         "element face 1\n"
                                         "property list uchar int vertex_indices\n"
                                         "end_header\n"
                                         "0 0 0\n"
                                         "1 0 0\n"
                                         "1 1 0\n"
                                         "0 1 0\n"
                                         "4 0 1 2 3\n";

std::string replaced(std::string_view text, std::string_view from, std::string_view to)
{
    std::string result(text);
    const auto at = result.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? result : result.replace(at, from.size(), to);
}

/// The header and points of a binary file with three points; faces follow.
std::string binaryTriangle(std::string_view faceProperty, std::size_t faceCount)
{
    std::string bytes = "ply\r\nformat binary_little_endian 1.0\r\nelement vertex 3\r\nproperty float x\r\n"
                        "property float y\r\nproperty float z\r\nelement face " +
                        std::to_string(faceCount) + "\r\n" + std::string(faceProperty) + "\r\nend_header\r\n";
    for (const Vector3f& point : {Vector3f(0.0F, 0.0F, 0.0F), Vector3f(1.0F, 0.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F)})
        append(bytes, point);
    return bytes;
}

} // namespace

TEST(PlyFormat, ReadsTextAndCutsQuadsIntoTriangles)
{
    const auto loaded = read(std::string(kTextSquare));
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->points, ElementsAre(Vector3f(0.0F, 0.0F, 0.0F), Vector3f(1.0F, 0.0F, 0.0F),
                                                    Vector3f(1.0F, 1.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F)));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2), Triangle(0, 2, 3)));
    EXPECT_EQ(object->name(), "part");
    EXPECT_THAT(loaded->warnings, IsEmpty());
}

TEST(PlyFormat, ReadsLittleEndianFaces)
{
    std::string bytes = binaryTriangle("property list uchar int vertex_indices", 1);
    bytes += '\3';
    append(bytes, Triangle(2, 0, 1));
    const auto object = onlyMesh(read(bytes));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(2, 0, 1)));
    EXPECT_EQ(object->mesh()->points[1], Vector3f(1.0F, 0.0F, 0.0F));
}

TEST(PlyFormat, ReadsBigEndianWithOtherTypes)
{
    std::string bytes = "ply\nformat binary_big_endian 1.0\nelement vertex 3\nproperty double x\nproperty short y\n"
                        "property float z\nelement face 1\nproperty list ushort uint vertex_index\nend_header\n";
    for (int i = 0; i < 3; ++i)
    {
        appendSwapped(bytes, 0.5 * i);
        appendSwapped(bytes, static_cast<std::int16_t>(i * i));
        appendSwapped(bytes, -1.5F);
    }
    appendSwapped(bytes, std::uint16_t{3});
    for (const std::uint32_t index : {0U, 2U, 1U})
        appendSwapped(bytes, index);
    const auto object = onlyMesh(read(bytes));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->points,
                ElementsAre(Vector3f(0.0F, 0.0F, -1.5F), Vector3f(0.5F, 1.0F, -1.5F), Vector3f(1.0F, 4.0F, -1.5F)));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 2, 1)));
}

TEST(PlyFormat, SkipsElementsAndPropertiesThatItDoesNotKnow)
{
    std::string bytes = "ply\nformat binary_little_endian 1.0\nelement camera 2\nproperty list uchar double view\n"
                        "property int id\nelement vertex 3\nproperty uchar quality\nproperty list int short tags\n"
                        "property float x\nproperty float y\nproperty float z\nelement face 1\nproperty char flag\n"
                        "property list uchar float texcoord\nproperty list uchar int vertex_indices\n"
                        "property list uchar uchar rest\nend_header\n";
    for (int i = 0; i < 2; ++i)
    {
        bytes += static_cast<char>(i);
        for (int k = 0; k < i; ++k)
            append(bytes, 1.0);
        append(bytes, 7);
    }
    for (int i = 0; i < 3; ++i)
    {
        bytes += 'q';
        append(bytes, i);
        bytes.append(static_cast<std::size_t>(i) * 2, 't');
        append(bytes, Vector3f(static_cast<float>(i), static_cast<float>(i * i), 0.0F));
    }
    bytes += 'f';
    bytes += '\1';
    append(bytes, 0.5F);
    bytes += '\3';
    append(bytes, Triangle(0, 1, 2));
    bytes += '\0';
    const auto loaded = read(bytes);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points[2], Vector3f(2.0F, 4.0F, 0.0F));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2)));
    EXPECT_THAT(loaded->warnings, IsEmpty());
}

TEST(PlyFormat, ReadsColorsOfAllTypes)
{
    const std::vector<std::pair<std::string, std::string>> kinds = {
        {"uchar", "255 128 0"}, {"ushort", "65535 32896 0"}, {"float", "1 0.502 0"}};
    for (const auto& [type, value] : kinds)
    {
        const std::string text = "ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\n"
                                 "property float z\nproperty " +
                                 type + " red\nproperty " + type + " green\nproperty " + type +
                                 " blue\nend_header\n1 2 3 " + value + "\n";
        const auto object = onlyPoints(read(text));
        ASSERT_TRUE(object) << type;
        EXPECT_THAT(object->pointCloud()->colors, ElementsAre(Color{255, 128, 0, 255})) << type;
    }
}

TEST(PlyFormat, ReadsAlphaAndNormals)
{
    const auto object = onlyPoints(
        read("ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty float z\n"
             "property float nx\nproperty float ny\nproperty float nz\nproperty uchar red\nproperty uchar green\n"
             "property uchar blue\nproperty uchar alpha\nend_header\n1 2 3 0 0 2 10 20 30 40\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->pointCloud()->points, ElementsAre(Vector3f(1.0F, 2.0F, 3.0F)));
    EXPECT_THAT(object->pointCloud()->normals, ElementsAre(Vector3f(0.0F, 0.0F, 1.0F)));
    EXPECT_THAT(object->pointCloud()->colors, ElementsAre(Color{10, 20, 30, 40}));
}

TEST(PlyFormat, FaceColorsGoToAllTrianglesOfTheFace)
{
    std::string text = replaced(kTextSquare, "vertex_indices\n",
                                "vertex_indices\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n");
    text = replaced(text, "4 0 1 2 3", "4 0 1 2 3 9 8 7");
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->faceColors, ElementsAre(Color{9, 8, 7, 255}, Color{9, 8, 7, 255}));
}

TEST(PlyFormat, ReadsTriangleStrips)
{
    std::string text = replaced(kTextSquare, "element face 1", "element tristrips 1");
    text = replaced(text, "4 0 1 2 3", "8 0 1 3 2 -1 0 2 3");
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 3), Triangle(3, 1, 2), Triangle(0, 2, 3)));
}

TEST(PlyFormat, FileOfManyBlocksKeepsItsOrder)
{
    constexpr std::uint32_t kCount = 200000;
    std::string bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " + std::to_string(kCount) +
                        "\nproperty float x\nproperty float y\nproperty float z\nelement face " +
                        std::to_string(kCount - 2) + "\nproperty list uchar int vertex_indices\nend_header\n";
    std::string text = replaced(bytes, "binary_little_endian", "ascii");
    for (std::uint32_t i = 0; i < kCount; ++i)
    {
        append(bytes, Vector3f(static_cast<float>(i), static_cast<float>(i % 7), 0.0F));
        text += std::to_string(i) + " " + std::to_string(i % 7) + " 0\n";
    }
    for (std::uint32_t i = 0; i + 2 < kCount; ++i)
    {
        bytes += '\3';
        append(bytes, Triangle(i, i + 1, i + 2));
        text += "3 " + std::to_string(i) + " " + std::to_string(i + 1) + " " + std::to_string(i + 2) + "\n";
    }
    for (const std::string& content : {bytes, text})
    {
        const auto object = onlyMesh(read(content));
        ASSERT_TRUE(object);
        ASSERT_EQ(object->mesh()->points.size(), kCount);
        ASSERT_EQ(object->mesh()->triangles.size(), kCount - 2);
        for (std::uint32_t i = 0; i + 2 < kCount; ++i)
        {
            ASSERT_EQ(object->mesh()->points[i].x(), static_cast<float>(i));
            ASSERT_EQ(object->mesh()->triangles[i], Triangle(i, i + 1, i + 2));
        }
    }
}

TEST(PlyFormat, ConcavePolygonsAreCutInside)
{
    // An L whose fan from the first corner would leave it.
    const std::string text = "ply\nformat ascii 1.0\nelement vertex 6\nproperty float x\nproperty float y\n"
                             "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
                             "2 0 0\n2 1 0\n1 1 0\n1 2 0\n0 2 0\n0 0 0\n6 0 1 2 3 4 5\n";
    const auto object = onlyMesh(read(text));
    ASSERT_TRUE(object);
    ASSERT_EQ(object->mesh()->triangles.size(), 4U);
    double area = 0.0;
    for (const Triangle& triangle : object->mesh()->triangles)
    {
        const auto& points = object->mesh()->points;
        const Vector3f normal =
            (points[triangle[1]] - points[triangle[0]]).cross(points[triangle[2]] - points[triangle[0]]);
        EXPECT_GT(normal.z(), 0.0F);
        area += 0.5 * static_cast<double>(normal.norm());
    }
    EXPECT_NEAR(area, 3.0, 1e-9);
}

TEST(PlyFormat, CoordinatesFarFromTheOriginAreKeptExactly)
{
    std::string bytes = "ply\nformat binary_little_endian 1.0\nelement vertex 2\nproperty double x\n"
                        "property double y\nproperty double z\nend_header\n";
    append(bytes, Vector3d(500000.001, 5000000.001, 0.0));
    append(bytes, Vector3d(500001.001, 5000000.002, 0.5));
    const auto object = onlyPoints(read(bytes));
    ASSERT_TRUE(object);
    const auto& points = object->pointCloud()->points;
    EXPECT_NEAR((object->transform() * points[1].cast<double>()).x(), 500001.001, 1e-7);
    EXPECT_NEAR(points[1].y() - points[0].y(), 0.001F, 1e-6F);
    EXPECT_EQ(object->transform().translation().z(), 0.0);
}

TEST(PlyFormat, TruncatedFilesGiveWhatIsThereAndAWarning)
{
    std::string bytes = binaryTriangle("property list uchar int vertex_indices", 2);
    bytes += '\3';
    append(bytes, Triangle(0, 1, 2));
    bytes += '\3';
    const auto loaded = read(bytes);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 1U);
    EXPECT_THAT(loaded->warnings, ElementsAre("\"part.ply\": the file ends too early; 1 of its 2 faces were read."));

    const auto text = read(std::string(kTextSquare.substr(0, kTextSquare.find("1 1 0"))));
    const auto points = onlyPoints(text);
    ASSERT_TRUE(points);
    EXPECT_EQ(points->pointCloud()->points.size(), 2U);
    EXPECT_THAT(text->warnings, ElementsAre("\"part.ply\": the file ends too early; 2 of its 4 points were read.",
                                            "\"part.ply\": the file ends too early; 0 of its 1 faces were read."));
}

TEST(PlyFormat, CountsThatLieTakeNoMemory)
{
    const auto loaded = read(replaced(kTextSquare, "vertex 4", "vertex 18446744073709551615"));
    EXPECT_TRUE(onlyPoints(loaded));
    EXPECT_EQ(loaded->warnings.size(), 2U);
    std::string bytes = binaryTriangle("property list uint int vertex_indices", 4000000000U);
    append(bytes, 4000000000U);
    EXPECT_TRUE(onlyPoints(read(bytes)));
}

TEST(PlyFormat, FacesWithWrongIndicesAreLeftOut)
{
    for (const std::string_view face : {"4 0 1 2 4", "4 0 1 2 -1", "4 0 1 2 1e9", "4 0 1 2 99999999999999999999"})
    {
        std::string text = replaced(kTextSquare, "4 0 1 2 3", std::string(face) + "\n3 0 1 2");
        text = replaced(text, "face 1", "face 2");
        const auto loaded = read(text);
        const auto object = onlyMesh(loaded);
        ASSERT_TRUE(object) << face;
        EXPECT_EQ(object->mesh()->triangles.size(), 1U) << face;
        EXPECT_THAT(loaded->warnings,
                    ElementsAre("\"part.ply\": faces that refer to points that are not there were left out: 1."))
            << face;
    }
}

TEST(PlyFormat, BinaryTrianglesWithWrongIndicesAreLeftOut)
{
    std::string bytes = binaryTriangle("property list uchar int vertex_indices", 2);
    for (const std::uint32_t last : {3U, 2U})
    {
        append(bytes, std::uint8_t{3});
        append(bytes, Triangle(0, 1, last));
    }
    const auto loaded = read(bytes);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2)));
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"part.ply\": faces that refer to points that are not there were left out: 1."));
}

TEST(PlyFormat, FacesOfOtherSizesInTheRoomOfTrianglesAreReadAsTheyAre)
{
    std::string bytes = binaryTriangle("property list uchar int vertex_indices", 3);
    append(bytes, std::uint8_t{4});
    for (const std::uint32_t corner : {0U, 1U, 2U, 0U})
        append(bytes, corner);
    append(bytes, std::uint8_t{2});
    for (const std::uint32_t corner : {0U, 1U})
        append(bytes, corner);
    append(bytes, std::uint8_t{3});
    append(bytes, Triangle(1, 2, 0));
    const auto loaded = read(bytes);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->triangles.size(), 3U);
    EXPECT_EQ(object->mesh()->triangles.back(), Triangle(1, 2, 0));
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"part.ply\": faces that have less than three corners were left out: 1."));
}

TEST(PlyFormat, FacesThatAreTooShortAreLeftOut)
{
    for (const std::string_view face : {"2 0 1", "0", "4 0 1 2", "-3 0 1 2", "x"})
    {
        std::string text = replaced(kTextSquare, "4 0 1 2 3", std::string(face) + "\n3 0 1 2");
        text = replaced(text, "face 1", "face 2");
        const auto loaded = read(text);
        const auto object = onlyMesh(loaded);
        ASSERT_TRUE(object) << face;
        EXPECT_EQ(object->mesh()->triangles.size(), 1U) << face;
        EXPECT_EQ(loaded->warnings.size(), 1U) << face;
    }
}

TEST(PlyFormat, PointsThatAreNotFiniteAreLeftOutWithTheirFaces)
{
    std::string text = replaced(kTextSquare, "0 0 0\n", "nan 0 0\n");
    text = replaced(text, "4 0 1 2 3", "3 0 1 2\n3 1 2 3");
    text = replaced(text, "face 1", "face 2");
    const auto loaded = read(text);
    const auto object = onlyMesh(loaded);
    ASSERT_TRUE(object);
    EXPECT_THAT(object->mesh()->points,
                ElementsAre(Vector3f(1.0F, 0.0F, 0.0F), Vector3f(1.0F, 1.0F, 0.0F), Vector3f(0.0F, 1.0F, 0.0F)));
    EXPECT_THAT(object->mesh()->triangles, ElementsAre(Triangle(0, 1, 2)));
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"part.ply\": faces that have coordinates that are not finite numbers were left out: 1.",
                            "\"part.ply\": points whose coordinates are not finite numbers were left out: 1."));
}

TEST(PlyFormat, ErrorsAreOneSentence)
{
    EXPECT_EQ(read("hello\n").error(), "Cannot open \"part.ply\": it is not a PLY file.");
    EXPECT_EQ(read(replaced(kTextSquare, "ascii", "utf8")).error(), "Cannot open \"part.ply\": its header is damaged.");
    EXPECT_EQ(read(replaced(kTextSquare, "float x", "quad x")).error(),
              "Cannot open \"part.ply\": its header is damaged.");
    EXPECT_EQ(read(replaced(kTextSquare, "list uchar", "list float")).error(),
              "Cannot open \"part.ply\": its header is damaged.");
    EXPECT_EQ(read("ply\nformat ascii 1.0\n").error(), "Cannot open \"part.ply\": its header is damaged.");
    EXPECT_EQ(read(replaced(kTextSquare, "float z", "float w")).error(),
              "Cannot open \"part.ply\": it has no points with coordinates.");
    EXPECT_EQ(read(replaced(kTextSquare, "4 0 1 2 3", "4 5 6 7 8")).error(),
              "Cannot open \"part.ply\": none of its faces can be used.");
    EXPECT_EQ(read("ply\nformat ascii 1.0\nelement vertex 0\nproperty float x\nproperty float y\nproperty float z\n"
                   "end_header\n")
                  .error(),
              "Cannot open \"part.ply\": it holds no points.");
}

TEST(PlyFormat, StopsWhenCanceled)
{
    EXPECT_EQ(read(std::string(kTextSquare), [](float fraction) { return fraction < 0.3F; }).error(),
              operationCanceledText());
}

TEST(PlyFormat, ReadsTheSampleFile)
{
    if (!std::filesystem::exists(samplePath("bunny.ply")))
        GTEST_SKIP() << "samples are not here";
    const auto object = onlyMesh(loadObjectFromFile(samplePath("bunny.ply"), {}));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 8171U);
    EXPECT_EQ(object->mesh()->triangles.size(), 16301U);
    EXPECT_EQ(object->name(), "bunny");
}

} // namespace VX
