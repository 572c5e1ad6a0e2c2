#pragma once

#include <cstdint>

namespace VX
{

/// A number that looks random, of an edge from one point to another. That of the opposite edge is its negative, that of
/// an edge of no length 0: the sum over the edges of all triangles is 0 where each edge runs as often one way as the
/// other.
/// (The finalizer of MurmurHash3, A. Appleby.)
/// @threads any
constexpr std::uint64_t edgeTerm(std::uint32_t from, std::uint32_t to)
{
    if (from == to)
        return 0;
    std::uint64_t x = from < to ? std::uint64_t{from} << 32U | to : std::uint64_t{to} << 32U | from;
    x ^= x >> 33U;
    x *= 0xff51afd7ed558ccdULL;
    x ^= x >> 33U;
    x *= 0xc4ceb9fe1a85ec53ULL;
    x ^= x >> 33U;
    return from < to ? x : 0 - x;
}

} // namespace VX
