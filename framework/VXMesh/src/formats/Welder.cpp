#include "formats/Welder.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <limits>
#include <numeric>

namespace VX
{

namespace
{

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kBlock = 32768;

std::uint64_t mix(std::uint64_t value)
{
    value *= 0x9E3779B97F4A7C15U;
    return value ^ (value >> 32U);
}

std::uint64_t hashOf(const Vector3f& point)
{
    std::array<std::uint32_t, 3> bits;
    std::memcpy(bits.data(), point.data(), sizeof(bits));
    return mix(mix(bits[0] | (std::uint64_t{bits[1]} << 32U)) + bits[2]);
}

std::uint64_t hashOf(const Vector3d& point)
{
    std::array<std::uint64_t, 3> bits;
    std::memcpy(bits.data(), point.data(), sizeof(bits));
    return mix(mix(mix(bits[0]) + bits[1]) + bits[2]);
}

/// Open addressing over the points of one chunk; grows with them.
template <typename Vector>
class ChunkTable
{
public:
    explicit ChunkTable(std::vector<Vector>& points)
        : points_(points)
        , slots_(1024, kNone)
    {
    }

    std::uint32_t indexOf(const Vector& point)
    {
        for (std::size_t slot = hashOf(point) & mask_();; slot = (slot + 1) & mask_())
        {
            if (slots_[slot] == kNone)
                return insert_(slot, point);
            if (points_[slots_[slot]] == point)
                return slots_[slot];
        }
    }

private:
    [[nodiscard]] std::size_t mask_() const { return slots_.size() - 1; }

    std::uint32_t insert_(std::size_t slot, const Vector& point)
    {
        const auto index = static_cast<std::uint32_t>(points_.size());
        slots_[slot] = index;
        points_.push_back(point);
        if (points_.size() * 2 > slots_.size())
            grow_();
        return index;
    }

    void grow_()
    {
        slots_.assign(slots_.size() * 2, kNone);
        for (std::uint32_t index = 0; index < points_.size(); ++index)
        {
            std::size_t slot = hashOf(points_[index]) & mask_();
            while (slots_[slot] != kNone)
                slot = (slot + 1) & mask_();
            slots_[slot] = index;
        }
    }

    std::vector<Vector>& points_;
    std::vector<std::uint32_t> slots_;
};

/// Open addressing over the points of all chunks, filled by several threads. Each slot ends up with the least index of
/// the points that are equal, which is their first occurrence, in whatever order they came.
template <typename Vector>
class FirstOccurrences
{
public:
    explicit FirstOccurrences(const std::vector<Vector>& points)
        : points_(points)
        , slots_(std::bit_ceil(points.size() + points.size() / 2 + 1))
    {
    }

    /// @return the slot of the point; `at` tells its first occurrence once all points are in
    /// @threads any
    std::size_t insert(std::uint32_t index)
    {
        const std::uint32_t entry = index + 1;
        for (std::size_t slot = hashOf(points_[index]) & mask_();; slot = (slot + 1) & mask_())
        {
            std::uint32_t current = slots_[slot].load(std::memory_order_relaxed);
            if (current == kFree && slots_[slot].compare_exchange_strong(current, entry, std::memory_order_relaxed))
                return slot;
            // What stands in a slot changes only to the index of an equal point.
            if (points_[current - 1] != points_[index])
                continue;
            while (entry < current && !slots_[slot].compare_exchange_weak(current, entry, std::memory_order_relaxed))
            {
            }
            return slot;
        }
    }

    [[nodiscard]] std::uint32_t at(std::size_t slot) const { return slots_[slot].load(std::memory_order_relaxed) - 1; }

private:
    /// An entry is an index plus one, so that a new table is empty without a walk over it.
    static constexpr std::uint32_t kFree = 0;

    [[nodiscard]] std::size_t mask_() const { return slots_.size() - 1; }

    const std::vector<Vector>& points_;
    std::vector<std::atomic<std::uint32_t>> slots_;
};

template <typename Body>
void forBlocks(std::size_t count, const Body& body)
{
    const std::size_t blocks = (count + kBlock - 1) / kBlock;
    tbb::parallel_for(std::size_t{0}, blocks,
                      [&](std::size_t block) { body(block, block * kBlock, std::min(count, (block + 1) * kBlock)); });
}

/// Keeps the first of equal points.
/// @param indices  in: the first occurrence of each point; out: the new index of each point
template <typename Vector>
std::vector<Vector> keepFirst(const std::vector<Vector>& points, std::vector<std::uint32_t>& indices)
{
    const std::size_t count = points.size();
    std::vector<std::uint32_t> firstOfBlock(count / kBlock + 2, 0);
    forBlocks(count,
              [&](std::size_t block, std::size_t begin, std::size_t end)
              {
                  std::uint32_t kept = 0;
                  for (std::size_t i = begin; i < end; ++i)
                      kept += indices[i] == i ? 1 : 0;
                  firstOfBlock[block + 1] = kept;
              });
    std::partial_sum(firstOfBlock.begin(), firstOfBlock.end(), firstOfBlock.begin());

    std::vector<Vector> result(firstOfBlock.back());
    std::vector<std::uint32_t> newIndex(count);
    forBlocks(count,
              [&](std::size_t block, std::size_t begin, std::size_t end)
              {
                  std::uint32_t next = firstOfBlock[block];
                  for (std::size_t i = begin; i < end; ++i)
                  {
                      if (indices[i] != i)
                          continue;
                      result[next] = points[i];
                      newIndex[i] = next++;
                  }
              });
    forBlocks(count,
              [&](std::size_t, std::size_t begin, std::size_t end)
              {
                  for (std::size_t i = begin; i < end; ++i)
                      indices[i] = newIndex[indices[i]];
              });
    return result;
}

} // namespace

template <typename Vector>
std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector>& points)
{
    std::vector<std::uint32_t> result(points.size());
    FirstOccurrences<Vector> table(points);
    forBlocks(points.size(),
              [&](std::size_t, std::size_t begin, std::size_t end)
              {
                  for (std::size_t i = begin; i < end; ++i)
                      result[i] = static_cast<std::uint32_t>(table.insert(static_cast<std::uint32_t>(i)));
              });
    forBlocks(points.size(),
              [&](std::size_t, std::size_t begin, std::size_t end)
              {
                  for (std::size_t i = begin; i < end; ++i)
                      result[i] = table.at(result[i]);
              });
    return result;
}

template <typename Vector>
void Welder<Vector>::add(std::size_t chunk, std::span<const Vector> corners)
{
    Chunk& target = chunks_[chunk];
    ChunkTable<Vector> table(target.points);
    target.triangles.resize(corners.size() / 3);
    for (std::size_t i = 0; i < target.triangles.size(); ++i)
    {
        for (std::size_t k = 0; k < 3; ++k)
        {
            // Adding +0 turns -0 into +0 and leaves everything else.
            const Vector corner = corners[3 * i + k].array() + 0;
            target.triangles[i][static_cast<int>(k)] = table.indexOf(corner);
        }
    }
}

template <typename Vector>
WeldedTriangles<Vector> Welder<Vector>::finish()
{
    const std::size_t chunkCount = chunks_.size();
    std::vector<std::size_t> firstPoint(chunkCount + 1, 0);
    std::vector<std::size_t> firstTriangle(chunkCount + 1, 0);
    for (std::size_t i = 0; i < chunkCount; ++i)
    {
        firstPoint[i + 1] = firstPoint[i] + chunks_[i].points.size();
        firstTriangle[i + 1] = firstTriangle[i] + chunks_[i].triangles.size();
    }

    std::vector<Vector> points(firstPoint.back());
    tbb::parallel_for(std::size_t{0}, chunkCount,
                      [&](std::size_t i)
                      {
                          std::ranges::copy(chunks_[i].points, points.data() + firstPoint[i]);
                          std::vector<Vector>().swap(chunks_[i].points);
                      });
    std::vector<std::uint32_t> indices = findFirstOccurrences(points);

    WeldedTriangles<Vector> result;
    result.points = keepFirst(points, indices);
    std::vector<Vector>().swap(points);
    result.triangles.resize(firstTriangle.back());
    tbb::parallel_for(std::size_t{0}, chunkCount,
                      [&](std::size_t i)
                      {
                          const std::uint32_t* newIndex = indices.data() + firstPoint[i];
                          Triangle* target = result.triangles.data() + firstTriangle[i];
                          for (const Triangle& triangle : chunks_[i].triangles)
                              *target++ = {newIndex[triangle[0]], newIndex[triangle[1]], newIndex[triangle[2]]};
                          std::vector<Triangle>().swap(chunks_[i].triangles);
                      });
    chunks_.clear();
    return result;
}

template std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector3f>& points);
template std::vector<std::uint32_t> findFirstOccurrences(const std::vector<Vector3d>& points);
template class Welder<Vector3f>;
template class Welder<Vector3d>;

} // namespace VX
