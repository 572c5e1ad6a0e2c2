#include "NamedPopup.h"

#include <VXViewer/UI.h>

#include <imgui.h>
#include <imgui_internal.h>

namespace VX
{

bool beginNamedPopup(const char* name, ImGuiWindowFlags flags)
{
    if (!ImGui::IsPopupOpen(name))
    {
        // What was set for this window must not reach the next one.
        ImGui::GetCurrentContext()->NextWindowData.ClearFlags();
        return false;
    }
    constexpr ImGuiWindowFlags popupFlags = ImGuiWindowFlags_Popup | ImGuiWindowFlags_AlwaysAutoResize |
                                            ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoSavedSettings;
    if (UI::beginWindow(name, flags | popupFlags))
        return true;
    ImGui::EndPopup();
    return false;
}

} // namespace VX
