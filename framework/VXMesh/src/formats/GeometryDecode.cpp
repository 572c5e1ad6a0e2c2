#include "formats/GeometryCodec.h"
#include "formats/GeometryEntry.h"

#include <meshoptimizer.h>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr std::size_t kGrain = 65536;

struct InStream
{
    StreamHeader header;
    std::vector<std::span<const std::byte>> blocks;
};

class EntryReader
{
public:
    explicit EntryReader(std::span<const std::byte> bytes)
        : rest_(bytes)
    {
    }

    template <typename Value>
    bool read(Value& value)
    {
        if (rest_.size() < sizeof(Value))
            return false;
        std::memcpy(&value, rest_.data(), sizeof(Value));
        rest_ = rest_.subspan(sizeof(Value));
        return true;
    }

    bool take(std::size_t size, std::span<const std::byte>& part)
    {
        if (rest_.size() < size)
            return false;
        part = rest_.first(size);
        rest_ = rest_.subspan(size);
        return true;
    }

    [[nodiscard]] std::size_t left() const { return rest_.size(); }

private:
    std::span<const std::byte> rest_;
};

/// The most elements that a codec can put into a block of that size.
std::size_t maxElements(Semantic semantic, std::size_t elementSize, std::size_t encodedSize)
{
    // A triangle takes a byte, and so does an index of a segment.
    if (semantic == Semantic::Triangles)
        return encodedSize;
    if (semantic == Semantic::Segments)
        return encodedSize / 2;
    // A header, the last element padded to 32 bytes, and for each byte of an element at least one for 64 elements.
    constexpr std::size_t kFrame = 33;
    constexpr std::size_t kBestRatio = 64;
    return encodedSize < kFrame ? 0 : (encodedSize - kFrame) / elementSize * kBestRatio;
}

std::optional<std::vector<InStream>> splitStreams(EntryReader& reader, std::uint32_t streamCount)
{
    if (streamCount > reader.left() / sizeof(StreamHeader))
        return {};
    std::vector<InStream> streams(streamCount);
    for (InStream& stream : streams)
    {
        StreamHeader& header = stream.header;
        if (!reader.read(header) || header.elementSize == 0 || header.blockElements == 0 ||
            header.blockCount != blocksFor(header.elementCount, header.blockElements))
            return {};
    }
    std::vector<std::vector<std::uint32_t>> sizes(streamCount);
    for (std::size_t i = 0; i < streams.size(); ++i)
    {
        if (streams[i].header.blockCount > reader.left() / sizeof(std::uint32_t))
            return {};
        sizes[i].resize(streams[i].header.blockCount);
        for (std::uint32_t& size : sizes[i])
        {
            if (!reader.read(size))
                return {};
        }
    }
    for (std::size_t i = 0; i < streams.size(); ++i)
    {
        for (const std::uint32_t size : sizes[i])
        {
            if (!reader.take(size, streams[i].blocks.emplace_back()))
                return {};
        }
    }
    return reader.left() == 0 ? std::optional(std::move(streams)) : std::nullopt;
}

bool decodeBlock(Semantic semantic, void* target, std::size_t count, std::size_t elementSize,
                 std::span<const std::byte> block)
{
    const auto* data = reinterpret_cast<const unsigned char*>(block.data());
    const std::size_t indexCount = count * elementSize / sizeof(unsigned int);
    switch (semantic)
    {
    case Semantic::Triangles:
        return meshopt_decodeIndexBuffer(target, indexCount, sizeof(unsigned int), data, block.size()) == 0;
    case Semantic::Segments:
        return meshopt_decodeIndexSequence(target, indexCount, sizeof(unsigned int), data, block.size()) == 0;
    default:
        return meshopt_decodeVertexBuffer(target, count, elementSize, data, block.size()) == 0;
    }
}

/// How many elements block `i` holds.
std::size_t elementsIn(const StreamHeader& header, std::size_t i)
{
    const std::uint64_t begin = std::uint64_t{header.blockElements} * i;
    return static_cast<std::size_t>(std::min<std::uint64_t>(header.blockElements, header.elementCount - begin));
}

/// Decodes the stream with that meaning; without one `elements` stays empty.
template <typename Element>
bool decodeStream(const std::vector<InStream>& streams, Semantic semantic, std::vector<Element>& elements)
{
    const auto found =
        std::ranges::find_if(streams, [&](const InStream& stream) { return stream.header.semantic == semantic; });
    if (found == streams.end())
        return true;
    const StreamHeader& header = found->header;
    if (header.elementSize != sizeof(Element))
        return false;
    for (std::size_t i = 0; i < found->blocks.size(); ++i)
    {
        if (elementsIn(header, i) > maxElements(semantic, sizeof(Element), found->blocks[i].size()))
            return false;
    }
    elements.resize(static_cast<std::size_t>(header.elementCount));
    std::atomic<bool> good{true};
    tbb::parallel_for(std::size_t{0}, found->blocks.size(),
                      [&](std::size_t i)
                      {
                          Element* target = elements.data() + std::size_t{header.blockElements} * i;
                          if (!decodeBlock(semantic, target, elementsIn(header, i), sizeof(Element), found->blocks[i]))
                              good = false;
                      });
    return good;
}

template <typename Range, typename Test>
bool allOf(const Range& elements, const Test& test)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, elements.size(), kGrain), true,
        [&](const tbb::blocked_range<std::size_t>& range, bool good)
        { return good && std::all_of(elements.begin() + range.begin(), elements.begin() + range.end(), test); },
        [](bool a, bool b) { return a && b; });
}

template <typename Corners>
bool isWithin(const std::vector<Corners>& elements, std::size_t pointCount)
{
    return allOf(elements, [&](const Corners& corners) { return corners.maxCoeff() < pointCount; });
}

bool isFinite(const std::vector<Vector3f>& vectors)
{
    return allOf(vectors, [](const Vector3f& vector) { return vector.allFinite(); });
}

template <typename Attribute>
bool isFor(const std::vector<Attribute>& attributes, std::size_t count)
{
    return attributes.empty() || attributes.size() == count;
}

std::optional<AnyGeometry> decodeMesh(const std::vector<InStream>& streams)
{
    auto mesh = std::make_shared<Mesh>();
    if (!decodeStream(streams, Semantic::Points, mesh->points) ||
        !decodeStream(streams, Semantic::Normals, mesh->normals) ||
        !decodeStream(streams, Semantic::PointColors, mesh->vertexColors) ||
        !decodeStream(streams, Semantic::Triangles, mesh->triangles) ||
        !decodeStream(streams, Semantic::FaceColors, mesh->faceColors))
        return {};
    const std::size_t points = mesh->points.size();
    if (!isFor(mesh->normals, points) || !isFor(mesh->vertexColors, points) ||
        !isFor(mesh->faceColors, mesh->triangles.size()) || !isFinite(mesh->points) || !isFinite(mesh->normals) ||
        !isWithin(mesh->triangles, points))
        return {};
    return std::shared_ptr<const Mesh>(std::move(mesh));
}

std::optional<AnyGeometry> decodePointCloud(const std::vector<InStream>& streams)
{
    auto cloud = std::make_shared<PointCloud>();
    if (!decodeStream(streams, Semantic::Points, cloud->points) ||
        !decodeStream(streams, Semantic::Normals, cloud->normals) ||
        !decodeStream(streams, Semantic::PointColors, cloud->colors))
        return {};
    if (!isFor(cloud->normals, cloud->points.size()) || !isFor(cloud->colors, cloud->points.size()) ||
        !isFinite(cloud->points) || !isFinite(cloud->normals))
        return {};
    return std::shared_ptr<const PointCloud>(std::move(cloud));
}

std::optional<AnyGeometry> decodeLines(const std::vector<InStream>& streams)
{
    auto lines = std::make_shared<Lines>();
    if (!decodeStream(streams, Semantic::Points, lines->points) ||
        !decodeStream(streams, Semantic::Segments, lines->segments))
        return {};
    if (!isFinite(lines->points) || !isWithin(lines->segments, lines->points.size()))
        return {};
    return std::shared_ptr<const Lines>(std::move(lines));
}

} // namespace

std::optional<AnyGeometry> decodeGeometry(std::span<const std::byte> bytes)
{
    EntryReader reader(bytes);
    EntryHeader header;
    if (!reader.read(header) || header.magic != kGeometryMagic)
        return {};
    const auto streams = splitStreams(reader, header.streamCount);
    if (!streams)
        return {};
    switch (header.kind)
    {
    case GeometryKind::Mesh:
        return decodeMesh(*streams);
    case GeometryKind::PointCloud:
        return decodePointCloud(*streams);
    case GeometryKind::Lines:
        return decodeLines(*streams);
    }
    return {};
}

} // namespace VX
