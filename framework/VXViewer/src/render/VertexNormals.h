#pragma once

#include <VXMesh/Geometry.h>

#include <algorithm>
#include <array>
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

/// N numbers that are worked on at once: as many as the processor's vector instructions take.
template <int N>
using Lanes = Eigen::Array<float, N, 1>;

/// The angles between unit vectors from their cosines, within 0.0002 (Abramowitz and Stegun 4.4.45).
template <int N>
Lanes<N> fastAcos(const Lanes<N>& cosine)
{
    const Lanes<N> x = cosine.abs().min(1.0F);
    const Lanes<N> angle = (1 - x).sqrt() * (1.5707288F + x * (-0.2121144F + x * (0.0742610F - x * 0.0187293F)));
    return (cosine < 0).select(3.14159265F - angle, angle);
}

/// N vectors, coordinate by coordinate.
template <int N>
struct VectorLanes
{
    Lanes<N> x;
    Lanes<N> y;
    Lanes<N> z;

    void set(int lane, const Vector3f& v)
    {
        x[lane] = v.x();
        y[lane] = v.y();
        z[lane] = v.z();
    }

    [[nodiscard]] Vector3f get(int lane) const { return {x[lane], y[lane], z[lane]}; }

    [[nodiscard]] VectorLanes minus(const VectorLanes& other) const { return {x - other.x, y - other.y, z - other.z}; }

    [[nodiscard]] VectorLanes times(const Lanes<N>& factor) const { return {x * factor, y * factor, z * factor}; }

    [[nodiscard]] Lanes<N> dot(const VectorLanes& other) const { return x * other.x + y * other.y + z * other.z; }

    [[nodiscard]] VectorLanes cross(const VectorLanes& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }

    [[nodiscard]] Lanes<N> length() const { return dot(*this).sqrt(); }

    [[nodiscard]] VectorLanes min(const VectorLanes& other) const
    {
        return {x.min(other.x), y.min(other.y), z.min(other.z)};
    }

    [[nodiscard]] VectorLanes max(const VectorLanes& other) const
    {
        return {x.max(other.x), y.max(other.y), z.max(other.z)};
    }

    /// `other` in the lanes where `mask` does not hold.
    [[nodiscard]] VectorLanes where(const Eigen::Array<bool, N, 1>& mask, float other) const
    {
        const Lanes<N> rest = Lanes<N>::Constant(other);
        return {mask.select(x, rest), mask.select(y, rest), mask.select(z, rest)};
    }
};

/// Below this the direction of a needle's normal is rounding noise.
constexpr float leastSine = 1e-6F;

/// The unit normals and the angles of N triangles; the normal of a degenerate one is zero.
template <int N>
struct TriangleShapes
{
    VectorLanes<N> normal;
    std::array<Lanes<N>, 3> angles;
};

template <int N>
TriangleShapes<N> shapesOf(const VectorLanes<N>& a, const VectorLanes<N>& b, const VectorLanes<N>& c)
{
    // Edges are scaled to length 1 first: products of the lengths of tiny triangles would underflow.
    const auto scaled = [](const VectorLanes<N>& edge)
    {
        const Lanes<N> length = edge.length();
        return edge.times((length > 0).select(1 / length, Lanes<N>::Zero()));
    };
    const VectorLanes<N> ab = scaled(b.minus(a));
    const VectorLanes<N> ac = scaled(c.minus(a));
    const VectorLanes<N> bc = scaled(c.minus(b));
    const VectorLanes<N> cross = ab.cross(ac);
    const Lanes<N> sine = cross.length();
    TriangleShapes<N> shapes;
    shapes.normal = cross.times((sine > leastSine).select(1 / sine, Lanes<N>::Zero()));
    shapes.angles[0] = fastAcos<N>(ab.dot(ac));
    shapes.angles[1] = fastAcos<N>(-ab.dot(bc));
    shapes.angles[2] = (3.14159265F - shapes.angles[0] - shapes.angles[1]).max(0.0F);
    return shapes;
}

/// The unit normal and the angles of a triangle; `normal` is zero for a degenerate one.
struct TriangleShape
{
    Vector3f normal = Vector3f::Zero();
    float angles[3] = {0, 0, 0};
};

inline TriangleShape shapeOf(const Vector3f& a, const Vector3f& b, const Vector3f& c)
{
    std::array<VectorLanes<1>, 3> corners;
    corners[0].set(0, a);
    corners[1].set(0, b);
    corners[2].set(0, c);
    const TriangleShapes<1> shapes = shapesOf<1>(corners[0], corners[1], corners[2]);
    return {shapes.normal.get(0), {shapes.angles[0][0], shapes.angles[1][0], shapes.angles[2][0]}};
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
