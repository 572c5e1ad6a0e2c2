#include "formats/PlyFormat.h"

#include "formats/ColorByte.h"
#include "formats/MeshAssembly.h"
#include "formats/ParallelProgress.h"
#include "formats/PlyCommonRows.h"
#include "formats/PlyHeader.h"
#include "formats/PlyRows.h"
#include "formats/Source.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

/// Turns channels of any type into bytes.
class ColorReader
{
public:
    explicit ColorReader(const PlyRows& rows)
        : isPresent_(rows.find(PlyRole::Red) && rows.find(PlyRole::Green) && rows.find(PlyRole::Blue))
        , hasAlpha_(rows.find(PlyRole::Alpha) != nullptr)
    {
        if (const PlyColumn* red = rows.find(PlyRole::Red))
            scale_ = scaleOf_(red->type);
        if (const PlyColumn* alpha = rows.find(PlyRole::Alpha))
            alphaScale_ = scaleOf_(alpha->type);
    }

    [[nodiscard]] bool isPresent() const { return isPresent_; }

    [[nodiscard]] Color color(const PlyRowReader& row) const
    {
        constexpr std::uint8_t kOpaque = 255;
        return {toColorByte(row.value(PlyRole::Red) * scale_), toColorByte(row.value(PlyRole::Green) * scale_),
                toColorByte(row.value(PlyRole::Blue) * scale_),
                hasAlpha_ ? toColorByte(row.value(PlyRole::Alpha) * alphaScale_) : kOpaque};
    }

private:
    static double scaleOf_(PlyType type)
    {
        constexpr double kMaxByte = 255.0;
        constexpr double kMaxWord = 65535.0;
        if (!isInteger(type))
            return kMaxByte;
        return type == PlyType::UInt16 ? kMaxByte / kMaxWord : 1.0;
    }

    bool isPresent_;
    bool hasAlpha_;
    double scale_ = 1.0;
    double alphaScale_ = 1.0;
};

/// Runs `body` over the blocks of an element in parallel.
/// @return false when canceled
template <typename Body>
bool forBlocks(const Source& source, const PlyHeader& header, const PlyRows& rows, const ProgressCallback& progress,
               const Body& body)
{
    ParallelProgress counter(progress, std::max<std::size_t>(rows.blocks.size(), 1));
    tbb::parallel_for(std::size_t{0}, rows.blocks.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          const RowBlock& block = rows.blocks[i];
                          PlyRowReader row(header, rows, block);
                          body(i, block, row);
                          source.release(block.bytes);
                          counter.advance();
                      });
    return !counter.isCanceled();
}

Vector3d vectorOf(const PlyRowReader& row, PlyRole x, PlyRole y, PlyRole z)
{
    return {row.value(x), row.value(y), row.value(z)};
}

/// @return false when canceled
bool readVertices(const Source& source, const PlyHeader& header, const PlyRows& rows, RawMesh& raw,
                  const ProgressCallback& progress)
{
    const ColorReader colors(rows);
    const bool hasNormals = rows.find(PlyRole::NormalX) && rows.find(PlyRole::NormalY) && rows.find(PlyRole::NormalZ);
    const auto isFloat = [&](PlyRole role) { return rows.find(role)->type == PlyType::Float; };
    const bool isPrecise =
        header.encoding == PlyEncoding::Text || !isFloat(PlyRole::X) || !isFloat(PlyRole::Y) || !isFloat(PlyRole::Z);
    (isPrecise ? raw.precisePoints.resize(rows.count) : raw.points.resize(rows.count));
    raw.normals.resize(hasNormals ? rows.count : 0);
    raw.vertexColors.resize(colors.isPresent() ? rows.count : 0);
    return forBlocks(source, header, rows, progress,
                     [&](std::size_t, const RowBlock& block, PlyRowReader& row)
                     {
                         if (!isPrecise && PlyCommonRows::copyPoints(header, rows, block, raw.points))
                             return;
                         for (std::size_t i = block.firstRow; i < block.firstRow + block.rowCount; ++i)
                         {
                             row.next();
                             const Vector3d point = vectorOf(row, PlyRole::X, PlyRole::Y, PlyRole::Z);
                             if (isPrecise)
                                 raw.precisePoints[i] = point;
                             else
                                 raw.points[i] = point.cast<float>();
                             if (hasNormals)
                                 raw.normals[i] =
                                     vectorOf(row, PlyRole::NormalX, PlyRole::NormalY, PlyRole::NormalZ).cast<float>();
                             if (colors.isPresent())
                                 raw.vertexColors[i] = colors.color(row);
                         }
                     });
}

/// Every corner from the third on makes a triangle with the two before it, turned every other time; an index that names
/// no point ends a strip.
void addStrip(std::span<const std::uint32_t> strip, Polygons& polygons)
{
    std::size_t begin = 0;
    for (std::size_t i = 0; i < strip.size(); ++i)
    {
        if (strip[i] == kNoPoint)
            begin = i + 1;
        else if (i >= begin + 2)
        {
            const std::size_t odd = (i - begin) % 2;
            polygons.add(std::array{strip[i - 2 + odd], strip[i - 1 - odd], strip[i]});
        }
    }
}

/// Copies the faces of an element that holds nothing but triangles.
/// @return false when canceled; `raw` gets no triangles where the element holds other faces too
bool readTriangles(const Source& source, const PlyHeader& header, const PlyRows& rows, RawMesh& raw,
                   const ProgressCallback& progress)
{
    std::vector<Triangle> triangles(rows.count);
    std::atomic<bool> areAllTriangles = true;
    if (!forBlocks(source, header, rows, progress,
                   [&](std::size_t, const RowBlock& block, PlyRowReader&)
                   {
                       if (!PlyCommonRows::copyTriangles(block, triangles))
                           areAllTriangles = false;
                   }))
        return false;
    if (areAllTriangles)
        raw.triangles = std::move(triangles);
    return true;
}

/// @return false when canceled
bool readFaces(const Source& source, const PlyHeader& header, const PlyRows& rows, RawMesh& raw, bool areStrips,
               const ProgressCallback& progress)
{
    if (!areStrips && PlyCommonRows::mayBeTriangles(header, rows))
    {
        if (!readTriangles(source, header, rows, raw, progress))
            return false;
        if (!raw.triangles.empty())
            return true;
    }
    const ColorReader colors(rows);
    const std::size_t first = raw.polygons.size();
    raw.polygons.resize(first + rows.blocks.size());
    return forBlocks(source, header, rows, progress,
                     [&](std::size_t i, const RowBlock& block, PlyRowReader& row)
                     {
                         Polygons& polygons = raw.polygons[first + i];
                         polygons.corners.reserve(areStrips ? 0 : block.rowCount * 3);
                         for (std::size_t k = 0; k < block.rowCount; ++k)
                         {
                             row.next();
                             if (areStrips)
                             {
                                 addStrip(row.corners(), polygons);
                                 continue;
                             }
                             polygons.add(row.corners());
                             if (colors.isPresent())
                                 polygons.colors.push_back(colors.color(row));
                         }
                     });
}

struct Elements
{
    std::optional<std::size_t> vertex;
    std::optional<std::size_t> face;
    std::optional<std::size_t> strips;
};

Elements findElements(const PlyHeader& header)
{
    Elements elements;
    for (std::size_t i = 0; i < header.elements.size(); ++i)
    {
        const std::string& name = header.elements[i].name;
        if (name == "vertex")
            elements.vertex = i;
        else if (name == "face")
            elements.face = i;
        else if (name == "tristrips")
            elements.strips = i;
    }
    return elements;
}

} // namespace

tl::expected<LoadedObjects, std::string> readPly(const Source& source, const ProgressCallback& progress)
{
    const auto header = readPlyHeader(source.text());
    if (!header)
        return source.error(source.text().starts_with("ply") ? "its header is damaged." : "it is not a PLY file.");
    const Elements elements = findElements(*header);
    const auto located = locatePlyRows(*header, source.text());
    if (!elements.vertex || !located[*elements.vertex].find(PlyRole::X) ||
        !located[*elements.vertex].find(PlyRole::Y) || !located[*elements.vertex].find(PlyRole::Z))
        return source.error("it has no points with coordinates.");

    std::vector<std::string> warnings;
    RawMesh raw;
    const PlyRows& vertices = located[*elements.vertex];
    warnIfCutOff(source, vertices.count, header->elements[*elements.vertex].count, "points", warnings);
    bool goesOn = readVertices(source, *header, vertices, raw, subprogress(progress, 0.1F, 0.4F));
    for (const auto& element : {elements.face, elements.strips})
    {
        if (!element || !goesOn || !located[*element].find(PlyRole::Corners))
            continue;
        warnIfCutOff(source, located[*element].count, header->elements[*element].count, "faces", warnings);
        goesOn = readFaces(source, *header, located[*element], raw, element == elements.strips,
                           subprogress(progress, 0.4F, 0.8F));
    }
    if (!goesOn)
        return tl::unexpected(operationCanceledText());
    return assembleFile(source, std::move(raw), std::move(warnings));
}

FileFormat plyFormat()
{
    return {"Polygon file format (PLY)",
            {".ply"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readPly); },
            writePly};
}

} // namespace VX
