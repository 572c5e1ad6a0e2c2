#pragma once

#include <VXViewer/UI.h>

#include <imgui.h>

#include <string>

namespace VX
{

/// Draws one line of `text` over what is there, cut to `width` pixels, and records it; the cursor stays.
/// @param position  of its upper left corner on the screen
/// @threads the UI thread, within a frame
void drawPlacedText(ImVec2 position, UI::Color color, const std::string& text, float width);

} // namespace VX
