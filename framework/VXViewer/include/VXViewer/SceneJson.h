#pragma once

#include <VXMesh/Geometry.h>
#include <VXMesh/Object.h>
#include <VXViewer/Export.h>

#include <json/value.h>

#include <string>

namespace VX
{

// The scene as JSON, for programs that ask about it.

/// [x, y, z]
/// @threads any
[[nodiscard]] VXVIEWER_API Json::Value toJson(const Vector3d& vector);

/// {"min": [3], "max": [3]}; null for an empty box.
/// @threads any
[[nodiscard]] VXVIEWER_API Json::Value toJson(const Box3d& box);

/// 16 numbers, row-major.
/// @threads any
[[nodiscard]] VXVIEWER_API Json::Value toJson(const Transform& transform);

/// "#rrggbb"
/// @threads any
[[nodiscard]] VXVIEWER_API std::string colorText(Color color);

/// {"id", "name", "type", "points", "triangles", "box": in scene coordinates or null without geometry, "transform": to
/// the parent, "visible", "color" where the object has one}. Points and triangles are the object's own, the box is that
/// of the whole branch.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API Json::Value objectJson(const Object& object);

} // namespace VX
