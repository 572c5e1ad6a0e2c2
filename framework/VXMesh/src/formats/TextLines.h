#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace VX
{

/// Some consecutive rows of a table in a file. In text, `bytes` are lines of which the first `skippedLines` with
/// something on them belong to what is before; elsewhere they are exactly the rows.
struct RowBlock
{
    std::string_view bytes;
    std::size_t skippedLines = 0;
    std::size_t firstRow = 0;
    std::size_t rowCount = 0;
};

/// The lines of a text with something on them but a comment, dealt out table by table.
class TextLines
{
public:
    /// @threads any; uses the TBB pool
    explicit TextLines(std::string_view text);

    /// The next `count` lines, or those that are left.
    [[nodiscard]] std::vector<RowBlock> take(std::size_t count);

private:
    std::vector<std::string_view> pieces_;
    std::vector<std::size_t> lines_; ///< of each piece
    std::size_t piece_ = 0;
    std::size_t used_ = 0; ///< lines of the current piece
};

/// The number of rows in all blocks.
[[nodiscard]] std::size_t countRows(const std::vector<RowBlock>& blocks);

class TextCursor;

/// Moves a cursor at the begin of a block to its first row.
void skipToFirstRow(TextCursor& cursor, const RowBlock& block);

/// Moves a cursor to the next line with something on it.
void skipEmptyLines(TextCursor& cursor);

} // namespace VX
