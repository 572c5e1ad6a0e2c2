#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/UiTree.h>

#include <imgui.h>

#include <string>
#include <string_view>
#include <vector>

/// The widgets of the interface: Dear ImGui's in the look of the program, each recorded in the `UiTree`. Sizes that are
/// handed in are pixels (units of the design times `scale`). A label may end in "##id", which the user does not see.
/// @threads the UI thread, within a frame but for `scale`
namespace VX::UI
{

/// Pixels in a unit of the design.
[[nodiscard]] VXVIEWER_API float scale();

/// The session of the interface sets it from the window.
VXVIEWER_API void setScale(float pixelsPerUnit);

/// `units` of the design in pixels.
[[nodiscard]] VXVIEWER_API float px(float units);

enum class Font
{
    Regular,
    SemiBold,
    Headline
};

enum class Color
{
    Window,
    Panel,
    Raised,
    RaisedHovered,
    Border,
    Text,
    SecondaryText,
    Accent,
    AccentHovered,
    AccentText, ///< on the accent
    Warning,
    Error
};

[[nodiscard]] VXVIEWER_API ImU32 color(Color color);
[[nodiscard]] VXVIEWER_API ImVec4 colorVec(Color color);

/// Null before the interface has started.
[[nodiscard]] VXVIEWER_API ImFont* font(Font font);

/// Draws in another font until the end of the scope.
class VXVIEWER_API ScopedFont
{
public:
    explicit ScopedFont(Font font);
    ~ScopedFont();
    ScopedFont(const ScopedFont&) = delete;
    ScopedFont& operator=(const ScopedFont&) = delete;
};

/// Widgets until the end of the scope cannot be used if `disabled`.
class VXVIEWER_API ScopedDisabled
{
public:
    explicit ScopedDisabled(bool disabled = true);
    ~ScopedDisabled();
    ScopedDisabled(const ScopedDisabled&) = delete;
    ScopedDisabled& operator=(const ScopedDisabled&) = delete;
};

/// Begins a window; call `endWindow` whatever it returns.
/// @return false while nothing of it is to be seen
VXVIEWER_API bool beginWindow(const char* name, ImGuiWindowFlags flags = 0, bool* open = nullptr);
VXVIEWER_API void endWindow();

/// Begins the modal window that `ImGui::OpenPopup(name)` opened, in the middle of the window; `title` is its headline.
/// Call `endModal` only when it returned true.
VXVIEWER_API bool beginModal(const char* name, const std::string& title, float width);
VXVIEWER_API void endModal();

/// Closes that modal from outside of it.
VXVIEWER_API void closeModal(const char* name);

/// @param size  0 in a direction: as large as the label needs, and at least 28 units high
VXVIEWER_API bool button(const std::string& label, ImVec2 size = {0, 0});

/// The button that a press of Enter stands for.
VXVIEWER_API bool primaryButton(const std::string& label, ImVec2 size = {0, 0});

/// A button without a frame until the mouse comes; `active` marks the choice that holds.
VXVIEWER_API bool toolButton(const std::string& label, bool active = false, ImVec2 size = {0, 0});

/// The width that `button` takes for `label`.
[[nodiscard]] VXVIEWER_API float buttonWidth(const std::string& label);

VXVIEWER_API bool checkbox(const std::string& label, bool& value);

/// @param hint  shown while the text is empty
VXVIEWER_API bool inputText(const std::string& label, std::string& text, ImGuiInputTextFlags flags = 0,
                            const std::string& hint = {});

/// @param current  the index of the choice; any other number shows none
VXVIEWER_API bool combo(const std::string& label, int& current, const std::vector<std::string>& choices);

/// A row of a list over the whole width.
VXVIEWER_API bool listRow(const std::string& label, bool selected, ImGuiSelectableFlags flags = 0);

VXVIEWER_API void text(const std::string& text);
VXVIEWER_API void secondaryText(const std::string& text);
VXVIEWER_API void wrappedText(const std::string& text);

/// A bar that is `fraction` (0 to 1) full. @param label  recorded, not drawn
VXVIEWER_API void progressBar(const std::string& label, float fraction, ImVec2 size);

/// Explains the widget before it while the mouse rests on it, also when it is disabled.
/// @param shortcut  "Ctrl+O"; may be empty
VXVIEWER_API void tooltip(const std::string& text, const std::string& shortcut = {});

/// Records the widget before it, drawn with Dear ImGui itself.
VXVIEWER_API void record(UiKind kind, std::string_view label, std::string value = {});

/// `text` cut in the middle, with an ellipsis, to fit into `width` pixels in the current font.
[[nodiscard]] VXVIEWER_API std::string elided(const std::string& text, float width);

} // namespace VX::UI
