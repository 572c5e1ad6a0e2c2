#pragma once

#include <VXViewer/UI.h>

#include <string>

/// What the screens of the sign-in are made of. Positions are units of the design from the upper left corner of the
/// window, in which they stand in one column.
/// @threads the UI thread, within a frame
namespace VX::AuthWidgets
{

inline constexpr float width = 440;
inline constexpr float height = 332;

/// At the left and the right of the column.
inline constexpr float margin = 32;
inline constexpr float column = width - 2 * margin;

/// Where parts begin that all screens have in the same place.
inline constexpr float messageTop = 222;
inline constexpr float buttonTop = 258;
inline constexpr float linksTop = 298;

inline constexpr float labelHeight = 21; ///< from the top of a label to that of its field
inline constexpr float fieldHeight = 56; ///< with its label above and the gap below

/// The next widget begins here.
void moveTo(float x, float y);

/// The product's logo in the middle of the column.
void logo(float top, float size);

/// One line in the middle of the column.
void centeredText(float top, const std::string& text, UI::Font font);

/// Draws the label of the field that follows and, at its right, what is wrong with what is in the field.
void label(float top, const std::string& name, const std::string& error);

struct FieldOptions
{
    float width = column;
    std::size_t limit = 0; ///< of characters; 0: none
    bool password = false;
    bool revealed = false;
};

/// What the user did to a field.
struct FieldResult
{
    bool edited = false;
    bool entered = false; ///< by the key Enter
};

/// Draws a field that others, such as tests, find by `name`.
FieldResult field(float top, const std::string& name, std::string& text, const FieldOptions& options);

/// What is pressed like a button and looks like a part of the text. @return true when it was
bool link(const std::string& name);

/// A line of a text and a link behind it. @param align  0: at the left of the column; 0.5: in its middle; 1: at its
/// right @return true when the link was pressed
bool linkLine(float top, float align, const std::string& text, const std::string& name);

/// The same with the link in front.
bool linkInFront(float top, float align, const std::string& name, const std::string& text);

/// A mark and whether `rule` is met, in words of its own for who does not see colours.
void rule(float x, float y, const std::string& name, bool isMet);

/// Up to two lines of `text`, the whole of it in a tooltip. @param align  of a single line, as for `linkLine`
void message(float top, float align, const std::string& text, UI::Color color);

} // namespace VX::AuthWidgets
