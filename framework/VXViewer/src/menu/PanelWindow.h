#pragma once

#include <VXViewer/Window.h>

#include <imgui.h>

namespace VX
{

constexpr ImGuiWindowFlags panelFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                        ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoBringToFrontOnFocus |
                                        ImGuiWindowFlags_NoNavFocus;

/// A bar that floats over the scene and never takes the keyboard.
constexpr ImGuiWindowFlags barFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                      ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoFocusOnAppearing |
                                      ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoNav;

/// Begins a panel that fills `rect` of the window, square and without a border; end it with `UI::endWindow`.
void beginPanel(const char* name, const PixelRect& rect, ImGuiWindowFlags flags = panelFlags);

/// Draws a border along an edge of the current panel.
void drawPanelEdge(ImVec2 from, ImVec2 to);

} // namespace VX
