#pragma once

#include <string_view>

/// The sources of the shaders, without the version line. What is switched by `#ifdef` is said at each.
namespace VX::Shaders
{

/// A triangle that covers the viewport, in the colours `top` to `bottom`.
extern const std::string_view backgroundVertex;
extern const std::string_view backgroundFragment;

/// Lit triangles. FLAT: one normal a triangle; VERTEX_COLORS; FACE_COLORS.
extern const std::string_view meshVertex;
extern const std::string_view meshFragment;

/// Segments as quads of a width in pixels, from buffer textures of points and segments; six vertices a segment.
extern const std::string_view lineVertex;
extern const std::string_view lineFragment;

/// Round points. NORMALS: lit; VERTEX_COLORS.
extern const std::string_view pointVertex;
extern const std::string_view pointFragment;

} // namespace VX::Shaders
