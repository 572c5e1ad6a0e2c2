#include <VXMesh/Primitives.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace VX
{

namespace
{

/// A point of the outline of a shape of revolution.
struct Radial
{
    float radius; ///< from the axis; 0: a single point on it
    float height; ///< along it
};

/// Turns an outline about the z axis: one that runs upwards with the inside on its left has its faces outwards.
/// @param closed  the outline returns to its beginning; else it begins and ends on the axis
Mesh revolve(const std::vector<Radial>& outline, int segments, bool closed = false)
{
    Mesh mesh;
    const auto count = static_cast<std::uint32_t>(std::max(segments, 3));
    std::vector<std::uint32_t> firstPoints;
    for (const Radial& ring : outline)
    {
        firstPoints.push_back(static_cast<std::uint32_t>(mesh.points.size()));
        const std::uint32_t points = ring.radius > 0 ? count : 1;
        for (std::uint32_t i = 0; i < points; ++i)
        {
            const double angle = 2 * std::numbers::pi * i / count;
            mesh.points.emplace_back(static_cast<float>(ring.radius * std::cos(angle)),
                                     static_cast<float>(ring.radius * std::sin(angle)), ring.height);
        }
    }
    const std::size_t strips = closed ? outline.size() : outline.size() - 1;
    for (std::size_t strip = 0; strip < strips; ++strip)
    {
        const std::size_t next = (strip + 1) % outline.size();
        const std::uint32_t low = firstPoints[strip];
        const std::uint32_t high = firstPoints[next];
        for (std::uint32_t i = 0; i < count; ++i)
        {
            const std::uint32_t j = (i + 1) % count;
            if (outline[strip].radius > 0)
                mesh.triangles.emplace_back(low + i, low + j, outline[next].radius > 0 ? high + j : high);
            if (outline[next].radius > 0)
                mesh.triangles.emplace_back(outline[strip].radius > 0 ? low + i : low, high + j, high + i);
        }
    }
    return mesh;
}

std::vector<Radial> cylinderOutline(float radius, float height)
{
    return {{0, -height / 2}, {radius, -height / 2}, {radius, height / 2}, {0, height / 2}};
}

} // namespace

Mesh makeCube(const CubeShape& shape)
{
    const Vector3f half = Vector3f(shape.width, shape.depth, shape.height) / 2;
    Mesh mesh;
    for (int corner = 0; corner < 8; ++corner)
        mesh.points.emplace_back((corner & 1) != 0 ? half.x() : -half.x(), (corner & 2) != 0 ? half.y() : -half.y(),
                                 (corner & 4) != 0 ? half.z() : -half.z());
    mesh.triangles = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6}, {0, 1, 5}, {0, 5, 4},
                      {2, 6, 7}, {2, 7, 3}, {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};
    return mesh;
}

Mesh makeCylinder(const CylinderShape& shape)
{
    return revolve(cylinderOutline(shape.radius, shape.height), shape.segments);
}

Mesh makeSphere(const SphereShape& shape)
{
    const int rings = std::max(shape.segments / 2, 2);
    std::vector<Radial> outline{{0, -shape.radius}};
    for (int i = 1; i < rings; ++i)
    {
        const double angle = std::numbers::pi * i / rings;
        outline.push_back(
            {static_cast<float>(shape.radius * std::sin(angle)), static_cast<float>(-shape.radius * std::cos(angle))});
    }
    outline.push_back({0, shape.radius});
    return revolve(outline, shape.segments);
}

Mesh makePrism(const PrismShape& shape)
{
    return revolve(cylinderOutline(shape.radius, shape.height), shape.sides);
}

Mesh makeTorus(const TorusShape& shape)
{
    const int around = std::max(shape.tubeSegments, 3);
    std::vector<Radial> outline;
    for (int i = 0; i < around; ++i)
    {
        const double angle = 2 * std::numbers::pi * i / around;
        outline.push_back({static_cast<float>(shape.radius + shape.tubeRadius * std::cos(angle)),
                           static_cast<float>(shape.tubeRadius * std::sin(angle))});
    }
    return revolve(outline, shape.segments, true);
}

Mesh makeArrow(const ArrowShape& shape)
{
    const float neck = shape.length - shape.headLength;
    return revolve(
        {{0, 0}, {shape.shaftRadius, 0}, {shape.shaftRadius, neck}, {shape.headRadius, neck}, {0, shape.length}},
        shape.segments);
}

Mesh makePlane(const PlaneShape& shape)
{
    const float x = shape.width / 2;
    const float y = shape.depth / 2;
    Mesh mesh;
    mesh.points = {{-x, -y, 0}, {x, -y, 0}, {x, y, 0}, {-x, y, 0}};
    mesh.triangles = {{0, 1, 2}, {0, 2, 3}};
    return mesh;
}

Mesh makeCone(const ConeShape& shape)
{
    return revolve({{0, -shape.height / 2}, {shape.radius, -shape.height / 2}, {0, shape.height / 2}}, shape.segments);
}

} // namespace VX
