#include "formats/TextLines.h"

#include "formats/TextScan.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <numeric>

namespace VX
{

namespace
{

constexpr std::size_t kPieceSize = std::size_t{2} << 20U;

std::size_t countLines(std::string_view text)
{
    std::size_t count = 0;
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
        count += cursor.atLineEnd() ? 0 : 1;
    return count;
}

} // namespace

TextLines::TextLines(std::string_view text)
    : pieces_(splitAtLines(text, kPieceSize))
    , lines_(pieces_.size())
{
    tbb::parallel_for(std::size_t{0}, pieces_.size(), [&](std::size_t i) { lines_[i] = countLines(pieces_[i]); });
}

std::vector<RowBlock> TextLines::take(std::size_t count)
{
    std::vector<RowBlock> blocks;
    std::size_t taken = 0;
    while (taken < count && piece_ < pieces_.size())
    {
        const std::size_t here = std::min(count - taken, lines_[piece_] - used_);
        if (here > 0)
            blocks.push_back({pieces_[piece_], used_, taken, here});
        taken += here;
        used_ += here;
        if (used_ == lines_[piece_])
        {
            ++piece_;
            used_ = 0;
        }
    }
    return blocks;
}

std::size_t countRows(const std::vector<RowBlock>& blocks)
{
    return std::accumulate(blocks.begin(), blocks.end(), std::size_t{0},
                           [](std::size_t sum, const RowBlock& block) { return sum + block.rowCount; });
}

void skipToFirstRow(TextCursor& cursor, const RowBlock& block)
{
    for (std::size_t skipped = 0; skipped < block.skippedLines; cursor.nextLine())
        skipped += cursor.atLineEnd() ? 0 : 1;
}

void skipEmptyLines(TextCursor& cursor)
{
    while (cursor.atLineEnd() && !cursor.atEnd())
        cursor.nextLine();
}

} // namespace VX
