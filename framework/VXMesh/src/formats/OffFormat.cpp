#include "formats/OffFormat.h"

#include "formats/ColorByte.h"
#include "formats/MeshAssembly.h"
#include "formats/ParallelProgress.h"
#include "formats/Source.h"
#include "formats/TextLines.h"
#include "formats/TextScan.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

struct OffHeader
{
    bool hasNormals = false;
    bool hasColors = false;
    std::size_t points = 0;
    std::size_t faces = 0;
    std::size_t size = 0; ///< bytes up to the first point
};

/// The next word that is an integer, on this line or a later one.
bool nextCount(TextCursor& cursor, std::size_t& count)
{
    skipEmptyLines(cursor);
    std::int64_t number = 0;
    if (!cursor.integer(number) || number < 0)
        return false;
    count = static_cast<std::size_t>(number);
    return true;
}

/// Nothing where it is not a header that is understood.
std::optional<OffHeader> readHeader(std::string_view text)
{
    TextCursor cursor(text);
    skipEmptyLines(cursor);
    const std::string_view keyword = cursor.word();
    OffHeader header;
    if (keyword == "NOFF" || keyword == "CNOFF")
        header.hasNormals = true;
    if (keyword == "COFF" || keyword == "CNOFF")
        header.hasColors = true;
    if (keyword != "OFF" && !header.hasNormals && !header.hasColors)
        return {};
    std::size_t edges = 0;
    if (!nextCount(cursor, header.points) || !nextCount(cursor, header.faces))
        return {};
    // Some writers leave the number of edges out.
    if (!cursor.atLineEnd() && !nextCount(cursor, edges))
        return {};
    cursor.nextLine();
    header.size = static_cast<std::size_t>(cursor.position() - text.data());
    return header;
}

/// Reads the three or four channels that the rest of the line has: up to 1 with a point in one of them or where all
/// are small, else up to 255.
std::optional<Color> readColor(TextCursor& cursor)
{
    std::array<double, 4> channels = {0.0, 0.0, 0.0, 0.0};
    std::size_t count = 0;
    bool isFraction = false;
    for (; count < channels.size() && !cursor.atLineEnd(); ++count)
    {
        const std::string_view word = cursor.word();
        isFraction = isFraction || word.find('.') != std::string_view::npos;
        TextCursor(word).number(channels[count]);
    }
    if (count < 3)
        return {};
    const double largest = std::max({channels[0], channels[1], channels[2]});
    const double scale = isFraction || largest <= 1.0 ? 255.0 : 1.0;
    const std::uint8_t alpha = count == channels.size() ? toColorByte(channels[3] * scale) : std::uint8_t{255};
    return Color{toColorByte(channels[0] * scale), toColorByte(channels[1] * scale), toColorByte(channels[2] * scale),
                 alpha};
}

Vector3d readVector(TextCursor& cursor)
{
    Vector3d vector;
    for (int axis = 0; axis < 3; ++axis)
    {
        if (!cursor.number(vector[axis]))
            vector[axis] = std::numeric_limits<double>::quiet_NaN();
    }
    return vector;
}

/// Runs `body` for each row in parallel, with the number of the block and of the row and a cursor at its begin.
/// @return false when canceled
template <typename Body>
bool forRows(const Source& source, const std::vector<RowBlock>& blocks, const ProgressCallback& progress,
             const Body& body)
{
    ParallelProgress counter(progress, std::max<std::size_t>(blocks.size(), 1));
    tbb::parallel_for(std::size_t{0}, blocks.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          const RowBlock& block = blocks[i];
                          TextCursor cursor(block.bytes);
                          skipToFirstRow(cursor, block);
                          for (std::size_t row = block.firstRow; row < block.firstRow + block.rowCount; ++row)
                          {
                              skipEmptyLines(cursor);
                              body(i, row, cursor);
                              cursor.nextLine();
                          }
                          source.release(block.bytes);
                          counter.advance();
                      });
    return !counter.isCanceled();
}

/// @return false when canceled
bool readPoints(const Source& source, const OffHeader& header, const std::vector<RowBlock>& blocks, RawMesh& raw,
                const ProgressCallback& progress)
{
    const std::size_t count = countRows(blocks);
    raw.precisePoints.resize(count);
    raw.normals.resize(header.hasNormals ? count : 0);
    raw.vertexColors.resize(header.hasColors ? count : 0, VisualObject::defaultColor());
    return forRows(source, blocks, progress,
                   [&](std::size_t, std::size_t row, TextCursor& cursor)
                   {
                       raw.precisePoints[row] = readVector(cursor);
                       if (header.hasNormals)
                           raw.normals[row] = readVector(cursor).cast<float>();
                       if (header.hasColors)
                           raw.vertexColors[row] = readColor(cursor).value_or(VisualObject::defaultColor());
                   });
}

/// @return false when canceled
bool readFaces(const Source& source, const std::vector<RowBlock>& blocks, RawMesh& raw,
               const ProgressCallback& progress)
{
    raw.polygons.resize(blocks.size());
    std::vector<std::vector<std::uint32_t>> faces(blocks.size());
    return forRows(source, blocks, progress,
                   [&](std::size_t block, std::size_t, TextCursor& cursor)
                   {
                       Polygons& polygons = raw.polygons[block];
                       std::vector<std::uint32_t>& face = faces[block];
                       face.clear();
                       std::int64_t size = 0;
                       cursor.integer(size);
                       for (std::int64_t i = 0; i < size && !cursor.atLineEnd(); ++i)
                       {
                           std::int64_t index = -1;
                           const bool good = cursor.integer(index) && index >= 0 && index < kNoPoint;
                           face.push_back(good ? static_cast<std::uint32_t>(index) : kNoPoint);
                       }
                       // A face of which corners are missing cannot be used.
                       if (face.size() != static_cast<std::size_t>(size))
                           face.clear();
                       polygons.add(face);
                       const auto color = readColor(cursor);
                       if (color && polygons.colors.empty())
                           polygons.colors.assign(polygons.count() - 1, VisualObject::defaultColor());
                       if (color || !polygons.colors.empty())
                           polygons.colors.push_back(color.value_or(VisualObject::defaultColor()));
                   });
}

} // namespace

tl::expected<LoadedObjects, std::string> readOff(const Source& source, const ProgressCallback& progress)
{
    const auto header = readHeader(source.text());
    if (!header)
        return source.error("it is not an OFF file, or one of a kind that is not known.");
    TextLines lines(source.text().substr(header->size));
    const auto points = lines.take(header->points);
    const auto faces = lines.take(header->faces);
    std::vector<std::string> warnings;
    warnIfCutOff(source, countRows(points), header->points, "points", warnings);
    warnIfCutOff(source, countRows(faces), header->faces, "faces", warnings);
    RawMesh raw;
    if (!readPoints(source, *header, points, raw, subprogress(progress, 0.1F, 0.4F)) ||
        !readFaces(source, faces, raw, subprogress(progress, 0.4F, 0.8F)))
        return tl::unexpected(operationCanceledText());
    return assembleFile(source, std::move(raw), std::move(warnings));
}

FileFormat offFormat()
{
    return {"Object file format (OFF)",
            {".off"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readOff); },
            writeOff};
}

} // namespace VX
