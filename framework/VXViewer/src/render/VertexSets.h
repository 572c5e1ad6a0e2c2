#pragma once

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace VX
{

/// Disjoint sets of the numbers from 0 that many threads may unite at once: a parent never has a greater number than
/// its child, and only roots are linked, by compare and swap (Anderson and Woll, 1991).
class VertexSets
{
public:
    explicit VertexSets(std::uint32_t count)
        : parents_(std::make_unique_for_overwrite<std::atomic<std::uint32_t>[]>(count))
    {
        tbb::parallel_for(tbb::blocked_range<std::uint32_t>(0, count, 1 << 16),
                          [&](const tbb::blocked_range<std::uint32_t>& range)
                          {
                              for (std::uint32_t i = range.begin(); i != range.end(); ++i)
                                  parents_[i].store(i, std::memory_order_relaxed);
                          });
    }

    [[nodiscard]] std::uint32_t find(std::uint32_t x) const
    {
        std::uint32_t parent = parents_[x].load(std::memory_order_relaxed);
        while (parent != x)
        {
            // Halves the path; a lost race only leaves it longer.
            const std::uint32_t grandparent = parents_[parent].load(std::memory_order_relaxed);
            if (grandparent != parent)
                parents_[x].compare_exchange_weak(parent, grandparent, std::memory_order_relaxed);
            x = grandparent;
            parent = parents_[x].load(std::memory_order_relaxed);
        }
        return x;
    }

    void unite(std::uint32_t a, std::uint32_t b)
    {
        while (true)
        {
            a = find(a);
            b = find(b);
            if (a == b)
                return;
            if (a < b)
                std::swap(a, b);
            std::uint32_t expected = a;
            if (parents_[a].compare_exchange_strong(expected, b, std::memory_order_relaxed))
                return;
        }
    }

    [[nodiscard]] bool isRoot(std::uint32_t x) const { return parents_[x].load(std::memory_order_relaxed) == x; }

private:
    std::unique_ptr<std::atomic<std::uint32_t>[]> parents_;
};

} // namespace VX
