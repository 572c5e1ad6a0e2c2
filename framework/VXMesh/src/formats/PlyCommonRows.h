#pragma once

#include "formats/PlyHeader.h"
#include "formats/PlyRows.h"

#include <VXMesh/Geometry.h>

#include <cstddef>
#include <string_view>
#include <vector>

/// Shortcuts for the rows that nearly all binary files have, little-endian: points of three floats, and faces of three
/// 32-bit corners behind an 8-bit count. What they do not take is read value by value.
namespace VX::PlyCommonRows
{

/// The number of bytes of a row where the first `count` ones all have three corners; 0 where they do not.
[[nodiscard]] std::size_t triangleStride(const std::vector<PlyColumn>& columns, std::string_view bytes,
                                         std::size_t count);

/// Copies the points of a block into `points`, from the block's first row on.
/// @return false where the rows have another layout; nothing is copied then
[[nodiscard]] bool copyPoints(const PlyHeader& header, const PlyRows& rows, const RowBlock& block,
                              std::vector<Vector3f>& points);

/// Whether the rows of an element look like triangles, by all but the counts in front of each.
[[nodiscard]] bool mayBeTriangles(const PlyHeader& header, const PlyRows& rows);

/// Copies the triangles of a block of such an element into `triangles`, from the block's first row on.
/// @return false where not all faces have three corners; what was copied does not count then
[[nodiscard]] bool copyTriangles(const RowBlock& block, std::vector<Triangle>& triangles);

} // namespace VX::PlyCommonRows
