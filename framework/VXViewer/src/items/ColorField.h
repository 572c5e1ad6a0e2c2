#pragma once

#include <VXMesh/Geometry.h>

#include <string>

namespace VX
{

/// A colour as "#RRGGBB" to type into, with a sample that opens a palette. Alpha stays. It is recorded with the label
/// and the text.
/// @param label  translated, shown beside it
/// @return true in each frame that changes the colour
/// @threads the UI thread, within a frame
bool colorField(const std::string& label, Color& color);

} // namespace VX
