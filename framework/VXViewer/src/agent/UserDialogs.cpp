#include "UserDialogs.h"

#include "dialog/PathDialog.h"
#include "menu/ProgressPanel.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

#include <imgui_internal.h>

#include <string_view>

namespace VX
{

std::string waitingWindow(const Viewer& viewer)
{
    if (!viewer.ui() || !viewer.getMenuPlugin())
        return {};
    // The system's own is no window of the interface.
    if (isUserAskedForFile(viewer))
        return PathDialog::windowName();
    const ImVector<ImGuiPopupData>& open = ImGui::GetCurrentContext()->OpenPopupStack;
    for (int level = open.Size - 1; level >= 0; --level)
    {
        const ImGuiWindow* const window = open[level].Window;
        const bool isModal = window && (window->Flags & ImGuiWindowFlags_Modal) != 0;
        if (isModal && std::string_view(window->Name) != ProgressPanel::windowName())
            return window->Name;
    }
    return {};
}

bool isUserAskedToSave(const Viewer& viewer)
{
    const auto& menu = viewer.getMenuPlugin();
    return viewer.ui() && menu && menu->sceneFiles().isAsking();
}

bool isUserAskedForFile(const Viewer& viewer)
{
    const auto& menu = viewer.getMenuPlugin();
    return viewer.ui() && menu && menu->fileDialog().isOpen();
}

bool isFileDialog(const std::string& window)
{
    return window == PathDialog::windowName();
}

} // namespace VX
