#pragma once

#include <Eigen/Core>
#include <Eigen/Geometry>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace VX
{

using Vector2f = Eigen::Vector2f;
using Vector3f = Eigen::Vector3f;
using Vector3d = Eigen::Vector3d;
using Triangle = Eigen::Matrix<std::uint32_t, 3, 1>;
using Segment = Eigen::Matrix<std::uint32_t, 2, 1>;
using Box3f = Eigen::AlignedBox3f;
using Box3d = Eigen::AlignedBox3d;
using Transform = Eigen::Affine3d;

/// A colour in sRGB, eight bits a channel, alpha not premultiplied.
struct Color
{
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;

    friend bool operator==(const Color&, const Color&) = default;
};

/// A triangle mesh of N points and M triangles. Shared as `std::shared_ptr<const Mesh>` and never changed then.
/// Every index is less than N and every coordinate finite: readers see to it.
struct Mesh
{
    std::vector<Vector3f> points;    ///< N
    std::vector<Triangle> triangles; ///< M, counter-clockwise seen from outside
    std::vector<Vector3f> normals;   ///< N unit vectors, or empty: to be computed
    std::vector<Color> vertexColors; ///< N, or empty
    std::vector<Color> faceColors;   ///< M, or empty
};

/// Points without connectivity.
struct PointCloud
{
    std::vector<Vector3f> points;  ///< N
    std::vector<Vector3f> normals; ///< N unit vectors, or empty
    std::vector<Color> colors;     ///< N, or empty
};

/// Straight segments between points.
struct Lines
{
    std::vector<Vector3f> points;  ///< N
    std::vector<Segment> segments; ///< K, each index less than N
};

} // namespace VX
