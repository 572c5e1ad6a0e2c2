#include "render/Creases.h"

#include "render/VertexSets.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_sort.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace VX
{

namespace
{

using Range = tbb::blocked_range<std::size_t>;

constexpr double sharpAngle = 33 * std::numbers::pi / 180;
const float cosSharp = static_cast<float>(std::cos(sharpAngle));

constexpr std::uint32_t noSlot = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t pointsPerChunk = 2048;

/// The points at which the triangles look in different enough directions, or do not go all around: only these can lie
/// on a sharp edge or a border. Each has a list of its corners.
struct Suspects
{
    std::vector<std::uint32_t> points;
    std::vector<std::uint32_t> slots; ///< for each point of the mesh its place in `points`, or noSlot
    std::vector<std::uint32_t> first; ///< where the corners of each begin, and the end
    std::vector<std::uint32_t> corners;
};

void findSuspects(const Mesh& mesh, const NormalSums& sums, Suspects& suspects)
{
    const auto limit = static_cast<float>(2 * std::numbers::pi * std::cos(sharpAngle / 2));
    const std::size_t count = mesh.points.size();
    std::vector<std::vector<std::uint32_t>> found(count / (1 << 16) + 1);
    tbb::parallel_for(std::size_t{0}, found.size(),
                      [&](std::size_t chunk)
                      {
                          const std::size_t end = std::min(count, (chunk + 1) << 16);
                          for (std::size_t i = chunk << 16; i < end; ++i)
                          {
                              const auto point = static_cast<std::uint32_t>(i);
                              if (sums.sum(point).squaredNorm() < limit * limit)
                                  found[chunk].push_back(point);
                          }
                      });
    for (const auto& part : found)
        suspects.points.insert(suspects.points.end(), part.begin(), part.end());
}

void collectCorners(const Mesh& mesh, Suspects& suspects)
{
    suspects.slots.assign(mesh.points.size(), noSlot);
    for (std::size_t i = 0; i < suspects.points.size(); ++i)
        suspects.slots[suspects.points[i]] = static_cast<std::uint32_t>(i);

    const auto forCorners = [&](const auto& visit)
    {
        tbb::parallel_for(Range(0, mesh.triangles.size(), 1 << 14),
                          [&](const Range& range)
                          {
                              for (std::size_t t = range.begin(); t != range.end(); ++t)
                              {
                                  for (int k = 0; k < 3; ++k)
                                  {
                                      const std::uint32_t slot = suspects.slots[mesh.triangles[t][k]];
                                      if (slot != noSlot)
                                          visit(slot,
                                                static_cast<std::uint32_t>(3 * t) + static_cast<std::uint32_t>(k));
                                  }
                              }
                          });
    };
    const auto next = [](std::uint32_t& counter)
    { return std::atomic_ref(counter).fetch_add(1, std::memory_order_relaxed); };

    suspects.first.assign(suspects.points.size() + 1, 0);
    forCorners([&](std::uint32_t slot, std::uint32_t) { next(suspects.first[slot + 1]); });
    std::partial_sum(suspects.first.begin(), suspects.first.end(), suspects.first.begin());
    suspects.corners.resize(suspects.first.back());
    std::vector<std::uint32_t> cursor(suspects.first.begin(), suspects.first.end() - 1);
    forCorners([&](std::uint32_t slot, std::uint32_t corner) { suspects.corners[next(cursor[slot])] = corner; });
}

struct SharpEdge
{
    Segment ends;
    float cosine; ///< of the angle between the triangles
};

/// The triangles around one point, sorted into smooth areas.
class Fan
{
public:
    Fan(const Mesh& mesh, const Suspects& suspects)
        : mesh_(mesh)
        , suspects_(suspects)
    {
    }

    /// Appends the sharp edges and borders at a suspect; each is found at one of its ends only.
    void findSharpEdges(std::uint32_t slot, std::vector<SharpEdge>& edges)
    {
        load_(slot);
        forEdges_(
            [&](SpokeIterator begin, SpokeIterator end)
            {
                const float turn = cosineOf_(begin, end);
                if (turn < cosSharp && (point_ < begin->to || suspects_.slots[begin->to] == noSlot))
                    edges.push_back({Segment(point_, begin->to), turn});
            });
    }

    /// Gives each smooth area between the edges for which `divides(point, point)` its own normal.
    template <class Divides>
    void split(std::uint32_t slot, const Divides& divides, Creases& out)
    {
        load_(slot);
        forEdges_(
            [&](SpokeIterator begin, SpokeIterator end)
            {
                if (cosineOf_(begin, end) >= cosSharp || !divides(point_, begin->to))
                    join_(begin, end);
            });
        emit_(out);
    }

private:
    struct Wing
    {
        std::uint32_t corner = 0;
        std::uint32_t area = 0; ///< the wing that stands for its smooth area, or one on the way to it
        Vector3f normal = Vector3f::Zero();
        float angle = 0;
    };

    /// An edge of a wing at the point.
    struct Spoke
    {
        std::uint32_t to = 0;
        std::uint32_t wing = 0;

        friend auto operator<=>(const Spoke&, const Spoke&) = default;
    };

    using SpokeIterator = std::vector<Spoke>::const_iterator;

    void load_(std::uint32_t slot)
    {
        point_ = suspects_.points[slot];
        wings_.clear();
        spokes_.clear();
        const auto begin = suspects_.corners.begin();
        corners_.assign(begin + suspects_.first[slot], begin + suspects_.first[slot + 1]);
        std::sort(corners_.begin(), corners_.end());
        for (const std::uint32_t corner : corners_)
        {
            const Triangle& t = mesh_.triangles[corner / 3];
            const int k = static_cast<int>(corner % 3);
            const TriangleShape shape = shapeOf(mesh_.points[t[0]], mesh_.points[t[1]], mesh_.points[t[2]]);
            if (shape.normal.isZero(0))
                continue;
            const auto index = static_cast<std::uint32_t>(wings_.size());
            wings_.push_back({corner, index, shape.normal, shape.angles[k]});
            spokes_.push_back({t[(k + 1) % 3], index});
            spokes_.push_back({t[(k + 2) % 3], index});
        }
        std::sort(spokes_.begin(), spokes_.end());
    }

    /// Calls `visit` with the spokes of each edge at the point.
    template <class Visit>
    void forEdges_(const Visit& visit) const
    {
        for (auto run = spokes_.begin(); run != spokes_.end();)
        {
            const auto end = std::find_if(run, spokes_.end(), [&](const Spoke& s) { return s.to != run->to; });
            visit(run, end);
            run = end;
        }
    }

    /// Of the angle between the triangles at an edge; -1 where there are not two.
    [[nodiscard]] float cosineOf_(SpokeIterator begin, SpokeIterator end) const
    {
        return end - begin == 2 ? wings_[begin->wing].normal.dot(wings_[(begin + 1)->wing].normal) : -1.0F;
    }

    [[nodiscard]] std::uint32_t areaOf_(std::uint32_t wing) const
    {
        while (wings_[wing].area != wing)
            wing = wings_[wing].area;
        return wing;
    }

    void join_(SpokeIterator begin, SpokeIterator end)
    {
        for (auto spoke = begin + 1; spoke < end; ++spoke)
        {
            const std::uint32_t a = areaOf_((spoke - 1)->wing);
            const std::uint32_t b = areaOf_(spoke->wing);
            wings_[std::max(a, b)].area = std::min(a, b);
        }
    }

    void emit_(Creases& out)
    {
        bool isSplit = false;
        sums_.assign(wings_.size(), Vector3f::Zero());
        for (std::uint32_t i = 0; i < wings_.size(); ++i)
        {
            const std::uint32_t area = areaOf_(i);
            wings_[i].area = area;
            sums_[area] += wings_[i].normal * wings_[i].angle;
            isSplit |= area != 0;
        }
        if (!isSplit)
            return;
        out.changed.push_back({point_, sums_[0]});
        vertices_.assign(wings_.size(), 0);
        for (std::uint32_t i = 0; i < wings_.size(); ++i)
        {
            const std::uint32_t area = wings_[i].area;
            if (area == 0)
                continue;
            if (area == i)
            {
                vertices_[i] = static_cast<std::uint32_t>(out.added.size());
                out.added.push_back({point_, sums_[i]});
            }
            out.patches.push_back({wings_[i].corner, vertices_[area]});
        }
    }

    const Mesh& mesh_;
    const Suspects& suspects_;
    std::uint32_t point_ = 0;
    std::vector<std::uint32_t> corners_;
    std::vector<Wing> wings_;
    std::vector<Spoke> spokes_;
    std::vector<Vector3f> sums_;
    std::vector<std::uint32_t> vertices_;
};

/// The edges without what is noise rather than an edge of a part: short pieces with loose ends where the surface turns
/// little, and tiny loops of few segments.
std::vector<Segment> withoutScraps(const Mesh& mesh, const Suspects& suspects, const std::vector<SharpEdge>& edges)
{
    struct Chain
    {
        std::uint32_t segments = 0;
        std::uint32_t ends = 0;
        float length = 0;
        float cosines = 0;

        [[nodiscard]] bool isScrap(float diagonal) const
        {
            constexpr std::uint32_t fewSegments = 6;
            constexpr float tinyLength = 0.05F;
            constexpr float strongCosine = 0.5F;
            const std::uint32_t leastSegmentsAnEnd = cosines < strongCosine * static_cast<float>(segments) ? 6 : 8;
            return segments < leastSegmentsAnEnd * ends || (segments < fewSegments && length < tinyLength * diagonal);
        }
    };

    const auto count = static_cast<std::uint32_t>(suspects.points.size());
    VertexSets chains(count);
    std::vector<std::uint32_t> degrees(count, 0);
    std::vector<Chain> facts(count);
    Box3f box;
    for (const SharpEdge& edge : edges)
    {
        const std::uint32_t a = suspects.slots[edge.ends[0]];
        const std::uint32_t b = suspects.slots[edge.ends[1]];
        box.extend(mesh.points[edge.ends[0]]);
        ++degrees[a];
        if (b == noSlot)
            continue;
        ++degrees[b];
        chains.unite(a, b);
    }
    for (std::uint32_t slot = 0; slot < count; ++slot)
    {
        if (degrees[slot] == 1)
            ++facts[chains.find(slot)].ends;
    }
    for (const SharpEdge& edge : edges)
    {
        Chain& chain = facts[chains.find(suspects.slots[edge.ends[0]])];
        ++chain.segments;
        chain.length += (mesh.points[edge.ends[0]] - mesh.points[edge.ends[1]]).norm();
        chain.cosines += edge.cosine;
        // Where the other end is no suspect, the edge fades out there.
        if (suspects.slots[edge.ends[1]] == noSlot)
            ++chain.ends;
    }
    const float diagonal = box.isEmpty() ? 0 : box.diagonal().norm();
    std::vector<Segment> kept;
    for (const SharpEdge& edge : edges)
    {
        if (!facts[chains.find(suspects.slots[edge.ends[0]])].isScrap(diagonal))
            kept.push_back(edge.ends);
    }
    return kept;
}

/// A set of edges that is asked often and never changes.
class EdgeSet
{
public:
    explicit EdgeSet(const std::vector<Segment>& edges)
    {
        keys_.reserve(edges.size());
        for (const Segment& edge : edges)
            keys_.push_back(keyOf_(edge[0], edge[1]));
        tbb::parallel_sort(keys_.begin(), keys_.end());
    }

    [[nodiscard]] bool contains(std::uint32_t a, std::uint32_t b) const
    {
        return std::binary_search(keys_.begin(), keys_.end(), keyOf_(a, b));
    }

private:
    static std::uint64_t keyOf_(std::uint32_t a, std::uint32_t b)
    {
        return std::uint64_t{std::min(a, b)} << 32 | std::max(a, b);
    }

    std::vector<std::uint64_t> keys_;
};

template <class T>
void append(std::vector<T>& to, const std::vector<T>& from)
{
    to.insert(to.end(), from.begin(), from.end());
}

/// Calls `body(fan, slot, part)` for every suspect, on several threads. The parts are in the order of the suspects,
/// whatever the number of threads.
template <class Part, class Body>
std::vector<Part> forSuspects(const Mesh& mesh, const Suspects& suspects, const Body& body)
{
    std::vector<Part> parts((suspects.points.size() + pointsPerChunk - 1) / pointsPerChunk);
    tbb::parallel_for(std::size_t{0}, parts.size(),
                      [&](std::size_t chunk)
                      {
                          Fan fan(mesh, suspects);
                          const std::size_t end = std::min(suspects.points.size(), (chunk + 1) * pointsPerChunk);
                          for (std::size_t slot = chunk * pointsPerChunk; slot < end; ++slot)
                              body(fan, static_cast<std::uint32_t>(slot), parts[chunk]);
                      });
    return parts;
}

} // namespace

Creases findCreases(const Mesh& mesh, const NormalSums& sums)
{
    Creases result;
    Suspects suspects;
    findSuspects(mesh, sums, suspects);
    if (suspects.points.empty())
        return result;
    collectCorners(mesh, suspects);
    const auto edgeParts = forSuspects<std::vector<SharpEdge>>(
        mesh, suspects, [](Fan& fan, std::uint32_t slot, auto& edges) { fan.findSharpEdges(slot, edges); });
    std::vector<SharpEdge> edges;
    for (const auto& part : edgeParts)
        append(edges, part);
    result.edges = withoutScraps(mesh, suspects, edges);

    const EdgeSet kept(result.edges);
    const auto divides = [&](std::uint32_t a, std::uint32_t b) { return kept.contains(a, b); };
    const auto parts = forSuspects<Creases>(mesh, suspects, [&](Fan& fan, std::uint32_t slot, Creases& part)
                                            { fan.split(slot, divides, part); });
    for (const Creases& part : parts)
    {
        const auto firstVertex = static_cast<std::uint32_t>(result.added.size());
        append(result.changed, part.changed);
        append(result.added, part.added);
        for (const Creases::Patch& patch : part.patches)
            result.patches.push_back({patch.corner, firstVertex + patch.vertex});
    }
    return result;
}

} // namespace VX
