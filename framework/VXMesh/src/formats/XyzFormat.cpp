#include "formats/XyzFormat.h"

#include "formats/ColorByte.h"
#include "formats/MeshAssembly.h"
#include "formats/ParallelProgress.h"
#include "formats/Source.h"
#include "formats/TextScan.h"

#include <fmt/format.h>

#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t kPieceSize = std::size_t{1} << 20U;
constexpr std::size_t kMaxColumns = 9;
constexpr std::size_t kTypicalStart = 1024;

/// The numbers of one line.
struct Row
{
    std::array<double, kMaxColumns> values = {};
    std::size_t count = 0;

    [[nodiscard]] bool isPoint() const
    {
        return count >= 3 && !(std::isnan(values[0]) && std::isnan(values[1]) && std::isnan(values[2]));
    }

    [[nodiscard]] Vector3d vector(std::size_t column) const
    {
        return {values[column], values[column + 1], values[column + 2]};
    }
};

/// Commas and semicolons separate numbers as blanks do.
std::string withBlanks(std::string_view text)
{
    std::string result(text);
    std::ranges::replace_if(result, [](char c) { return c == ',' || c == ';'; }, ' ');
    return result;
}

/// Visits each line that is not empty.
template <typename Visit>
void forEachRow(std::string_view text, const Visit& visit)
{
    std::string copy;
    if (text.find_first_of(",;") != std::string_view::npos)
        text = copy = withBlanks(text);
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
    {
        Row row;
        while (row.count < kMaxColumns && cursor.number(row.values[row.count]))
            ++row.count;
        if (row.count > 0 && !visit(row))
            return;
    }
}

/// What stands in the columns behind the coordinates.
struct Layout
{
    std::optional<std::size_t> color;
    std::optional<std::size_t> normal;
    double colorScale = 1.0;
};

/// Guesses the layout from the first rows: three numbers are a normal where all have unit length, else a colour, up to
/// 255 or, where none is larger, up to 1.
Layout guessLayout(std::string_view text)
{
    constexpr std::size_t kSample = 1000;
    std::vector<Row> rows;
    forEachRow(text.substr(0, kPieceSize),
               [&](const Row& row)
               {
                   if (row.isPoint())
                       rows.push_back(row);
                   return rows.size() < kSample;
               });
    // The sample may end inside a line.
    if (rows.size() > 1 && rows.size() < kSample && text.size() > kPieceSize)
        rows.pop_back();
    if (rows.empty())
        return {};
    const std::size_t columns = std::ranges::min(rows, {}, &Row::count).count;
    std::vector<std::size_t> candidates;
    constexpr std::size_t kWithIntensity = 7; // x y z i r g b
    if (columns == kWithIntensity)
        candidates = {4};
    else
    {
        for (std::size_t column = 3; column + 3 <= columns; column += 3)
            candidates.push_back(column);
    }

    Layout layout;
    for (const std::size_t column : candidates)
    {
        const auto isUnit = [&](const Row& row) { return std::abs(row.vector(column).norm() - 1.0) < 0.01; };
        const auto isSmall = [&](const Row& row) { return !(row.vector(column).maxCoeff() > 1.0); };
        if (!layout.normal && std::ranges::all_of(rows, isUnit))
            layout.normal = column;
        else if (!layout.color)
        {
            layout.color = column;
            layout.colorScale = std::ranges::all_of(rows, isSmall) ? 255.0 : 1.0;
        }
    }
    return layout;
}

struct Piece
{
    std::vector<Vector3d> points;
    std::vector<Vector3f> normals;
    std::vector<Color> colors;
    std::size_t unusable = 0; ///< lines
};

Color toColor(const Vector3d& channels, double scale)
{
    return {toColorByte(channels.x() * scale), toColorByte(channels.y() * scale), toColorByte(channels.z() * scale),
            255};
}

Piece readPiece(std::string_view text, const Layout& layout, bool isFirst)
{
    Piece piece;
    forEachRow(text,
               [&](const Row& row)
               {
                   if (!row.isPoint())
                   {
                       // A title or the number of points may stand before them.
                       if (!isFirst || !piece.points.empty())
                           ++piece.unusable;
                       return true;
                   }
                   piece.points.push_back(row.vector(0));
                   if (layout.color)
                       piece.colors.push_back(row.count >= *layout.color + 3
                                                  ? toColor(row.vector(*layout.color), layout.colorScale)
                                                  : VisualObject::defaultColor());
                   if (layout.normal)
                       piece.normals.push_back(row.count >= *layout.normal + 3
                                                   ? Vector3f(row.vector(*layout.normal).cast<float>())
                                                   : Vector3f(0.0F, 0.0F, 1.0F));
                   return true;
               });
    return piece;
}

RawMesh joinPieces(std::vector<Piece>& pieces)
{
    std::vector<std::size_t> begins(1, 0);
    for (const Piece& piece : pieces)
        begins.push_back(begins.back() + piece.points.size());
    const auto hasAny = [&](auto member)
    { return std::ranges::any_of(pieces, [&](const Piece& piece) { return !(piece.*member).empty(); }); };
    RawMesh raw;
    raw.precisePoints.resize(begins.back());
    raw.normals.resize(hasAny(&Piece::normals) ? begins.back() : 0);
    raw.vertexColors.resize(hasAny(&Piece::colors) ? begins.back() : 0);
    tbb::parallel_for(std::size_t{0}, pieces.size(),
                      [&](std::size_t i)
                      {
                          const Piece piece = std::move(pieces[i]);
                          std::ranges::copy(piece.points, raw.precisePoints.data() + begins[i]);
                          std::ranges::copy(piece.normals, raw.normals.data() + begins[i]);
                          std::ranges::copy(piece.colors, raw.vertexColors.data() + begins[i]);
                      });
    return raw;
}

} // namespace

tl::expected<LoadedObjects, std::string> readXyz(const Source& source, const ProgressCallback& progress)
{
    if (!looksLikeText(source.text().substr(0, kTypicalStart)))
        return source.error("it is not a text file of points.");
    const Layout layout = guessLayout(source.text());
    const auto texts = splitAtLines(source.text(), kPieceSize);
    std::vector<Piece> pieces(texts.size());
    ParallelProgress counter(subprogress(progress, 0.0F, 0.8F), texts.size());
    tbb::parallel_for(std::size_t{0}, texts.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          pieces[i] = readPiece(texts[i], layout, i == 0);
                          source.release(texts[i]);
                          counter.advance();
                      });
    if (counter.isCanceled())
        return tl::unexpected(operationCanceledText());
    std::size_t unusable = 0;
    for (const Piece& piece : pieces)
        unusable += piece.unusable;
    std::vector<std::string> warnings;
    if (unusable > 0)
        warnings.push_back(source.warning(fmt::format("lines that are no points were left out: {}.", unusable)));
    return assembleFile(source, joinPieces(pieces), std::move(warnings));
}

FileFormat xyzFormat()
{
    return {"Points as text (XYZ)",
            {".xyz"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readXyz); },
            writeXyz};
}

} // namespace VX
