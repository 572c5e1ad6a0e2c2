#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <json/value.h>

namespace VX
{

// The numbers that agents give and get.
// @threads any

/// What agents put into the scene, and where they look from, stays nearer to the origin than this along each axis, in
/// mm: farther out, too few digits are left of it.
constexpr double coordinateBound = 1e12;

/// False for what is no number, too.
[[nodiscard]] inline bool isWithinBound(const Vector3d& point)
{
    return (point.array().abs() < coordinateBound).all();
}

/// True for an empty box.
[[nodiscard]] inline bool isWithinBound(const Box3d& box)
{
    return box.isEmpty() || (isWithinBound(Vector3d(box.min())) && isWithinBound(Vector3d(box.max())));
}

/// `value` with all numbers in it rounded to nine significant digits, which are enough to read a length, an area or a
/// volume. Whole numbers stay.
[[nodiscard]] VXVIEWER_API Json::Value rounded(Json::Value value);

} // namespace VX
