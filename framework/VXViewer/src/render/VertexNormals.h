#pragma once

#include <VXMesh/Geometry.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <memory>

namespace VX
{

/// The nearest whole number; unlike `std::lrint` never a call of the system's library.
inline std::int32_t roundToInt(float value)
{
    return static_cast<std::int32_t>(value + (value < 0 ? -0.5F : 0.5F));
}

/// Sums of weighted directions for N vertices, added to by many threads at once. Each sum is three fixed-point numbers
/// in one integer, so that the result does not depend on the order of the additions.
/// The sum of the weights of a vertex must stay below 16 pi; angles around a vertex of a surface add up to 2 pi.
class NormalSums
{
public:
    explicit NormalSums(std::size_t count)
        : sums_(std::make_unique<std::atomic<std::int64_t>[]>(count))
    {
    }

    /// @param direction  of length 1
    /// @param weight     0 to pi
    /// @threads any
    void add(std::uint32_t vertex, const Vector3f& direction, float weight)
    {
        const float scaled = std::max(weight * unitsPerRadian, leastUnits);
        const auto units = [&](int axis) { return std::int64_t{roundToInt(direction[axis] * scaled)}; };
        sums_[vertex].fetch_add(units(0) + (units(1) << bits) + (units(2) << 2 * bits), std::memory_order_relaxed);
    }

    /// In the unit of the weights, radians; zero for a vertex that nothing was added to.
    [[nodiscard]] Vector3f sum(std::uint32_t vertex) const
    {
        std::int64_t packed = sums_[vertex].load(std::memory_order_relaxed);
        Vector3f result;
        for (int axis = 0; axis < 3; ++axis)
        {
            // Sign-extends the lowest field, and takes its borrow from the next one.
            const std::int64_t field =
                static_cast<std::int64_t>(static_cast<std::uint64_t>(packed) << (64 - bits)) >> (64 - bits);
            result[axis] = static_cast<float>(field) / unitsPerRadian;
            packed = (packed - field) >> bits;
        }
        return result;
    }

private:
    static constexpr int bits = 21;
    static constexpr float unitsPerRadian = 20860.0F; ///< 16 pi make 2^20
    static constexpr float leastUnits = 8;            ///< the smallest angles still give a direction

    std::unique_ptr<std::atomic<std::int64_t>[]> sums_;
};

/// The angle between two unit vectors from its cosine, within 0.0002 (Abramowitz and Stegun 4.4.45).
inline float fastAcos(float cosine)
{
    const float x = std::min(std::abs(cosine), 1.0F);
    const float angle = std::sqrt(1 - x) * (1.5707288F + x * (-0.2121144F + x * (0.0742610F - x * 0.0187293F)));
    return cosine < 0 ? 3.14159265F - angle : angle;
}

/// Below this the direction of a needle's normal is rounding noise.
constexpr float leastSine = 1e-6F;

/// The unit normal and the angles of a triangle; `normal` is zero for a degenerate one.
struct TriangleShape
{
    Vector3f normal = Vector3f::Zero();
    float angles[3] = {0, 0, 0};
};

inline TriangleShape shapeOf(const Vector3f& a, const Vector3f& b, const Vector3f& c)
{
    // Edges are scaled to length 1 first: products of the lengths of tiny triangles would underflow.
    Vector3f ab = b - a;
    Vector3f ac = c - a;
    Vector3f bc = c - b;
    const float abLength = ab.norm();
    const float acLength = ac.norm();
    const float bcLength = bc.norm();
    TriangleShape shape;
    if (!(abLength > 0) || !(acLength > 0) || !(bcLength > 0))
        return shape;
    // Multiplications: a division by each length would be half of the work of a whole mesh.
    ab *= 1 / abLength;
    ac *= 1 / acLength;
    bc *= 1 / bcLength;
    const Vector3f cross = ab.cross(ac);
    const float sine = cross.norm();
    if (!(sine > leastSine))
        return shape;
    shape.normal = cross * (1 / sine);
    shape.angles[0] = fastAcos(ab.dot(ac));
    shape.angles[1] = fastAcos(-ab.dot(bc));
    shape.angles[2] = std::max(0.0F, 3.14159265F - shape.angles[0] - shape.angles[1]);
    return shape;
}

/// A unit vector as two numbers of an octahedral map (Cigolle et al., 2014), -32767 to 32767 each.
struct OctahedralNormal
{
    std::int16_t x = 0;
    std::int16_t y = 0;
};

/// A zero vector becomes (0, 0, 1).
inline OctahedralNormal encodeNormal(const Vector3f& normal)
{
    const float sum = normal.cwiseAbs().sum();
    if (!(sum > 0))
        return {};
    float x = normal.x() / sum;
    float y = normal.y() / sum;
    if (normal.z() < 0)
    {
        const float folded = (1 - std::abs(y)) * (x >= 0 ? 1.0F : -1.0F);
        y = (1 - std::abs(x)) * (y >= 0 ? 1.0F : -1.0F);
        x = folded;
    }
    return {static_cast<std::int16_t>(roundToInt(x * 32767)), static_cast<std::int16_t>(roundToInt(y * 32767))};
}

} // namespace VX
