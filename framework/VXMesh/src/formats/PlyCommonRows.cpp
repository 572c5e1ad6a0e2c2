#include "formats/PlyCommonRows.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace VX::PlyCommonRows
{

namespace
{

constexpr std::size_t cornersSize = 3 * sizeof(std::uint32_t);
constexpr std::size_t triangleSize = 1 + cornersSize;

bool isNative(const PlyHeader& header)
{
    return header.encoding == PlyEncoding::LittleEndian && std::endian::native == std::endian::little;
}

bool isFloat(const PlyColumn& column, PlyRole role)
{
    return !column.countType && column.type == PlyType::Float && column.role == role;
}

bool hasOnlyCorners(const std::vector<PlyColumn>& columns)
{
    return columns.size() == 1 && columns.front().countType == PlyType::UInt8 &&
           (columns.front().type == PlyType::Int32 || columns.front().type == PlyType::UInt32);
}

} // namespace

std::size_t triangleStride(const std::vector<PlyColumn>& columns, std::string_view bytes, std::size_t count)
{
    if (!hasOnlyCorners(columns) || bytes.size() / triangleSize < count)
        return 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (bytes[i * triangleSize] != 3)
            return 0;
    }
    return triangleSize;
}

bool copyPoints(const PlyHeader& header, const PlyRows& rows, const RowBlock& block, std::vector<Vector3f>& points)
{
    const std::vector<PlyColumn>& columns = rows.columns;
    const bool beginsWithPoint = columns.size() >= 3 && isFloat(columns[0], PlyRole::X) &&
                                 isFloat(columns[1], PlyRole::Y) && isFloat(columns[2], PlyRole::Z);
    const bool hasMore =
        std::any_of(columns.begin() + std::min<std::ptrdiff_t>(3, std::ssize(columns)), columns.end(),
                    [](const PlyColumn& column) { return column.countType || column.role != PlyRole::Unused; });
    if (!isNative(header) || !beginsWithPoint || hasMore)
        return false;
    const std::size_t stride = block.bytes.size() / block.rowCount;
    for (std::size_t i = 0; i < block.rowCount; ++i)
        std::memcpy(points[block.firstRow + i].data(), block.bytes.data() + i * stride, 3 * sizeof(float));
    return true;
}

bool mayBeTriangles(const PlyHeader& header, const PlyRows& rows)
{
    return isNative(header) && hasOnlyCorners(rows.columns) &&
           std::ranges::all_of(rows.blocks, [](const RowBlock& block)
                               { return block.bytes.size() == block.rowCount * triangleSize; });
}

bool copyTriangles(const RowBlock& block, std::vector<Triangle>& triangles)
{
    const char* row = block.bytes.data();
    for (std::size_t i = 0; i < block.rowCount; ++i, row += triangleSize)
    {
        if (*row != 3)
            return false;
        std::memcpy(triangles[block.firstRow + i].data(), row + 1, cornersSize);
    }
    return true;
}

} // namespace VX::PlyCommonRows
