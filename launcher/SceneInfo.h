#pragma once

#include <VXMesh/Object.h>

#include <string>

namespace VX
{

/// The tree below `root` as JSON text with a final newline, an object for each node: {"id", "name", "type", "points",
/// "triangles", "box": {"min": [3], "max": [3]} in scene coordinates or null without geometry, "transform": [16
/// numbers, row-major], "visible", "color": "#rrggbb" where the object has one, "children"}. Points and triangles are
/// the object's own, the box is that of the whole branch.
/// @threads UI thread
[[nodiscard]] std::string sceneInfo(const Object& root);

} // namespace VX
