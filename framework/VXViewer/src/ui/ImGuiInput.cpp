#include "ImGuiInput.h"

#include "ImGuiKeys.h"

#include <VXMesh/Secret.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <imgui.h>
#include <imgui_internal.h>

#include <string>

namespace VX
{

namespace
{

/// Adds each kind of event to the current context's queue.
class Feeder
{
public:
    void operator()(const MouseMoveEvent& event) const { io_.AddMousePosEvent(event.position.x(), event.position.y()); }

    void operator()(const MouseButtonEvent& event) const
    {
        addMods_(event.mods);
        io_.AddMousePosEvent(event.position.x(), event.position.y());
        if (event.button >= 0 && event.button < ImGuiMouseButton_COUNT)
            io_.AddMouseButtonEvent(event.button, event.pressed);
    }

    void operator()(const ScrollEvent& event) const { io_.AddMouseWheelEvent(event.offset.x(), event.offset.y()); }

    void operator()(const KeyEvent& event) const
    {
        addMods_(event.mods);
        if (event.action != KeyEvent::Action::Repeat)
            io_.AddKeyEvent(imguiKey(event.key), event.action == KeyEvent::Action::Press);
    }

    void operator()(const CharEvent& event) const { io_.AddInputCharacter(event.codepoint); }

    void operator()(const FocusEvent& event) const { io_.AddFocusEvent(event.focused); }

    void operator()(const EnterEvent& event) const
    {
        if (!event.entered)
            io_.AddMousePosEvent(-FLT_MAX, -FLT_MAX);
    }

    void operator()(const DropEvent&) const {}

    void operator()(const ResizeEvent&) const {}

private:
    void addMods_(int mods) const
    {
        io_.AddKeyEvent(ImGuiMod_Ctrl, (mods & GLFW_MOD_CONTROL) != 0);
        io_.AddKeyEvent(ImGuiMod_Shift, (mods & GLFW_MOD_SHIFT) != 0);
        io_.AddKeyEvent(ImGuiMod_Alt, (mods & GLFW_MOD_ALT) != 0);
        io_.AddKeyEvent(ImGuiMod_Super, (mods & GLFW_MOD_SUPER) != 0);
    }

    ImGuiIO& io_ = ImGui::GetIO();
};

/// Dear ImGui reads the text before it asks again.
std::string& pastedText()
{
    static std::string text;
    return text;
}

CursorShape shapeOf(ImGuiMouseCursor cursor)
{
    switch (cursor)
    {
    case ImGuiMouseCursor_TextInput:
        return CursorShape::TextInput;
    case ImGuiMouseCursor_Hand:
        return CursorShape::Hand;
    case ImGuiMouseCursor_ResizeEW:
        return CursorShape::ResizeHorizontal;
    case ImGuiMouseCursor_ResizeNS:
        return CursorShape::ResizeVertical;
    default:
        return CursorShape::Arrow;
    }
}

} // namespace

void ImGuiInput::connect(Window& window)
{
    ImGuiIO& io = ImGui::GetIO();
    io.BackendFlags |= ImGuiBackendFlags_HasMouseCursors;
    io.ClipboardUserData = &window;
    io.SetClipboardTextFn = [](void* user, const char* text) { static_cast<Window*>(user)->setClipboard(text); };
    io.GetClipboardTextFn = [](void* user) -> const char*
    {
        wipePasted();
        pastedText() = static_cast<Window*>(user)->clipboard();
        return pastedText().c_str();
    };
}

void ImGuiInput::wipePasted()
{
    wipe(pastedText());
}

void ImGuiInput::feed(const InputEvent& event)
{
    std::visit(Feeder(), event);
}

bool ImGuiInput::hasQueuedEvents()
{
    return !ImGui::GetCurrentContext()->InputEventsQueue.empty();
}

bool ImGuiInput::isOverUi(const Vector2f& position)
{
    if (ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel))
        return true;
    const ImVec2 point(position.x(), position.y());
    for (const ImGuiWindow* window : ImGui::GetCurrentContext()->Windows)
    {
        const bool takesMouse =
            window->WasActive && !window->Hidden && (window->Flags & ImGuiWindowFlags_NoMouseInputs) == 0;
        if (takesMouse && window->OuterRectClipped.Contains(point))
            return true;
    }
    return false;
}

void ImGuiInput::updateCursor(Window& window)
{
    window.setCursor(shapeOf(ImGui::GetMouseCursor()));
}

} // namespace VX
