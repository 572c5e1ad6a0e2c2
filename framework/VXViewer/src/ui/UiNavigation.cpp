#include "UiNavigation.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <imgui_internal.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

bool isPopupOpen()
{
    return ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

/// The windows that the keyboard can go to, the one that was used last at the end.
std::vector<ImGuiWindow*> windows()
{
    std::vector<ImGuiWindow*> found;
    for (ImGuiWindow* window : ImGui::GetCurrentContext()->WindowsFocusOrder)
    {
        if (window->WasActive && !window->Hidden && (window->Flags & ImGuiWindowFlags_NoNavInputs) == 0)
            found.push_back(window);
    }
    return found;
}

ImGuiWindow* focusedRoot()
{
    const ImGuiWindow* window = ImGui::GetCurrentContext()->NavWindow;
    return window ? window->RootWindow : nullptr;
}

bool isKey(const KeyEvent& event, int key)
{
    return event.key == key && (event.mods & (GLFW_MOD_CONTROL | GLFW_MOD_ALT | GLFW_MOD_SUPER)) == 0;
}

bool moves(int key)
{
    switch (key)
    {
    case GLFW_KEY_TAB:
    case GLFW_KEY_LEFT:
    case GLFW_KEY_RIGHT:
    case GLFW_KEY_UP:
    case GLFW_KEY_DOWN:
    case GLFW_KEY_PAGE_UP:
    case GLFW_KEY_PAGE_DOWN:
    case GLFW_KEY_HOME:
    case GLFW_KEY_END:
        return true;
    default:
        return false;
    }
}

} // namespace

bool UiNavigation::isActive()
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    return context.NavWindow && context.NavId != 0 && !context.NavDisableHighlight;
}

bool UiNavigation::takes(const KeyEvent& event)
{
    const bool presses = event.key == GLFW_KEY_SPACE || event.key == GLFW_KEY_ENTER || event.key == GLFW_KEY_KP_ENTER ||
                         event.key == GLFW_KEY_ESCAPE;
    return isActive() && (moves(event.key) || presses) && isKey(event, event.key);
}

bool UiNavigation::isStray(const KeyEvent& event)
{
    return moves(event.key) && !isActive() && !isPopupOpen() && !ImGui::GetIO().WantTextInput;
}

bool UiNavigation::begin(const KeyEvent& event)
{
    if (event.action != KeyEvent::Action::Press || isPopupOpen() || windows().empty())
        return false;
    next_ = isKey(event, GLFW_KEY_F6);
    if (!next_ && !isKey(event, GLFW_KEY_TAB))
        return false;
    requested_ = true;
    return true;
}

void UiNavigation::applyRequest()
{
    if (!std::exchange(requested_, false))
        return;
    std::vector<ImGuiWindow*> all = windows();
    if (all.empty())
        return;
    ImGuiWindow* target = all.back();
    if (next_)
    {
        // The order of use changes with every step; that of their names does not.
        std::sort(all.begin(), all.end(),
                  [](const ImGuiWindow* a, const ImGuiWindow* b) { return ImStricmp(a->Name, b->Name) < 0; });
        const auto at = std::find(all.begin(), all.end(), focusedRoot());
        target = at == all.end() || at + 1 == all.end() ? all.front() : *(at + 1);
    }
    ImGui::FocusWindow(target);
    ImGui::NavInitWindow(target, true);
    ImGuiContext& context = *ImGui::GetCurrentContext();
    // As after an arrow: the ring comes up.
    context.NavInitRequestFromMove = true;
}

} // namespace VX
