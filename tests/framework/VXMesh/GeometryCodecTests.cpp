#include "formats/GeometryCodec.h"

#include "FormatTestSupport.h"

#include <VXMesh/Geometry.h>

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace VX
{

namespace
{

/// A grid with more points than one block holds, and all attributes.
std::shared_ptr<Mesh> makeGrid(std::uint32_t size)
{
    auto mesh = std::make_shared<Mesh>();
    for (std::uint32_t y = 0; y < size; ++y)
    {
        for (std::uint32_t x = 0; x < size; ++x)
        {
            mesh->points.emplace_back(static_cast<float>(x) * 0.37F, static_cast<float>(y) / 3.0F,
                                      static_cast<float>((x * y) % 97) * 1e-3F);
            mesh->normals.push_back(Vector3f(0.1F, static_cast<float>(x), 1.0F).normalized());
            mesh->vertexColors.push_back({static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 7, 255});
        }
    }
    for (std::uint32_t y = 0; y + 1 < size; ++y)
    {
        for (std::uint32_t x = 0; x + 1 < size; ++x)
        {
            const std::uint32_t a = y * size + x;
            mesh->triangles.emplace_back(a, a + 1, a + size + 1);
            mesh->triangles.emplace_back(a, a + size + 1, a + size);
        }
    }
    for (std::uint32_t i = 0; i < mesh->triangles.size(); ++i)
        mesh->faceColors.push_back({static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8U), 3, 128});
    return mesh;
}

template <typename Geometry>
std::shared_ptr<const Geometry> throughCodec(std::shared_ptr<const Geometry> geometry)
{
    const std::string bytes = encodeGeometry(geometry);
    const auto decoded = decodeGeometry(std::as_bytes(std::span(bytes)));
    if (!decoded || !std::holds_alternative<std::shared_ptr<const Geometry>>(*decoded))
        return nullptr;
    return std::get<std::shared_ptr<const Geometry>>(*decoded);
}

/// The same corners in the same circular order.
bool isTurned(const Triangle& a, const Triangle& b)
{
    return a == b || a == Triangle(b[1], b[2], b[0]) || a == Triangle(b[2], b[0], b[1]);
}

bool isDecodable(std::string_view bytes)
{
    return decodeGeometry(std::as_bytes(std::span(bytes))).has_value();
}

} // namespace

TEST(GeometryCodec, MeshOfSeveralBlocksComesBackTheSame)
{
    const std::shared_ptr<const Mesh> mesh = makeGrid(300);
    const auto decoded = throughCodec(mesh);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->points, mesh->points);
    EXPECT_EQ(decoded->normals, mesh->normals);
    EXPECT_EQ(decoded->vertexColors, mesh->vertexColors);
    EXPECT_EQ(decoded->faceColors, mesh->faceColors);
    ASSERT_EQ(decoded->triangles.size(), mesh->triangles.size());
    for (std::size_t i = 0; i < mesh->triangles.size(); ++i)
        ASSERT_TRUE(isTurned(decoded->triangles[i], mesh->triangles[i])) << "triangle " << i;
}

TEST(GeometryCodec, MeshWithoutTrianglesComesBackTheSame)
{
    auto mesh = std::make_shared<Mesh>();
    EXPECT_TRUE(throughCodec<Mesh>(mesh));
    mesh->points.emplace_back(1.0F, 2.0F, 3.0F);
    const auto decoded = throughCodec<Mesh>(mesh);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->points, mesh->points);
    EXPECT_TRUE(decoded->triangles.empty());
}

TEST(GeometryCodec, PointCloudComesBackTheSame)
{
    auto cloud = std::make_shared<PointCloud>();
    const auto grid = makeGrid(20);
    cloud->points = grid->points;
    cloud->normals = grid->normals;
    cloud->colors = grid->vertexColors;
    const auto decoded = throughCodec<PointCloud>(cloud);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->points, cloud->points);
    EXPECT_EQ(decoded->normals, cloud->normals);
    EXPECT_EQ(decoded->colors, cloud->colors);
}

TEST(GeometryCodec, LinesComeBackTheSame)
{
    auto lines = std::make_shared<Lines>();
    lines->points = makeGrid(4)->points;
    lines->segments = {Segment(0, 15), Segment(15, 3), Segment(2, 2)};
    const auto decoded = throughCodec<Lines>(lines);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->points, lines->points);
    EXPECT_EQ(decoded->segments, lines->segments);
}

TEST(GeometryCodec, AnyPrefixOfAnEntryIsRefused)
{
    const std::shared_ptr<const Mesh> mesh = makeGrid(5);
    const std::string bytes = encodeGeometry(mesh);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        ASSERT_FALSE(isDecodable(std::string_view(bytes).substr(0, size))) << "of " << size << " bytes";
    EXPECT_FALSE(isDecodable(bytes + '\0'));
}

TEST(GeometryCodec, IndexBeyondThePointsIsRefused)
{
    auto mesh = makeGrid(5);
    mesh->triangles[7][1] = 25;
    EXPECT_FALSE(isDecodable(encodeGeometry(std::shared_ptr<const Mesh>(mesh))));
    auto lines = std::make_shared<Lines>();
    lines->points = mesh->points;
    lines->segments = {Segment(0, 25)};
    EXPECT_FALSE(isDecodable(encodeGeometry(std::shared_ptr<const Lines>(lines))));
}

TEST(GeometryCodec, CoordinatesThatAreNotFiniteAreRefused)
{
    auto mesh = makeGrid(5);
    mesh->points[3].y() = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(isDecodable(encodeGeometry(std::shared_ptr<const Mesh>(mesh))));
}

TEST(GeometryCodec, AttributesOfAWrongNumberAreRefused)
{
    auto mesh = makeGrid(5);
    mesh->faceColors.pop_back();
    EXPECT_FALSE(isDecodable(encodeGeometry(std::shared_ptr<const Mesh>(mesh))));
}

TEST(GeometryCodec, CountThatTheBytesDoNotJustifyIsRefused)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points.assign(10, Vector3f(0.0F, 0.0F, 0.0F));
    std::string bytes = encodeGeometry(std::shared_ptr<const PointCloud>(cloud));
    constexpr std::size_t kCountAt = 16 + 8;
    constexpr std::size_t kBlockElementsAt = 16 + 16;
    const std::uint64_t count = 4000000000U;
    const std::uint32_t blockElements = 4000000000U;
    std::memcpy(bytes.data() + kCountAt, &count, sizeof(count));
    std::memcpy(bytes.data() + kBlockElementsAt, &blockElements, sizeof(blockElements));
    EXPECT_FALSE(isDecodable(bytes));
}

TEST(GeometryCodec, PointsThatAreAllTheSameComeBack)
{
    for (const std::size_t count : {1U, 64U, 65U, 256U, 257U, 70000U})
    {
        auto cloud = std::make_shared<PointCloud>();
        cloud->points.assign(count, Vector3f(0.0F, 0.0F, 0.0F));
        const auto decoded = throughCodec<PointCloud>(cloud);
        ASSERT_TRUE(decoded) << count << " points";
        EXPECT_EQ(decoded->points, cloud->points);
    }
}

} // namespace VX
