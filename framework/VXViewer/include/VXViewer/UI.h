#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/UiTree.h>

#include <imgui.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The widgets of the interface: Dear ImGui's in the look of the program, each recorded in the `UiTree`. Sizes that are
/// handed in are pixels (units of the design times `scale`). A label may end in "##id", which the user does not see.
/// @threads the UI thread, within a frame but for `scale`
namespace VX::UI
{

/// Pixels in a unit of the design: the window's scale times the user's.
[[nodiscard]] VXVIEWER_API float scale();

/// The session of the interface sets it from the window.
VXVIEWER_API void setScale(float pixelsPerUnit);

inline constexpr float smallestUserScale = 0.75F;
inline constexpr float largestUserScale = 3;

/// By how much the user wants everything larger than the window's scale makes it; 1 at first.
[[nodiscard]] VXVIEWER_API float userScale();

/// Takes effect with the next frame, which this asks for. A factor out of range is brought into it.
VXVIEWER_API void setUserScale(float factor);

/// `units` of the design in pixels.
[[nodiscard]] VXVIEWER_API float px(float units);

enum class Font
{
    Regular,
    SemiBold,
    Headline,
    Small,
    Monospace
};

/// The roles that colours play; the theme says which they are (ColorTheme.h).
enum class Color
{
    Window, ///< behind the panels, and in what one types into
    Panel,
    Raised, ///< buttons, pop-ups
    RaisedHovered,
    RaisedPressed,
    Border,
    Text,
    SecondaryText,
    Accent,
    AccentHovered,
    AccentText, ///< on the accent
    Selection,  ///< behind the text of what is chosen
    Warning,
    Error,
    Success
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

/// Sees to it that the signs of `text` are in the fonts from the next frame on. The widgets do so themselves; this is
/// for text that is drawn without them.
VXVIEWER_API void needGlyphs(std::string_view text);

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

/// For a window that closes with Escape: true when the key was pressed in the current window, which takes it from the
/// shortcuts as long as it has the keyboard.
VXVIEWER_API bool escapePressed();

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

/// A button without a frame that shows an icon only. @param label  recorded, and shown in the tooltip
VXVIEWER_API bool iconButton(const std::string& icon, const std::string& label, bool active = false,
                             ImVec2 size = {0, 0});

/// An icon over its label, in the colours that are pushed for buttons and text. @param iconSize  of a side
VXVIEWER_API bool buttonIconEx(const std::string& icon, float iconSize, const std::string& label, ImVec2 buttonSize);

/// Draws the icon of this name (RibbonIcons.h) as an item; leaves its place empty where there is none.
VXVIEWER_API void icon(const std::string& name, float units, Color tint = Color::Text);

/// Draws the icon, its middle at `center`, without being an item.
VXVIEWER_API void drawIcon(ImDrawList& draw, const std::string& name, ImVec2 center, float size, ImU32 tint);

/// The width that `button` takes for `label`.
[[nodiscard]] VXVIEWER_API float buttonWidth(const std::string& label);

VXVIEWER_API bool checkbox(const std::string& label, bool& value);

/// One of several choices: sets `value` to `choice`. @return true when that changed it
VXVIEWER_API bool radio(const std::string& label, int& value, int choice);

struct InputTextOptions
{
    std::size_t limit = 0; ///< of characters; what does not fit is not taken. 0: none
    bool password = false; ///< shows asterisks, and neither records nor copies the text
    bool revealed = false; ///< shows the letters of a password all the same
    std::string hint = {}; ///< shown while the text is empty
    ImGuiInputTextFlags flags = 0;
};

VXVIEWER_API bool inputText(const std::string& label, std::string& text, const InputTextOptions& options = {});

/// Ends the typing, and overwrites what the fields keep of the text that was typed last: for secrets.
VXVIEWER_API void wipeTypedText();

/// What follows a number that is drawn, and how many digits are drawn behind its point.
struct NumberFormat
{
    std::string unit = {}; ///< "mm", "°"
    int decimals = 2;
};

/// A handle on a bar; Ctrl and a click types a number, which is brought into the range.
VXVIEWER_API bool slider(const std::string& label, float& value, float min, float max, const NumberFormat& format = {});
VXVIEWER_API bool sliderInt(const std::string& label, int& value, int min, int max, const std::string& unit = {});

/// A number that is changed by dragging over it, or typed after a double click. @param speed  change a pixel
VXVIEWER_API bool drag(const std::string& label, float& value, float speed, float min, float max,
                       const NumberFormat& format = {});

/// @param current  the index of the choice; any other number shows none
VXVIEWER_API bool combo(const std::string& label, int& current, const std::vector<std::string>& choices);

/// A row of a list over the whole width.
VXVIEWER_API bool listRow(const std::string& label, bool selected, ImGuiSelectableFlags flags = 0);

/// A row that opens what is below it. @return true while it is open
VXVIEWER_API bool collapsingHeader(const std::string& label, bool openAtFirst = true);

/// Begins a row of tabs; call `endTabBar` only if it returned true.
VXVIEWER_API bool beginTabBar(const std::string& name);

/// Adds a tab. @param select  shows it now @return true while it is shown: draw what is on it then
VXVIEWER_API bool tab(const std::string& label, bool select = false);
VXVIEWER_API void endTabBar();

/// Begins a table with a row of headers that stays at the top; call `endTable` only if it returned true.
/// @param size  0 in a direction: the width that is left, the height of all rows
VXVIEWER_API bool beginTable(const std::string& name, const std::vector<std::string>& headers, ImVec2 size = {0, 0});

/// Adds a row of texts. @return true when it was pressed
VXVIEWER_API bool tableRow(const std::vector<std::string>& cells, bool selected = false);
VXVIEWER_API void endTable();

/// A line over the whole width.
VXVIEWER_API void separator();

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

namespace ImGui
{

/// The cross that closes a window, an item of 28 units square. @return true when it was pressed
VXVIEWER_API bool ModalExitButton();

} // namespace ImGui

namespace ImGuiMV
{

/// Places the next window relative to the upper left corner of the program's window.
/// @param pivot  which point of the new window that is: (0, 0) its upper left corner, (1, 1) its lower right one
VXVIEWER_API void SetNextWindowPosMainViewport(ImVec2 pos, ImGuiCond cond = 0, ImVec2 pivot = {0, 0});

} // namespace ImGuiMV
