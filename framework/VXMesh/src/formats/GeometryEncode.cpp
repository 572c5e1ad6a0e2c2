#include "formats/GeometryCodec.h"
#include "formats/GeometryEntry.h"

#include <meshoptimizer.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

struct OutStream
{
    StreamHeader header;
    const unsigned char* data = nullptr;
    std::vector<std::string> blocks;
};

template <typename Element>
void addStream(std::vector<OutStream>& streams, Semantic semantic, const std::vector<Element>& elements)
{
    if (elements.empty())
        return;
    OutStream& stream = streams.emplace_back();
    stream.header.semantic = semantic;
    stream.header.elementSize = sizeof(Element);
    stream.header.elementCount = elements.size();
    stream.header.blockCount = static_cast<std::uint32_t>(blocksFor(elements.size(), kBlockElements));
    stream.data = reinterpret_cast<const unsigned char*>(elements.data());
    stream.blocks.resize(stream.header.blockCount);
}

std::string encodeBlock(Semantic semantic, const unsigned char* data, std::size_t count, std::size_t elementSize)
{
    const auto* indices = reinterpret_cast<const unsigned int*>(data);
    const std::size_t indexCount = count * elementSize / sizeof(unsigned int);
    constexpr std::size_t kAnyIndex = std::numeric_limits<std::uint32_t>::max();
    const bool isTriangles = semantic == Semantic::Triangles;
    const bool isSegments = semantic == Semantic::Segments;
    std::string bytes(isTriangles  ? meshopt_encodeIndexBufferBound(indexCount, kAnyIndex)
                      : isSegments ? meshopt_encodeIndexSequenceBound(indexCount, kAnyIndex)
                                   : meshopt_encodeVertexBufferBound(count, elementSize),
                      '\0');
    auto* target = reinterpret_cast<unsigned char*>(bytes.data());
    bytes.resize(isTriangles  ? meshopt_encodeIndexBuffer(target, bytes.size(), indices, indexCount)
                 : isSegments ? meshopt_encodeIndexSequence(target, bytes.size(), indices, indexCount)
                              : meshopt_encodeVertexBuffer(target, bytes.size(), data, count, elementSize));
    return bytes;
}

void encodeBlocks(OutStream& stream)
{
    tbb::parallel_for(std::size_t{0}, stream.blocks.size(),
                      [&](std::size_t block)
                      {
                          const std::size_t begin = block * kBlockElements;
                          const std::size_t count = std::min<std::size_t>(
                              kBlockElements, static_cast<std::size_t>(stream.header.elementCount) - begin);
                          stream.blocks[block] =
                              encodeBlock(stream.header.semantic, stream.data + begin * stream.header.elementSize,
                                          count, stream.header.elementSize);
                      });
}

template <typename Value>
void append(std::string& bytes, const Value& value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(Value));
}

std::string joinStreams(GeometryKind kind, std::vector<OutStream> streams)
{
    for (OutStream& stream : streams)
        encodeBlocks(stream);
    std::string bytes;
    EntryHeader header;
    header.kind = kind;
    header.streamCount = static_cast<std::uint32_t>(streams.size());
    append(bytes, header);
    for (const OutStream& stream : streams)
        append(bytes, stream.header);
    std::size_t total = bytes.size();
    for (const OutStream& stream : streams)
    {
        for (const std::string& block : stream.blocks)
        {
            append(bytes, static_cast<std::uint32_t>(block.size()));
            total += sizeof(std::uint32_t) + block.size();
        }
    }
    bytes.reserve(total);
    for (OutStream& stream : streams)
    {
        for (std::string& block : stream.blocks)
        {
            bytes += block;
            std::string().swap(block);
        }
    }
    return bytes;
}

std::string encode(const Mesh& mesh)
{
    std::vector<OutStream> streams;
    addStream(streams, Semantic::Points, mesh.points);
    addStream(streams, Semantic::Normals, mesh.normals);
    addStream(streams, Semantic::PointColors, mesh.vertexColors);
    addStream(streams, Semantic::Triangles, mesh.triangles);
    addStream(streams, Semantic::FaceColors, mesh.faceColors);
    return joinStreams(GeometryKind::Mesh, std::move(streams));
}

std::string encode(const PointCloud& cloud)
{
    std::vector<OutStream> streams;
    addStream(streams, Semantic::Points, cloud.points);
    addStream(streams, Semantic::Normals, cloud.normals);
    addStream(streams, Semantic::PointColors, cloud.colors);
    return joinStreams(GeometryKind::PointCloud, std::move(streams));
}

std::string encode(const Lines& lines)
{
    std::vector<OutStream> streams;
    addStream(streams, Semantic::Points, lines.points);
    addStream(streams, Semantic::Segments, lines.segments);
    return joinStreams(GeometryKind::Lines, std::move(streams));
}

} // namespace

std::string encodeGeometry(const AnyGeometry& geometry)
{
    return std::visit([](const auto& pointer) { return encode(*pointer); }, geometry);
}

} // namespace VX
