#pragma once

namespace VX
{

/// Gives the current Dear ImGui context the look of the program at `UI::scale()`.
/// @threads the UI thread
void applyUiStyle();

} // namespace VX
