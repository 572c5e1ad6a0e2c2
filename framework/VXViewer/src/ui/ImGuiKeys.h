#pragma once

#include <imgui.h>

namespace VX
{

/// Dear ImGui's name of a GLFW key; ImGuiKey_None for one that it does not know.
[[nodiscard]] ImGuiKey imguiKey(int glfwKey);

} // namespace VX
