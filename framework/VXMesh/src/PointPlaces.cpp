#include "PointPlaces.h"

#include "formats/Welder.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace VX
{

std::vector<std::uint32_t> placesOf(const std::vector<Vector3f>& points)
{
    constexpr std::size_t grain = 1 << 15;
    // Adding +0 turns -0 into +0 and leaves everything else.
    std::vector<Vector3f> plain(points.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, points.size(), grain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                              plain[i] = points[i].array() + 0;
                      });
    return findFirstOccurrences(plain);
}

} // namespace VX
