#pragma once

#include <VXMesh/Geometry.h>

#include <cstdint>
#include <filesystem>
#include <variant>
#include <vector>

namespace VX
{

/// Mouse buttons, keys and modifier bits carry GLFW's numbers (GLFW_MOUSE_BUTTON_LEFT, GLFW_KEY_A, GLFW_MOD_CONTROL).
/// Positions are framebuffer pixels from the upper left corner of the window's drawing area.

/// The mouse moved.
struct MouseMoveEvent
{
    Vector2f position{0, 0};
    int mods = 0; ///< held while moving
};

/// A mouse button went down or up.
struct MouseButtonEvent
{
    int button = 0;
    bool pressed = false;
    int mods = 0;
    Vector2f position{0, 0};
    int clicks = 1; ///< 1, 2 for a double click, 3 for a triple click, counted at the press and repeated at the release
};

/// The wheel turned or two fingers moved.
struct ScrollEvent
{
    Vector2f offset{0, 0}; ///< in notches; y > 0: away from the user
    int mods = 0;
    Vector2f position{0, 0};
};

/// A key went down, up, or repeats while held.
struct KeyEvent
{
    enum class Action
    {
        Release = 0,
        Press = 1,
        Repeat = 2
    };

    int key = 0;
    int scancode = 0; ///< the system's number of the key; 0 where unknown
    Action action = Action::Press;
    int mods = 0;
};

/// A character was typed.
struct CharEvent
{
    char32_t codepoint = 0;
};

/// Files were dropped on the window.
struct DropEvent
{
    std::vector<std::filesystem::path> paths;
    Vector2f position{0, 0};
};

/// The drawing area or the content scale changed: ask the window for the new values.
struct ResizeEvent
{
};

/// The window got or lost the keyboard.
struct FocusEvent
{
    bool focused = false;
};

/// The mouse came over the window or left it.
struct EnterEvent
{
    bool entered = false;
};

/// What the user did, in the order in which it happened.
using InputEvent = std::variant<MouseMoveEvent, MouseButtonEvent, ScrollEvent, KeyEvent, CharEvent, DropEvent,
                                ResizeEvent, FocusEvent, EnterEvent>;

} // namespace VX
