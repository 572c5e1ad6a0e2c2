#pragma once

#include <VXViewer/UI.h>

#include <string>
#include <string_view>

/// What the widgets have in common.
namespace VX::UI
{

/// Of everything that can be pressed, in units.
inline constexpr float controlHeight = 28;

/// `label` without its "##id".
[[nodiscard]] std::string visiblePart(std::string_view label);

/// `size` with the usual height where it has none.
[[nodiscard]] ImVec2 controlSize(ImVec2 size);

/// Records the window that was just begun.
void recordWindow(const char* name);

/// Records the widget before it without the label at its right, where a press would do nothing.
/// @param width  of the part that can be pressed
void recordField(UiKind kind, std::string_view label, float width, std::string value);

/// Brings the current window back where it would stand over an edge of the program's window, as after a change of the
/// scale.
void keepInside();

/// True within a `ScopedDisabled`.
[[nodiscard]] bool isDisabledNow();

/// True once the mouse has rested on the item before for as long as a tooltip takes to come. Sees to the frame at that
/// moment.
[[nodiscard]] bool isTooltipDue();

} // namespace VX::UI
