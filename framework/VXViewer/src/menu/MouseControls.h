#pragma once

#include <limits>

namespace VX
{

/// Lists what the mouse does in the scene: the actions, and beside them their effects; below them where `width` pixels
/// are not enough.
void drawMouseControls(float width = std::numeric_limits<float>::max());

} // namespace VX
