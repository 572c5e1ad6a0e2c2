#include "formats/Welder.h"

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <map>
#include <random>
#include <vector>

namespace VX
{

namespace
{

/// Chunks of triangles whose corners are few different points in a random order.
std::vector<std::vector<Vector3f>> randomChunks()
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> coordinate(-20, 20);
    std::vector<std::vector<Vector3f>> chunks(9);
    for (std::size_t i = 0; i < chunks.size(); ++i)
    {
        for (std::size_t k = 0; k < 3 * 5000 * i; ++k)
            chunks[i].emplace_back(static_cast<float>(coordinate(random)), static_cast<float>(coordinate(random)),
                                   static_cast<float>(coordinate(random)));
    }
    return chunks;
}

WeldedTriangles<Vector3f> weld(const std::vector<std::vector<Vector3f>>& chunks)
{
    Welder<Vector3f> welder(chunks.size());
    for (std::size_t i = chunks.size(); i-- > 0;)
        welder.add(i, chunks[i]);
    return welder.finish();
}

} // namespace

TEST(Welder, GivesWhatASlowAndSimpleWeldGives)
{
    const auto chunks = randomChunks();
    WeldedTriangles<Vector3f> expected;
    std::map<std::array<float, 3>, std::uint32_t> known;
    for (const auto& chunk : chunks)
    {
        for (std::size_t i = 0; i < chunk.size(); ++i)
        {
            const auto [found, isNew] = known.try_emplace({chunk[i].x(), chunk[i].y(), chunk[i].z()}, known.size());
            if (isNew)
                expected.points.push_back(chunk[i]);
            if (i % 3 == 0)
                expected.triangles.emplace_back();
            expected.triangles.back()[static_cast<int>(i % 3)] = found->second;
        }
    }
    const auto welded = weld(chunks);
    EXPECT_EQ(welded.points, expected.points);
    EXPECT_EQ(welded.triangles, expected.triangles);
}

TEST(Welder, ResultDoesNotDependOnTheNumberOfThreads)
{
    const auto chunks = randomChunks();
    const auto parallel = weld(chunks);
    const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
    const auto serial = weld(chunks);
    EXPECT_EQ(parallel.points, serial.points);
    EXPECT_EQ(parallel.triangles, serial.triangles);
}

TEST(Welder, NothingGivesNothing)
{
    Welder<Vector3d> welder(0);
    EXPECT_TRUE(welder.finish().points.empty());
}

} // namespace VX
