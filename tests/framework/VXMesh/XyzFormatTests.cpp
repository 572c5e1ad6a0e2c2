#include "formats/XyzFormat.h"

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
    return readXyz(sourceOf(content, "/folder/scan.xyz"), progress);
}

} // namespace

TEST(XyzFormat, ReadsPointsWithAnySeparator)
{
    const auto loaded = read("# a scan\n1 2 3\r\n\n4,5,6\n7; 8;\t9\n1e1 -1 +.5");
    const auto object = onlyPoints(loaded);
    ASSERT_TRUE(object);
    EXPECT_THAT(object->pointCloud()->points, ElementsAre(Vector3f(1.0F, 2.0F, 3.0F), Vector3f(4.0F, 5.0F, 6.0F),
                                                          Vector3f(7.0F, 8.0F, 9.0F), Vector3f(10.0F, -1.0F, 0.5F)));
    EXPECT_EQ(object->name(), "scan");
    EXPECT_THAT(loaded->warnings, IsEmpty());
}

TEST(XyzFormat, ReadsColorsUpTo255AndUpTo1)
{
    const auto bytes = onlyPoints(read("0 0 0 255 128 0\n1 1 1 1 0 0\n"));
    ASSERT_TRUE(bytes);
    EXPECT_THAT(bytes->pointCloud()->colors, ElementsAre(Color{255, 128, 0, 255}, Color{1, 0, 0, 255}));
    const auto fractions = onlyPoints(read("0 0 0 1 0.502 0\n1 1 1 0.2 0.2 0.2\n"));
    ASSERT_TRUE(fractions);
    EXPECT_THAT(fractions->pointCloud()->colors, ElementsAre(Color{255, 128, 0, 255}, Color{51, 51, 51, 255}));
}

TEST(XyzFormat, ReadsColorsBehindAnIntensity)
{
    const auto object = onlyPoints(read("2\n0 0 0 -1200 10 20 30\n1 1 1 5 40 50 60\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->pointCloud()->colors, ElementsAre(Color{10, 20, 30, 255}, Color{40, 50, 60, 255}));
}

TEST(XyzFormat, ReadsNormals)
{
    const auto object = onlyPoints(read("0 0 0 0 0 1\n1 1 1 0.6 -0.8 0\n"));
    ASSERT_TRUE(object);
    EXPECT_THAT(object->pointCloud()->normals, ElementsAre(Vector3f(0.0F, 0.0F, 1.0F), Vector3f(0.6F, -0.8F, 0.0F)));
    EXPECT_THAT(object->pointCloud()->colors, IsEmpty());
}

TEST(XyzFormat, ReadsNormalsAndColorsInAnyOrder)
{
    for (const std::string_view line : {"1 2 3 0 -1 0 10 20 30\n", "1 2 3 10 20 30 0 -1 0\n"})
    {
        const auto object = onlyPoints(read(std::string(line)));
        ASSERT_TRUE(object) << line;
        EXPECT_THAT(object->pointCloud()->normals, ElementsAre(Vector3f(0.0F, -1.0F, 0.0F))) << line;
        EXPECT_THAT(object->pointCloud()->colors, ElementsAre(Color{10, 20, 30, 255})) << line;
    }
}

TEST(XyzFormat, TitleLinesBeforeThePointsAreNoDamage)
{
    const auto loaded = read("X Y Z\n2\n1 2 3\n4 5 6\n");
    const auto object = onlyPoints(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->pointCloud()->points.size(), 2U);
    EXPECT_THAT(loaded->warnings, IsEmpty());
}

TEST(XyzFormat, DamagedLinesAreLeftOutWithAWarning)
{
    const auto loaded = read("1 2 3\n4 5\nhello to you\n7 8 nan\n");
    const auto object = onlyPoints(loaded);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->pointCloud()->points.size(), 1U);
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"scan.xyz\": lines that are no points were left out: 2.",
                            "\"scan.xyz\": points whose coordinates are not finite numbers were left out: 1."));
}

TEST(XyzFormat, FileOfManyPiecesKeepsItsOrder)
{
    std::string text;
    constexpr int kCount = 200000;
    for (int i = 0; i < kCount; ++i)
        text += std::to_string(i) + " 0.5 " + std::to_string(-i) + " 9 8 " + std::to_string(i % 256) + "\n";
    const auto object = onlyPoints(read(text));
    ASSERT_TRUE(object);
    const PointCloud& cloud = *object->pointCloud();
    ASSERT_EQ(cloud.points.size(), std::size_t{kCount});
    for (int i = 0; i < kCount; ++i)
    {
        ASSERT_EQ(cloud.points[static_cast<std::size_t>(i)],
                  Vector3f(static_cast<float>(i), 0.5F, static_cast<float>(-i)));
        ASSERT_EQ(cloud.colors[static_cast<std::size_t>(i)].b, i % 256);
    }
}

TEST(XyzFormat, CoordinatesFarFromTheOriginAreKeptExactly)
{
    const auto object = onlyPoints(read("500000.001 5000000.002 10\n500000.003 5000000.004 10.5\n"));
    ASSERT_TRUE(object);
    const Vector3d second = object->transform() * object->pointCloud()->points[1].cast<double>();
    EXPECT_NEAR(second.x(), 500000.003, 1e-7);
    EXPECT_NEAR(second.y(), 5000000.004, 1e-7);
}

TEST(XyzFormat, ErrorsAreOneSentence)
{
    EXPECT_EQ(read(std::string("\0\1", 2)).error(), "Cannot open \"scan.xyz\": it is not a text file of points.");
    EXPECT_EQ(read("no points here\n").error(), "Cannot open \"scan.xyz\": it holds no points.");
}

TEST(XyzFormat, StopsWhenCanceled)
{
    EXPECT_EQ(read("1 2 3\n", [](float) { return false; }).error(), operationCanceledText());
}

TEST(XyzFormat, SavedPointsReadBackTheSame)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{0.1F, 2.0F, 3e-7F}, {-4.0F, 5.5F, 6e7F}};
    cloud->colors = {{255, 0, 3, 255}, {1, 2, 250, 255}};
    const auto colored = onlyPoints(saveAndLoad(ObjectPoints(cloud), "scan.xyz"));
    ASSERT_TRUE(colored);
    EXPECT_EQ(colored->pointCloud()->points, cloud->points);
    EXPECT_EQ(colored->pointCloud()->colors, cloud->colors);

    cloud->colors.clear();
    cloud->normals = {{0.0F, 0.0F, 1.0F}, {0.0F, -1.0F, 0.0F}};
    const auto withNormals = onlyPoints(saveAndLoad(ObjectPoints(cloud), "scan.xyz"));
    ASSERT_TRUE(withNormals);
    EXPECT_EQ(withNormals->pointCloud()->normals, cloud->normals);
}

} // namespace VX
