#include "Translate.h"

#include <VXViewer/ShortcutManager.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <array>
#include <utility>

namespace VX
{

namespace
{

/// Caps Lock and Num Lock do not matter.
constexpr int relevantMods = GLFW_MOD_CONTROL | GLFW_MOD_SHIFT | GLFW_MOD_ALT | GLFW_MOD_SUPER;

std::string keyName(int key)
{
    static constexpr std::array<std::pair<int, const char*>, 11> named{
        {{GLFW_KEY_DELETE, translatable("Del")},
         {GLFW_KEY_ESCAPE, translatable("Esc")},
         {GLFW_KEY_ENTER, translatable("Enter")},
         {GLFW_KEY_SPACE, translatable("Space")},
         {GLFW_KEY_TAB, translatable("Tab")},
         {GLFW_KEY_END, translatable("End")},
         {GLFW_KEY_UP, translatable("Arrow Up")},
         {GLFW_KEY_DOWN, translatable("Arrow Down")},
         {GLFW_KEY_LEFT, translatable("Arrow Left")},
         {GLFW_KEY_RIGHT, translatable("Arrow Right")},
         {GLFW_KEY_BACKSPACE, translatable("Backspace")}}};
    const auto* const found = std::find_if(named.begin(), named.end(), [&](const auto& n) { return n.first == key; });
    if (found != named.end())
        return tr(found->second);
    // As a text of the interface "Home" is something else.
    if (key == GLFW_KEY_HOME)
        return "Home";
    if (key >= GLFW_KEY_F1 && key <= GLFW_KEY_F25)
        return "F" + std::to_string(key - GLFW_KEY_F1 + 1);
    if (key >= GLFW_KEY_KP_0 && key <= GLFW_KEY_KP_9)
        return trf("Keypad {}", key - GLFW_KEY_KP_0);
    // Printable keys carry the number of their character.
    return key > GLFW_KEY_SPACE && key < GLFW_KEY_GRAVE_ACCENT ? std::string(1, static_cast<char>(key)) : "?";
}

} // namespace

int getGlfwModPrimaryCtrl()
{
    return GLFW_MOD_CONTROL;
}

void ShortcutManager::set(Shortcut shortcut)
{
    const auto same = std::find_if(shortcuts_.begin(), shortcuts_.end(),
                                   [&](const Shortcut& other) { return other.key == shortcut.key; });
    if (same != shortcuts_.end())
        *same = std::move(shortcut);
    else
        shortcuts_.push_back(std::move(shortcut));
}

std::string ShortcutManager::keyOf(const std::string& name) const
{
    const auto found = std::find_if(shortcuts_.begin(), shortcuts_.end(),
                                    [&](const Shortcut& shortcut) { return shortcut.name == name; });
    return found != shortcuts_.end() ? keyText(found->key) : std::string();
}

bool ShortcutManager::process(const KeyEvent& event) const
{
    if (event.action == KeyEvent::Action::Release)
        return false;
    const ShortcutKey key{event.key, event.mods & relevantMods};
    const auto found = std::find_if(shortcuts_.begin(), shortcuts_.end(),
                                    [&](const Shortcut& shortcut) { return shortcut.key == key; });
    if (found == shortcuts_.end())
        return false;
    // The action may set the shortcuts anew.
    const std::function<void()> action = found->action;
    if (action && event.action == KeyEvent::Action::Press)
        action();
    return true;
}

std::string ShortcutManager::keyText(ShortcutKey key)
{
    std::string text;
    static constexpr std::array<std::pair<int, const char*>, 4> mods{{{GLFW_MOD_CONTROL, translatable("Ctrl")},
                                                                      {GLFW_MOD_ALT, translatable("Alt")},
                                                                      {GLFW_MOD_SHIFT, translatable("Shift")},
                                                                      {GLFW_MOD_SUPER, translatable("Super")}}};
    for (const auto& [bit, name] : mods)
    {
        if ((key.mods & bit) != 0)
            text += tr(name) + "+";
    }
    return text + keyName(key.key);
}

} // namespace VX
