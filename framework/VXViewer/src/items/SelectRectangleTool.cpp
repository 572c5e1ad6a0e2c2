#include "SelectRectangleTool.h"

#include "FaceSelectionEdit.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <GLFW/glfw3.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr float panelWidth = 240;
constexpr float fillStrength = 0.18F;

/// The pixels between two points, at least one.
PixelRect pixelsBetween(const Vector2f& a, const Vector2f& b)
{
    const Vector2f least = a.cwiseMin(b);
    const Vector2f greatest = a.cwiseMax(b);
    const int x = static_cast<int>(std::floor(least.x()));
    const int y = static_cast<int>(std::floor(least.y()));
    return {x, y, static_cast<int>(std::floor(greatest.x())) - x + 1,
            static_cast<int>(std::floor(greatest.y())) - y + 1};
}

} // namespace

SelectRectangleTool::SelectRectangleTool(Viewer& viewer, std::shared_ptr<SceneSummary> scene)
    : SceneTool("Select Rectangle", viewer, {translatable("Select Rectangle"), panelWidth})
    , scene_(std::move(scene))
{
}

std::string SelectRectangleTool::unavailableReason() const
{
    return isActive() ? std::string() : scene_->needsMeshes();
}

void SelectRectangleTool::drawContent_()
{
    UI::secondaryText(tr("Drag over the faces to select."));
    drawFaceSelectionFacts(viewer_());
}

void SelectRectangleTool::ended_()
{
    drag_.reset();
}

bool SelectRectangleTool::handleInput_(const InputEvent& event)
{
    if (const auto* button = std::get_if<MouseButtonEvent>(&event))
        return handleButton_(*button);
    if (const auto* move = std::get_if<MouseMoveEvent>(&event); move && drag_)
    {
        drag_->to = move->position;
        viewer_().incrementForceRedrawFrames();
        return true;
    }
    if (std::holds_alternative<FocusEvent>(event))
        drag_.reset();
    return false;
}

bool SelectRectangleTool::handleButton_(const MouseButtonEvent& event)
{
    const bool left = event.button == GLFW_MOUSE_BUTTON_LEFT;
    if (!drag_)
    {
        if (!event.pressed || !left || (event.mods & GLFW_MOD_ALT) != 0 || viewer_().view().isOnCube(event.position))
            return false;
        drag_ = {event.position, event.position};
        return true;
    }
    if (event.pressed || !left)
        return true;
    const Drag drag = *drag_;
    drag_.reset();
    viewer_().incrementForceRedrawFrames();
    selectFaces(viewer_(), translatable("Select Rectangle"),
                viewer_().view().visibleFaces(pixelsBetween(drag.from, event.position)), faceSelectionMode(event.mods));
    return true;
}

void SelectRectangleTool::drawOverScene_()
{
    if (!drag_)
        return;
    const PixelRect& scene = viewer_().view().area();
    ImDrawList& draw = *ImGui::GetBackgroundDrawList();
    const ImVec2 least(std::min(drag_->from.x(), drag_->to.x()), std::min(drag_->from.y(), drag_->to.y()));
    const ImVec2 greatest(std::max(drag_->from.x(), drag_->to.x()), std::max(drag_->from.y(), drag_->to.y()));
    draw.PushClipRect({static_cast<float>(scene.x), static_cast<float>(scene.y)},
                      {static_cast<float>(scene.x + scene.width), static_cast<float>(scene.y + scene.height)});
    ImVec4 fill = UI::colorVec(UI::Color::Accent);
    fill.w = fillStrength;
    draw.AddRectFilled(least, greatest, ImGui::ColorConvertFloat4ToU32(fill));
    draw.AddRect(least, greatest, UI::color(UI::Color::Accent), 0, 0, UI::px(1));
    draw.PopClipRect();
}

} // namespace VX
