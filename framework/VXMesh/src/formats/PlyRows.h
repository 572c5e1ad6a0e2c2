#pragma once

#include "formats/PlyHeader.h"
#include "formats/TextLines.h"
#include "formats/TextScan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace VX
{

/// What the values of a property mean to us.
enum class PlyRole : std::uint8_t
{
    X,
    Y,
    Z,
    NormalX,
    NormalY,
    NormalZ,
    Red,
    Green,
    Blue,
    Alpha,
    Unused,
    Corners
};

inline constexpr std::size_t kPlyValues = 10; ///< the roles before Unused

/// How to read one property, and what to do with it.
struct PlyColumn
{
    PlyType type = PlyType::Float;
    std::optional<PlyType> countType;
    PlyRole role = PlyRole::Unused;
};

/// Where the rows of an element are, as far as the file has them.
struct PlyRows
{
    std::vector<PlyColumn> columns;
    std::vector<RowBlock> blocks;
    std::size_t count = 0;

    [[nodiscard]] const PlyColumn* find(PlyRole role) const;
};

/// Finds the rows of all elements.
/// @param text  the whole file
/// @return as many as the header has elements
/// @threads any; uses the TBB pool
[[nodiscard]] std::vector<PlyRows> locatePlyRows(const PlyHeader& header, std::string_view text);

/// Reads the rows of one block one after another.
class PlyRowReader
{
public:
    PlyRowReader(const PlyHeader& header, const PlyRows& rows, const RowBlock& block);

    /// To the next row, which must be there.
    void next();

    /// A value of the current row; NaN where it is not there.
    [[nodiscard]] double value(PlyRole role) const { return values_[static_cast<std::size_t>(role)]; }

    /// The corners of the current row; what is no index gives `kNoPoint`.
    [[nodiscard]] std::span<const std::uint32_t> corners() const { return corners_; }

private:
    void nextText_();
    void nextBinary_();
    void readTextList_(const PlyColumn& column);
    void readBinaryList_(const PlyColumn& column, PlyType countType);

    const PlyRows& rows_;
    bool isText_;
    bool isSwapped_;
    TextCursor cursor_;
    const char* position_;
    std::array<double, kPlyValues + 1> values_;
    std::vector<std::uint32_t> corners_;
};

} // namespace VX
