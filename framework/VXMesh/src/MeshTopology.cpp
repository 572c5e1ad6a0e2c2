#include "PointPlaces.h"

#include <VXMesh/MeshTopology.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <limits>
#include <memory>
#include <numeric>
#include <span>

namespace VX
{

namespace
{

constexpr std::size_t kGrain = 1 << 15;

/// The points at the ends of a side, the lesser first.
struct EdgeEnds
{
    std::uint32_t low;
    std::uint32_t high;
};

EdgeEnds endsOf(const Triangle& triangle, std::uint32_t corner)
{
    const std::uint32_t from = triangle[corner];
    const std::uint32_t to = triangle[corner == 2 ? 0 : corner + 1];
    return {std::min(from, to), std::max(from, to)};
}

/// Calls `body(face, triangle)` with corners in the place of points.
template <class Body>
void forEachTriangle(const Mesh& mesh, const std::vector<std::uint32_t>& places, const Body& body)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, mesh.triangles.size(), kGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                          {
                              const Triangle& t = mesh.triangles[i];
                              body(static_cast<std::uint32_t>(i), Triangle(places[t[0]], places[t[1]], places[t[2]]));
                          }
                      });
}

/// A side in the list of its lower point.
struct ListedSide
{
    std::uint32_t high;
    std::uint32_t side;

    friend auto operator<=>(const ListedSide&, const ListedSide&) = default;
};

/// The sides of a mesh, in a list for each lower point.
class SideLists
{
public:
    explicit SideLists(const Mesh& mesh)
        : ends_(std::make_unique<std::atomic<std::uint32_t>[]>(mesh.points.size() + 1))
    {
        const std::vector<std::uint32_t> places = placesOf(mesh.points);
        forEachTriangle(mesh, places,
                        [&](std::uint32_t, const Triangle& triangle)
                        {
                            for (std::uint32_t corner = 0; corner < 3; ++corner)
                            {
                                const EdgeEnds ends = endsOf(triangle, corner);
                                if (ends.low != ends.high)
                                    ends_[ends.low].fetch_add(1, std::memory_order_relaxed);
                            }
                        });
        // From the number of each list to its begin; filling moves the begin to the end.
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i <= mesh.points.size(); ++i)
            sum += ends_[i].exchange(sum, std::memory_order_relaxed);
        sides_ = std::make_unique_for_overwrite<ListedSide[]>(sum);
        forEachTriangle(mesh, places,
                        [&](std::uint32_t face, const Triangle& triangle)
                        {
                            for (std::uint32_t corner = 0; corner < 3; ++corner)
                            {
                                const EdgeEnds ends = endsOf(triangle, corner);
                                if (ends.low != ends.high)
                                    sides_[ends_[ends.low].fetch_add(1, std::memory_order_relaxed)] = {
                                        ends.high, 3 * face + corner};
                            }
                        });
    }

    /// Those with the lower point `point`. Each list is to be had by one thread at a time.
    [[nodiscard]] std::span<ListedSide> list(std::size_t point) const
    {
        const std::uint32_t begin = point == 0 ? 0 : ends_[point - 1].load(std::memory_order_relaxed);
        return {sides_.get() + begin, sides_.get() + ends_[point].load(std::memory_order_relaxed)};
    }

private:
    std::unique_ptr<std::atomic<std::uint32_t>[]> ends_;
    std::unique_ptr<ListedSide[]> sides_;
};

} // namespace

MeshTopology::MeshTopology(const Mesh& mesh)
{
    assert(mesh.triangles.size() <= std::numeric_limits<std::uint32_t>::max() / 3);
    nextOnEdge_.resize(mesh.triangles.size() * 3);
    std::iota(nextOnEdge_.begin(), nextOnEdge_.end(), 0U);
    const SideLists lists(mesh);
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, mesh.points.size(), kGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t point = range.begin(); point != range.end(); ++point)
                          {
                              const std::span<ListedSide> sides = lists.list(point);
                              // The threads came in any order; the rings are to be the same each time.
                              std::ranges::sort(sides);
                              for (auto begin = sides.begin(); begin != sides.end();)
                              {
                                  const auto end = std::find_if(begin, sides.end(), [&](const ListedSide& s)
                                                                { return s.high != begin->high; });
                                  for (auto i = begin; i != end; ++i)
                                      nextOnEdge_[i->side] = (i + 1 == end ? begin : i + 1)->side;
                                  begin = end;
                              }
                          }
                      });
}

} // namespace VX
