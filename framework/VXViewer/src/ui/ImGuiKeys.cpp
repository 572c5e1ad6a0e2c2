#include "ImGuiKeys.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <array>
#include <utility>

namespace VX
{

namespace
{

/// Keys whose numbers follow one another in both libraries.
struct KeyRange
{
    int first;
    int last;
    ImGuiKey imguiFirst;
};

constexpr std::array ranges{KeyRange{GLFW_KEY_0, GLFW_KEY_9, ImGuiKey_0}, KeyRange{GLFW_KEY_A, GLFW_KEY_Z, ImGuiKey_A},
                            KeyRange{GLFW_KEY_F1, GLFW_KEY_F12, ImGuiKey_F1},
                            KeyRange{GLFW_KEY_KP_0, GLFW_KEY_KP_9, ImGuiKey_Keypad0}};

constexpr std::array singles{
    std::pair{GLFW_KEY_TAB, ImGuiKey_Tab},
    std::pair{GLFW_KEY_LEFT, ImGuiKey_LeftArrow},
    std::pair{GLFW_KEY_RIGHT, ImGuiKey_RightArrow},
    std::pair{GLFW_KEY_UP, ImGuiKey_UpArrow},
    std::pair{GLFW_KEY_DOWN, ImGuiKey_DownArrow},
    std::pair{GLFW_KEY_PAGE_UP, ImGuiKey_PageUp},
    std::pair{GLFW_KEY_PAGE_DOWN, ImGuiKey_PageDown},
    std::pair{GLFW_KEY_HOME, ImGuiKey_Home},
    std::pair{GLFW_KEY_END, ImGuiKey_End},
    std::pair{GLFW_KEY_INSERT, ImGuiKey_Insert},
    std::pair{GLFW_KEY_DELETE, ImGuiKey_Delete},
    std::pair{GLFW_KEY_BACKSPACE, ImGuiKey_Backspace},
    std::pair{GLFW_KEY_SPACE, ImGuiKey_Space},
    std::pair{GLFW_KEY_ENTER, ImGuiKey_Enter},
    std::pair{GLFW_KEY_ESCAPE, ImGuiKey_Escape},
    std::pair{GLFW_KEY_APOSTROPHE, ImGuiKey_Apostrophe},
    std::pair{GLFW_KEY_COMMA, ImGuiKey_Comma},
    std::pair{GLFW_KEY_MINUS, ImGuiKey_Minus},
    std::pair{GLFW_KEY_PERIOD, ImGuiKey_Period},
    std::pair{GLFW_KEY_SLASH, ImGuiKey_Slash},
    std::pair{GLFW_KEY_SEMICOLON, ImGuiKey_Semicolon},
    std::pair{GLFW_KEY_EQUAL, ImGuiKey_Equal},
    std::pair{GLFW_KEY_LEFT_BRACKET, ImGuiKey_LeftBracket},
    std::pair{GLFW_KEY_BACKSLASH, ImGuiKey_Backslash},
    std::pair{GLFW_KEY_RIGHT_BRACKET, ImGuiKey_RightBracket},
    std::pair{GLFW_KEY_GRAVE_ACCENT, ImGuiKey_GraveAccent},
    std::pair{GLFW_KEY_KP_DECIMAL, ImGuiKey_KeypadDecimal},
    std::pair{GLFW_KEY_KP_DIVIDE, ImGuiKey_KeypadDivide},
    std::pair{GLFW_KEY_KP_MULTIPLY, ImGuiKey_KeypadMultiply},
    std::pair{GLFW_KEY_KP_SUBTRACT, ImGuiKey_KeypadSubtract},
    std::pair{GLFW_KEY_KP_ADD, ImGuiKey_KeypadAdd},
    std::pair{GLFW_KEY_KP_ENTER, ImGuiKey_KeypadEnter},
    std::pair{GLFW_KEY_LEFT_SHIFT, ImGuiKey_LeftShift},
    std::pair{GLFW_KEY_LEFT_CONTROL, ImGuiKey_LeftCtrl},
    std::pair{GLFW_KEY_LEFT_ALT, ImGuiKey_LeftAlt},
    std::pair{GLFW_KEY_LEFT_SUPER, ImGuiKey_LeftSuper},
    std::pair{GLFW_KEY_RIGHT_SHIFT, ImGuiKey_RightShift},
    std::pair{GLFW_KEY_RIGHT_CONTROL, ImGuiKey_RightCtrl},
    std::pair{GLFW_KEY_RIGHT_ALT, ImGuiKey_RightAlt},
    std::pair{GLFW_KEY_RIGHT_SUPER, ImGuiKey_RightSuper},
    std::pair{GLFW_KEY_MENU, ImGuiKey_Menu},
};

} // namespace

ImGuiKey imguiKey(int glfwKey)
{
    for (const KeyRange& range : ranges)
    {
        if (glfwKey >= range.first && glfwKey <= range.last)
            return static_cast<ImGuiKey>(range.imguiFirst + (glfwKey - range.first));
    }
    const auto* const found =
        std::find_if(singles.begin(), singles.end(), [&](const auto& pair) { return pair.first == glfwKey; });
    return found != singles.end() ? found->second : ImGuiKey_None;
}

} // namespace VX
