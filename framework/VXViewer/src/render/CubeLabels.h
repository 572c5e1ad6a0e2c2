#pragma once

#include "render/GlObjects.h"

#include <array>
#include <string>

namespace VX
{

/// The labels, each in the middle of a square layer of `side` pixels, as a texture array of coverages with mipmaps.
/// A label that is too wide is made smaller. Without the font the layers are empty, and the log says so.
/// @threads the UI thread, with the context current
[[nodiscard]] Gl::Texture makeCubeLabels(const std::array<std::string, 6>& labels, int side);

} // namespace VX
