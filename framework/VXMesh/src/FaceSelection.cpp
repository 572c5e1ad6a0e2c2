#include "PointPlaces.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/MeshTopology.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

namespace VX
{

namespace
{

constexpr std::size_t kWordGrain = 256;

/// Coordinates are floats: faces of one plane differ by about this much, in degrees.
constexpr double kRoundingDegrees = 0.01;

/// Calls `body(word, i)` for the words of `faces` on several threads.
template <class Body>
void forEachWord(FaceSet& faces, const Body& body)
{
    const std::span<FaceSet::Word> words = faces.words();
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, words.size(), kWordGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                              body(words[i], i);
                      });
}

/// The unit normal; zero for a face that is narrower than floats can tell at its place.
Vector3f normalOf(const Mesh& mesh, std::uint32_t face)
{
    constexpr double kResolution = 1e-6;
    const Triangle& t = mesh.triangles[face];
    const Vector3f& a = mesh.points[t[0]];
    const Vector3d ab = (mesh.points[t[1]] - a).cast<double>();
    const Vector3d ac = (mesh.points[t[2]] - a).cast<double>();
    const Vector3d cross = ab.cross(ac);
    const double area = cross.norm();
    const double longest = std::sqrt(std::max(ab.squaredNorm(), ac.squaredNorm()));
    const double leastWidth = kResolution * static_cast<double>(a.cwiseAbs().maxCoeff());
    return area > leastWidth * longest ? Vector3f((cross / area).cast<float>()) : Vector3f(Vector3f::Zero());
}

/// Between unit vectors at an angle: sharper than the cosine where angles are small.
float chordOf(double degrees)
{
    return static_cast<float>(2 * std::sin(degrees * std::numbers::pi / 360));
}

/// Grows a region face by face, in the order of the distance from the seed counted in faces.
class Region
{
public:
    Region(const Mesh& mesh, const MeshTopology& topology, double toleranceDegrees,
           const std::function<bool()>& isToStop)
        : mesh_(mesh)
        , topology_(topology)
        , isToStop_(isToStop)
        , greatestChord_(chordOf(std::min(toleranceDegrees + kRoundingDegrees, 180.0)))
        , faces_(mesh.triangles.size())
    {
    }

    FaceSet grow(std::uint32_t seed)
    {
        std::vector<Member> current{{seed, normalOf(mesh_, seed)}};
        std::vector<Member> next;
        faces_.set(seed);
        while (!current.empty() && !stopped_)
        {
            for (const Member& member : current)
                addNeighbors_(member, next);
            current.swap(next);
            next.clear();
        }
        return std::move(faces_);
    }

private:
    struct Member
    {
        std::uint32_t face;
        /// Of the face, or of the one before it where it has none; zero where none had one.
        Vector3f normal;
    };

    void addNeighbors_(const Member& member, std::vector<Member>& reached)
    {
        for (std::uint32_t side = 3 * member.face; side < 3 * member.face + 3; ++side)
        {
            for (std::uint32_t other = topology_.nextOnEdge(side); other != side; other = topology_.nextOnEdge(other))
            {
                if (isTimeToStop_())
                    return;
                if (faces_.test(other / 3))
                    continue;
                const float sign = startOf_(side) == startOf_(other) ? -1.0F : 1.0F;
                Vector3f normal = normalOf(mesh_, other / 3);
                if (normal.isZero(0))
                    normal = sign * member.normal;
                else if (!member.normal.isZero(0) && (sign * normal - member.normal).norm() > greatestChord_)
                    continue;
                faces_.set(other / 3);
                reached.push_back({other / 3, normal});
            }
        }
    }

    /// Many faces on one edge take steps as many as their square.
    bool isTimeToStop_()
    {
        constexpr std::uint64_t stepsBetweenQuestions = 1 << 16;
        if (!stopped_ && ++steps_ % stepsBetweenQuestions == 0 && isToStop_)
            stopped_ = isToStop_();
        return stopped_;
    }

    [[nodiscard]] const Vector3f& startOf_(std::uint32_t side) const
    {
        return mesh_.points[mesh_.triangles[side / 3][side % 3]];
    }

    const Mesh& mesh_;
    const MeshTopology& topology_;
    const std::function<bool()>& isToStop_;
    float greatestChord_;
    FaceSet faces_;
    std::uint64_t steps_ = 0;
    bool stopped_ = false;
};

} // namespace

FaceSet expandFaces(const Mesh& mesh, const FaceSet& faces)
{
    assert(faces.size() == mesh.triangles.size());
    const std::vector<std::uint32_t> places = placesOf(mesh.points);
    const auto touched = std::make_unique<std::atomic<bool>[]>(mesh.points.size());
    FaceSet result = faces;
    forEachWord(result,
                [&](FaceSet::Word word, std::size_t i)
                {
                    for (; word != 0; word &= word - 1)
                    {
                        for (const std::uint32_t point :
                             mesh.triangles[i * FaceSet::bitsInWord + static_cast<std::size_t>(std::countr_zero(word))])
                            touched[places[point]].store(true, std::memory_order_relaxed);
                    }
                });
    const auto isTouched = [&](std::uint32_t point) { return touched[places[point]].load(std::memory_order_relaxed); };
    forEachWord(result,
                [&](FaceSet::Word& word, std::size_t i)
                {
                    const std::size_t first = i * FaceSet::bitsInWord;
                    const std::size_t count = std::min(FaceSet::bitsInWord, mesh.triangles.size() - first);
                    for (std::size_t k = 0; k < count; ++k)
                    {
                        const Triangle& t = mesh.triangles[first + k];
                        if (isTouched(t[0]) || isTouched(t[1]) || isTouched(t[2]))
                            word |= FaceSet::Word{1} << k;
                    }
                });
    return result;
}

FaceSet shrinkFaces(const Mesh& mesh, const FaceSet& faces)
{
    return invertFaces(expandFaces(mesh, invertFaces(faces)));
}

FaceSet invertFaces(const FaceSet& faces)
{
    FaceSet result = faces;
    result.flip();
    return result;
}

FaceSet growRegion(const Mesh& mesh, const MeshTopology& topology, std::uint32_t seedFace, double angleToleranceDegrees,
                   const std::function<bool()>& isToStop)
{
    assert(seedFace < mesh.triangles.size() && topology.faceCount() == mesh.triangles.size());
    return Region(mesh, topology, angleToleranceDegrees, isToStop).grow(seedFace);
}

} // namespace VX
