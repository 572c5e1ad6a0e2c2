#include "formats/Triangulate.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace VX
{

namespace
{

/// Clipping takes time with the square of the number of corners; beyond this, polygons become fans.
constexpr std::size_t kMaxClippedCorners = 1024;

/// The mean normal of a polygon that need not be plane, by Newell's method (Sutherland, Sproull and Schumacker, 1974).
Vector3d newellNormal(std::span<const Vector3d> corners)
{
    Vector3d normal = Vector3d::Zero();
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        normal += (corners[i] - corners[0]).cross(corners[i + 1] - corners[0]);
    return normal;
}

/// Twice the area of a triangle seen against `normal`, up to the length of `normal`; negative if it turns the wrong
/// way.
double turn(const Vector3d& a, const Vector3d& b, const Vector3d& c, const Vector3d& normal)
{
    return (b - a).cross(c - b).dot(normal);
}

bool isConvex(std::span<const Vector3d> corners, const Vector3d& normal)
{
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i)
    {
        if (turn(corners[i], corners[(i + 1) % n], corners[(i + 2) % n], normal) < 0.0)
            return false;
    }
    return true;
}

void makeFan(std::span<const std::uint32_t> ring, std::span<Triangle> triangles)
{
    for (std::size_t i = 2; i < ring.size(); ++i)
        triangles[i - 2] = Triangle(ring[0], ring[i - 1], ring[i]);
}

/// The corners that are left, and what cutting one off needs to know.
class EarClipper
{
public:
    EarClipper(std::span<const Vector3d> corners, const Vector3d& normal)
        : corners_(corners)
        , normal_(normal)
        , ring_(corners.size())
    {
        std::iota(ring_.begin(), ring_.end(), 0U);
    }

    void run(std::span<Triangle> triangles)
    {
        std::size_t done = 0;
        std::size_t at = 0;
        std::size_t refused = 0;
        while (ring_.size() > 3 && refused < ring_.size())
        {
            if (!isEar_(at))
            {
                at = next_(at);
                ++refused;
                continue;
            }
            triangles[done++] = Triangle(ring_[previous_(at)], ring_[at], ring_[next_(at)]);
            ring_.erase(ring_.begin() + static_cast<std::ptrdiff_t>(at));
            // Going on behind the neighbour makes triangles that are less thin than a fan's.
            at = next_(at % ring_.size());
            refused = 0;
        }
        makeFan(ring_, triangles.subspan(done));
    }

private:
    [[nodiscard]] std::size_t next_(std::size_t i) const { return i + 1 == ring_.size() ? 0 : i + 1; }

    [[nodiscard]] std::size_t previous_(std::size_t i) const { return i == 0 ? ring_.size() - 1 : i - 1; }

    /// A corner that turns the right way, with no other corner in its triangle.
    [[nodiscard]] bool isEar_(std::size_t at) const
    {
        const Vector3d& a = corners_[ring_[previous_(at)]];
        const Vector3d& b = corners_[ring_[at]];
        const Vector3d& c = corners_[ring_[next_(at)]];
        if (turn(a, b, c, normal_) <= 0.0)
            return false;
        for (const std::uint32_t index : ring_)
        {
            const Vector3d& p = corners_[index];
            // Corners at the place of one of the three, as bridges to holes have them, are not in the way.
            if (p == a || p == b || p == c)
                continue;
            if (turn(a, b, p, normal_) >= 0.0 && turn(b, c, p, normal_) >= 0.0 && turn(c, a, p, normal_) >= 0.0)
                return false;
        }
        return true;
    }

    std::span<const Vector3d> corners_;
    Vector3d normal_;
    std::vector<std::uint32_t> ring_;
};

} // namespace

void triangulatePolygon(std::span<const Vector3d> corners, std::span<Triangle> triangles)
{
    if (corners.size() == 3)
    {
        triangles[0] = Triangle(0, 1, 2);
        return;
    }
    const Vector3d normal = newellNormal(corners);
    if (corners.size() <= kMaxClippedCorners && !isConvex(corners, normal))
    {
        EarClipper(corners, normal).run(triangles);
        return;
    }
    for (std::uint32_t i = 2; i < corners.size(); ++i)
        triangles[i - 2] = Triangle(0, i - 1, i);
}

} // namespace VX
