#pragma once

#include <VXMesh/Primitives.h>

#include <string>
#include <variant>
#include <vector>

namespace VX
{

/// A shape that can be created, with its dimensions in scene units.
using SimpleShape =
    std::variant<CubeShape, CylinderShape, SphereShape, PrismShape, TorusShape, ArrowShape, ConeShape, PlaneShape>;

/// One of each kind, about `size` large.
[[nodiscard]] std::vector<SimpleShape> makeSimpleShapes(float size);

/// "Cube"; in English, to be translated.
[[nodiscard]] const char* nameOf(const SimpleShape& shape);

[[nodiscard]] Mesh meshOf(const SimpleShape& shape);

/// The fields for its dimensions, which stay within what makes a proper shape.
/// @param size  of the shapes at first: how fast and how fine numbers change
/// @return true when one changed
/// @threads the UI thread, within a frame
bool drawDimensions(SimpleShape& shape, float size);

/// A field for a length or coordinate in millimetres, which are the scene's units.
/// @param label  translated
/// @return true when it changed
/// @threads the UI thread, within a frame
bool drawLengthField(const std::string& label, float& value, float least, float most, float size);

} // namespace VX
