#pragma once

#include <imgui.h>

namespace VX
{

/// Begins the pop-up that `ImGui::OpenPopup(name)` opened. Unlike `ImGui::BeginPopup`'s, its window carries the name,
/// by which it is found. Call `ImGui::EndPopup` only when it returned true.
/// @threads the UI thread, within a frame
[[nodiscard]] bool beginNamedPopup(const char* name, ImGuiWindowFlags flags = 0);

} // namespace VX
