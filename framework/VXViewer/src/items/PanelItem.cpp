#include "PanelItem.h"

#include "menu/Translate.h"
#include "ui/UiDrawing.h"

#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <cfloat>
#include <utility>

namespace VX
{

namespace
{

constexpr float margin = 12;

constexpr ImGuiWindowFlags flags =
    ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoSavedSettings;

} // namespace

PanelItem::PanelItem(std::string name, Viewer& viewer, Look look)
    : RibbonMenuItem(std::move(name))
    , owner_(viewer)
    , look_(look)
{
}

void PanelItem::press()
{
    if (open_)
    {
        close_();
        return;
    }
    open_ = true;
    appearing_ = true;
    owner_.incrementForceRedrawFrames(2);
    opened_();
}

void PanelItem::deactivate()
{
    close_();
}

void PanelItem::close_()
{
    if (!std::exchange(open_, false))
        return;
    owner_.incrementForceRedrawFrames(2);
    closed_();
}

void PanelItem::drawPanel()
{
    const PixelRect& scene = owner_.view().area();
    ImGui::SetNextWindowPos(
        {static_cast<float>(scene.x) + UI::px(margin), static_cast<float>(scene.y) + UI::px(margin)},
        ImGuiCond_Appearing);
    const float width = UI::px(look_.width);
    ImGui::SetNextWindowSizeConstraints({width, 0}, {width, FLT_MAX});
    if (std::exchange(appearing_, false))
        ImGui::SetNextWindowFocus();
    bool open = true;
    const std::string title = fmt::format("{}###{}", tr(look_.title), name());
    if (UI::beginWindow(title.c_str(), flags, &open))
    {
        UI::keepInside();
        drawContent_();
        open = !UI::escapePressed() && open;
    }
    UI::endWindow();
    if (!open)
        close_();
}

} // namespace VX
