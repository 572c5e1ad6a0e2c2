#include "TopBar.h"

#include "Translate.h"

#include <VXMesh/Object.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <array>
#include <string>
#include <vector>

namespace VX
{

namespace
{

constexpr float gap = 4;
constexpr float choiceWidth = 96;
constexpr float separatorWidth = 17;

struct ViewButton
{
    const char* label;
    const char* tooltip;
    const char* shortcut;
    StandardView view;
};

constexpr std::array viewButtons{
    ViewButton{"Front", "Look from the front", "Alt+1", StandardView::Front},
    ViewButton{"Back", "Look from the back", "Ctrl+Alt+1", StandardView::Back},
    ViewButton{"Left", "Look from the left", "Ctrl+Alt+3", StandardView::Left},
    ViewButton{"Right", "Look from the right", "Alt+3", StandardView::Right},
    ViewButton{"Top", "Look from above", "Alt+7", StandardView::Top},
    ViewButton{"Bottom", "Look from below", "Ctrl+Alt+7", StandardView::Bottom},
    ViewButton{"Isometric", "Look from a corner", "", StandardView::Isometric},
};

void separator()
{
    ImGui::SameLine(0, UI::px(8));
    const ImVec2 top = ImGui::GetCursorScreenPos();
    ImGui::GetWindowDrawList()->AddRectFilled({top.x, top.y + UI::px(4)}, {top.x + UI::px(1), top.y + UI::px(24)},
                                              UI::color(UI::Color::Border));
    ImGui::Dummy({UI::px(1), UI::px(28)});
    ImGui::SameLine(0, UI::px(8));
}

float widthOfViews()
{
    float width = 0;
    for (const ViewButton& button : viewButtons)
        width += UI::buttonWidth(tr(button.label)) + UI::px(gap);
    return width;
}

float widthOfProjections()
{
    return UI::px(separatorWidth) + UI::buttonWidth(tr("Perspective")) + UI::px(gap) +
           UI::buttonWidth(tr("Orthographic"));
}

} // namespace

void TopBar::draw(ImGuiMenu& menu)
{
    const ShortcutManager* shortcuts = menu.shortcutManager();
    const auto keyOf = [&](const char* name) { return shortcuts ? shortcuts->keyOf(name) : std::string(); };
    if (UI::primaryButton(tr("Open")))
        menu.chooseFilesToOpen();
    UI::tooltip(tr("Open files"), keyOf("Open files"));
    ImGui::SameLine();
    {
        const UI::ScopedDisabled disabled(viewer_.scene().children().empty());
        if (UI::button(tr("Save As")))
            menu.chooseFileToSave();
        UI::tooltip(tr("Save the scene to a file"), keyOf("Save Scene As"));
    }
    separator();
    drawViews_();
}

void TopBar::drawViews_()
{
    SceneView& view = viewer_.view();
    if (UI::toolButton(tr("Fit")))
        view.fitAll();
    UI::tooltip(tr("Show the whole scene"), "F");
    ImGui::SameLine(0, UI::px(gap));
    const float projections = widthOfProjections();
    if (widthOfViews() + projections <= ImGui::GetContentRegionAvail().x)
        drawViewButtons_();
    else
        drawViewChoice_();
    ImGui::SameLine(0, 0);
    // The key of the projection works in the narrowest window too.
    if (projections <= ImGui::GetContentRegionAvail().x)
        drawProjections_();
    else
        ImGui::NewLine();
}

void TopBar::drawViewButtons_()
{
    for (const ViewButton& button : viewButtons)
    {
        if (&button != &viewButtons.front())
            ImGui::SameLine(0, UI::px(gap));
        if (UI::toolButton(tr(button.label)))
            viewer_.view().showFrom(button.view);
        UI::tooltip(tr(button.tooltip), button.shortcut);
    }
}

void TopBar::drawViewChoice_()
{
    std::vector<std::string> names{tr("View")};
    for (const ViewButton& button : viewButtons)
        names.push_back(tr(button.label));
    int chosen = 0;
    ImGui::SetNextItemWidth(UI::px(choiceWidth));
    if (UI::combo("##view", chosen, names))
        viewer_.view().showFrom(viewButtons.at(static_cast<std::size_t>(chosen) - 1).view);
}

void TopBar::drawProjections_()
{
    SceneView& view = viewer_.view();
    separator();
    const bool orthographic = view.camera().projection() == Projection::Orthographic;
    if (UI::toolButton(tr("Perspective"), !orthographic) && orthographic)
        view.toggleProjection();
    UI::tooltip(tr("Near things look larger"), "Alt+5");
    ImGui::SameLine(0, UI::px(gap));
    if (UI::toolButton(tr("Orthographic"), orthographic) && !orthographic)
        view.toggleProjection();
    UI::tooltip(tr("Parallel lines stay parallel"), "Alt+5");
}

} // namespace VX
