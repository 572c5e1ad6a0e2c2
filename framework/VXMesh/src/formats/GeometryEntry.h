#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace VX
{

static_assert(std::endian::native == std::endian::little, "entries are little-endian");

inline constexpr std::array<char, 4> kGeometryMagic = {'V', 'X', 'G', '1'};
inline constexpr std::uint32_t kBlockElements = 65536;

enum class GeometryKind : std::uint32_t
{
    Mesh = 1,
    PointCloud = 2,
    Lines = 3
};

/// What a stream of elements means.
enum class Semantic : std::uint32_t
{
    Points = 1,
    Normals = 2,
    PointColors = 3,
    Triangles = 4,
    FaceColors = 5,
    Segments = 6
};

/// Stands at the begin of an entry; the headers of the streams follow, then the sizes of all their blocks, then the
/// blocks.
struct EntryHeader
{
    std::array<char, 4> magic = kGeometryMagic;
    GeometryKind kind = GeometryKind::Mesh;
    std::uint32_t streamCount = 0;
    std::uint32_t reserved = 0;
};

/// Stands for the elements of one meaning. Each block but the last has `blockElements` of them and is decoded by
/// itself.
struct StreamHeader
{
    Semantic semantic = Semantic::Points;
    std::uint32_t elementSize = 0;
    std::uint64_t elementCount = 0;
    std::uint32_t blockElements = kBlockElements;
    std::uint32_t blockCount = 0;
};

static_assert(sizeof(EntryHeader) == 16 && sizeof(StreamHeader) == 24);

/// How many blocks the elements of a stream make.
inline std::size_t blocksFor(std::uint64_t elements, std::uint32_t blockElements)
{
    return elements / blockElements + (elements % blockElements != 0 ? 1 : 0);
}

} // namespace VX
