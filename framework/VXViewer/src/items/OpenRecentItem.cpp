#include "OpenRecentItem.h"

#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <optional>

namespace VX
{

namespace
{

constexpr float panelWidth = 320;

} // namespace

OpenRecentItem::OpenRecentItem(Viewer& viewer)
    : PanelItem("Open recent", viewer, {translatable("Recent Files"), panelWidth})
{
}

void OpenRecentItem::opened_()
{
    paths_ = viewer_().recentFiles().list();
}

void OpenRecentItem::drawContent_()
{
    if (paths_.empty())
    {
        UI::secondaryText(tr("Files that you open or save appear here."));
        return;
    }
    std::optional<std::filesystem::path> chosen;
    for (std::size_t i = 0; i < paths_.size(); ++i)
    {
        ImGui::PushID(static_cast<int>(i));
        const std::string name = utf8string(paths_[i].filename());
        if (UI::listRow(UI::elided(name, UI::px(panelWidth)), false))
            chosen = paths_[i];
        UI::tooltip(utf8string(paths_[i]));
        ImGui::PopID();
    }
    UI::separator();
    if (UI::button(tr("Clear List")))
    {
        viewer_().recentFiles().clear();
        paths_.clear();
    }
    if (chosen)
    {
        close_();
        viewer_().openFiles({*chosen});
    }
}

} // namespace VX
