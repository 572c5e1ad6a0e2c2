#include "formats/StlFormat.h"

#include "formats/FileWriter.h"
#include "formats/ParallelProgress.h"
#include "formats/PointOffset.h"
#include "formats/SaveItems.h"
#include "formats/Source.h"
#include "formats/TextScan.h"
#include "formats/Welder.h"

#include <VXMesh/FileError.h>
#include <VXMesh/ObjectMesh.h>

#include <fmt/format.h>

#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_for.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace VX
{

namespace
{

constexpr std::size_t kHeaderSize = 84;
constexpr std::size_t kTriangleSize = 50;
constexpr std::size_t kCornersInTriangle = 12; ///< bytes before the corners: the normal
constexpr std::size_t kChunkTriangles = 32768;
constexpr std::size_t kTypicalStart = 1024; ///< enough bytes to tell text from binary
constexpr std::size_t kTextPiece = std::size_t{4} << 20U;
constexpr std::size_t kMaxTriangles = Welder<Vector3f>::kMaxCorners / 3;

constexpr std::string_view kTooLarge = "it holds more than 700 million triangles.";

using Corners = std::array<Vector3f, 3>;

Corners cornersAt(std::span<const std::byte> bytes, std::size_t triangle)
{
    Corners corners;
    std::memcpy(static_cast<void*>(corners.data()),
                bytes.data() + kHeaderSize + triangle * kTriangleSize + kCornersInTriangle, sizeof(Corners));
    return corners;
}

std::size_t statedTriangles(std::span<const std::byte> bytes)
{
    std::uint32_t count = 0;
    std::memcpy(&count, bytes.data() + kHeaderSize - sizeof(count), sizeof(count));
    return count;
}

/// A text file begins with "solid" and a line of its own, and a facet or the end follow. Many binary files begin with
/// "solid" too.
bool isText(std::string_view text)
{
    if (!looksLikeText(text.substr(0, kTypicalStart)))
        return false;
    TextCursor cursor(text);
    while (cursor.atLineEnd() && !cursor.atEnd())
        cursor.nextLine();
    if (!equalsIgnoringCase(cursor.word(), "solid"))
        return false;
    do
        cursor.nextLine();
    while (cursor.atLineEnd() && !cursor.atEnd());
    const std::string_view word = cursor.word();
    return word.empty() || equalsIgnoringCase(word, "facet") || equalsIgnoringCase(word, "endsolid");
}

/// Numbers of a real model lie in a modest range; those of bytes that mean something else lie anywhere.
bool looksLikeTriangles(std::span<const std::byte> bytes, std::size_t count)
{
    constexpr std::size_t kSample = 1000;
    constexpr float kLarge = 1e15F;
    std::size_t odd = 0;
    const std::size_t sample = std::min(count, kSample);
    for (std::size_t i = 0; i < sample; ++i)
    {
        for (const Vector3f& corner : cornersAt(bytes, i))
        {
            for (const float value : {corner.x(), corner.y(), corner.z()})
            {
                const float size = std::abs(value);
                odd += !(size < kLarge) || (size > 0.0F && size < 1.0F / kLarge) ? 1 : 0;
            }
        }
    }
    return odd * 10 <= sample * 9;
}

template <typename Vector>
tl::expected<LoadedObjects, std::string> makeObjects(const Source& source, WeldedTriangles<Vector> welded,
                                                     std::vector<std::string> warnings)
{
    if (welded.triangles.empty())
        return source.error("it holds no triangles.");
    auto mesh = std::make_shared<Mesh>();
    Vector3d offset;
    if constexpr (std::is_same_v<Vector, Vector3d>)
    {
        mesh->points = subtractOffset(welded.points, offset);
    }
    else
    {
        mesh->points = std::move(welded.points);
        offset = subtractOffset(mesh->points);
    }
    mesh->triangles = std::move(welded.triangles);
    auto object = std::make_shared<ObjectMesh>(std::move(mesh));
    object->setName(source.stem());
    object->setTransform(Transform(Eigen::Translation3d(offset)));
    return LoadedObjects{{std::move(object)}, std::move(warnings)};
}

void warnAboutNumbers(const Source& source, std::size_t dropped, std::vector<std::string>& warnings)
{
    if (dropped > 0)
        warnings.push_back(source.warning(
            fmt::format("triangles whose coordinates are not finite numbers were left out: {}.", dropped)));
}

/// How many triangles to read; says in a warning where the file's own count is wrong.
tl::expected<std::size_t, std::string> countTriangles(const Source& source, std::vector<std::string>& warnings)
{
    const auto bytes = source.bytes();
    const std::size_t stated = statedTriangles(bytes);
    const std::size_t present = (bytes.size() - kHeaderSize) / kTriangleSize;
    if (bytes.size() == kHeaderSize + stated * kTriangleSize)
        return stated;
    if (looksLikeText(source.text().substr(0, kTypicalStart)) || !looksLikeTriangles(bytes, std::min(stated, present)))
        return source.error("it is not an STL file.");
    if (stated > present)
    {
        if (present == 0)
            return source.error("it ends before its first triangle.");
        warnings.push_back(
            source.warning(fmt::format("the file ends too early; {} of its {} triangles were read.", present, stated)));
        return present;
    }
    // Programs that write triangles as they come leave the count at zero.
    if (stated == 0 && present > 0 && looksLikeTriangles(bytes, present))
    {
        warnings.push_back(
            source.warning(fmt::format("the file states no triangles; the {} that it holds were read.", present)));
        return present;
    }
    warnings.push_back(source.warning(fmt::format("what follows the {} triangles was left out.", stated)));
    return stated;
}

tl::expected<LoadedObjects, std::string> readBinary(const Source& source, const ProgressCallback& progress)
{
    std::vector<std::string> warnings;
    const auto triangles = countTriangles(source, warnings);
    if (!triangles)
        return tl::unexpected(triangles.error());
    if (*triangles > kMaxTriangles)
        return source.error(kTooLarge);

    const std::size_t chunkCount = (*triangles + kChunkTriangles - 1) / kChunkTriangles;
    Welder<Vector3f> welder(chunkCount);
    ParallelProgress counter(subprogress(progress, 0.0F, 0.6F), chunkCount);
    std::atomic<std::size_t> dropped{0};
    tbb::enumerable_thread_specific<std::vector<Vector3f>> buffers;
    tbb::parallel_for(std::size_t{0}, chunkCount,
                      [&](std::size_t chunk)
                      {
                          if (counter.isCanceled())
                              return;
                          const std::size_t begin = chunk * kChunkTriangles;
                          const std::size_t end = std::min(*triangles, begin + kChunkTriangles);
                          std::vector<Vector3f>& corners = buffers.local();
                          corners.clear();
                          for (std::size_t i = begin; i < end; ++i)
                          {
                              const Corners triangle = cornersAt(source.bytes(), i);
                              if (triangle[0].allFinite() && triangle[1].allFinite() && triangle[2].allFinite())
                                  corners.insert(corners.end(), triangle.begin(), triangle.end());
                          }
                          welder.add(chunk, corners);
                          dropped += end - begin - corners.size() / 3;
                          source.release(kHeaderSize + begin * kTriangleSize, (end - begin) * kTriangleSize);
                          counter.advance();
                      });
    if (counter.isCanceled())
        return tl::unexpected(operationCanceledText());
    buffers.clear();
    warnAboutNumbers(source, dropped, warnings);
    return makeObjects(source, welder.finish(), std::move(warnings));
}

/// What the facets in one piece of a text file say.
struct TextFacets
{
    std::vector<Vector3d> corners; ///< three a triangle
    std::size_t dropped = 0;       ///< triangles with coordinates that are not finite
    bool isBroken = false;         ///< a facet has less than three corners
};

/// What is too large for single precision cannot be kept.
bool isUsable(const Vector3d& corner)
{
    return corner.cast<float>().allFinite();
}

void appendFacet(std::span<const Vector3d> loop, TextFacets& facets)
{
    facets.isBroken = facets.isBroken || loop.size() < 3;
    for (std::size_t i = 2; i < loop.size(); ++i)
    {
        if (isUsable(loop[0]) && isUsable(loop[i - 1]) && isUsable(loop[i]))
            facets.corners.insert(facets.corners.end(), {loop[0], loop[i - 1], loop[i]});
        else
            ++facets.dropped;
    }
}

TextFacets readFacets(std::string_view piece)
{
    TextFacets facets;
    std::vector<Vector3d> loop;
    bool open = false;
    for (TextCursor cursor(piece); !cursor.atEnd(); cursor.nextLine())
    {
        const std::string_view word = cursor.word();
        if (equalsIgnoringCase(word, "vertex"))
        {
            Vector3d& corner = loop.emplace_back();
            for (int axis = 0; axis < 3; ++axis)
            {
                if (!cursor.number(corner[axis]))
                    corner[axis] = std::numeric_limits<double>::quiet_NaN();
            }
        }
        else if (equalsIgnoringCase(word, "facet") || equalsIgnoringCase(word, "endfacet"))
        {
            if (open || !loop.empty())
                appendFacet(loop, facets);
            loop.clear();
            open = equalsIgnoringCase(word, "facet");
        }
    }
    if (open || !loop.empty())
    {
        facets.isBroken = true;
        if (loop.size() >= 3)
            appendFacet(loop, facets);
    }
    return facets;
}

bool beginsFacet(std::string_view text, std::size_t position)
{
    return equalsIgnoringCase(TextCursor(text.substr(position)).word(), "facet");
}

tl::expected<LoadedObjects, std::string> readText(const Source& source, const ProgressCallback& progress)
{
    const auto pieces = splitAtLines(source.text(), kTextPiece, beginsFacet);
    Welder<Vector3d> welder(pieces.size());
    ParallelProgress counter(subprogress(progress, 0.0F, 0.8F), pieces.size());
    std::atomic<std::size_t> dropped{0};
    std::atomic<std::size_t> triangles{0};
    std::atomic<bool> isBroken{false};
    tbb::parallel_for(std::size_t{0}, pieces.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          const TextFacets facets = readFacets(pieces[i]);
                          dropped += facets.dropped;
                          if (facets.isBroken)
                              isBroken = true;
                          triangles += facets.corners.size() / 3;
                          if (triangles <= kMaxTriangles)
                              welder.add(i, facets.corners);
                          source.release(pieces[i]);
                          counter.advance();
                      });
    if (counter.isCanceled())
        return tl::unexpected(operationCanceledText());
    if (triangles > kMaxTriangles)
        return source.error(kTooLarge);
    std::vector<std::string> warnings;
    if (isBroken)
        warnings.push_back(source.warning("the file is damaged or ends too early; facets with less than three "
                                          "vertices were left out."));
    warnAboutNumbers(source, dropped, warnings);
    return makeObjects(source, welder.finish(), std::move(warnings));
}

void appendTriangle(const MeshItem& item, std::size_t i, std::string& bytes)
{
    const Triangle triangle = sceneTriangle(item, i);
    std::array<Vector3f, 4> record;
    for (std::size_t k = 0; k < 3; ++k)
        record[k + 1] = item.point(triangle[static_cast<int>(k)]).cast<float>();
    record[0] = (record[2] - record[1]).cross(record[3] - record[1]).stableNormalized();
    appendBytes(bytes, record);
    bytes.append(2, '\0');
}

tl::expected<void, std::string> writeStl(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    const SaveItems items = collectSaveItems(root);
    const auto blocks =
        splitItems(items.meshes, kChunkTriangles, [](const MeshItem& item) { return item.geometry->triangles.size(); });
    std::size_t triangles = 0;
    for (const ItemBlock& block : blocks)
        triangles += block.end - block.begin;
    if (triangles == 0)
        return tl::unexpected(fileErrorText("write", path, "STL files hold triangles, and nothing visible has any."));
    if (triangles > std::numeric_limits<std::uint32_t>::max())
        return tl::unexpected(fileErrorText("write", path, "STL files hold at most 4,294,967,295 triangles."));

    auto file = FileWriter::create(path, existing);
    if (!file)
        return tl::unexpected(file.error());
    std::string header = "Binary STL, unit mm";
    header.resize(kHeaderSize - sizeof(std::uint32_t), ' ');
    appendBytes(header, static_cast<std::uint32_t>(triangles));
    const auto fill = [&](std::size_t block, std::string& bytes)
    {
        for (std::size_t i = blocks[block].begin; i < blocks[block].end; ++i)
            appendTriangle(items.meshes[blocks[block].item], i, bytes);
    };
    return file->write(header)
        .and_then([&] { return file->writeBlocks(blocks.size(), fill, progress); })
        .and_then([&] { return file->commit(progress); });
}

} // namespace

tl::expected<LoadedObjects, std::string> readStl(const Source& source, const ProgressCallback& progress)
{
    const auto bytes = source.bytes();
    const bool isExactBinary =
        bytes.size() >= kHeaderSize && bytes.size() == kHeaderSize + statedTriangles(bytes) * kTriangleSize;
    if (!isExactBinary && isText(source.text()))
        return readText(source, progress);
    if (bytes.size() < kHeaderSize)
        return source.error("it is not an STL file.");
    return readBinary(source, progress);
}

FileFormat stlFormat()
{
    return {"Stereolithography (STL)",
            {".stl"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readStl); },
            writeStl};
}

} // namespace VX
