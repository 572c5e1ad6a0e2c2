#include "Overlays.h"

#include "MouseControls.h"
#include "SceneFacts.h"
#include "Translate.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>

namespace VX
{

namespace
{

constexpr float smallestSide = 320;
constexpr float margin = 12;

constexpr ImGuiWindowFlags overlayFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoInputs |
                                          ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoSavedSettings |
                                          ImGuiWindowFlags_NoFocusOnAppearing | ImGuiWindowFlags_NoBringToFrontOnFocus;

} // namespace

Overlay::Overlay(const char* name, int key, Corner corner)
    : name_(name)
    , key_(key)
    , corner_(corner)
{
}

void Overlay::init(Viewer* viewer)
{
    viewer_ = viewer;
    const auto& menu = viewer->getMenuPlugin();
    if (menu && menu->shortcutManager())
        menu->shortcutManager()->set({{key_, 0}, name_, ShortcutCategory::View, [this] { shown_ = !shown_; }});
}

void Overlay::shutdown()
{
    viewer_ = nullptr;
}

void Overlay::draw()
{
    if (!viewer_ || !shown_)
        return;
    const PixelRect& area = viewer_->view().area();
    if (static_cast<float>(std::min(area.width, area.height)) < UI::px(smallestSide))
        return;
    placeWindow_(area);
    UI::beginWindow(name_, overlayFlags);
    drawContent_(*viewer_);
    UI::endWindow();
}

void Overlay::placeWindow_(const PixelRect& area) const
{
    const bool left = corner_ == Corner::LowerLeft;
    const float x = static_cast<float>(left ? area.x : area.x + area.width) + (left ? UI::px(margin) : -UI::px(margin));
    const float y = static_cast<float>(area.y + area.height) - UI::px(margin);
    ImGui::SetNextWindowPos({x, y}, ImGuiCond_Always, {left ? 0.0F : 1.0F, 1});
    ImGui::SetNextWindowBgAlpha(0.8F);
}

FrameStatisticsOverlay::FrameStatisticsOverlay()
    : Overlay(translatable("Frame Statistics"), GLFW_KEY_F3, Corner::LowerRight)
{
}

void FrameStatisticsOverlay::drawContent_(const Viewer& viewer)
{
    const SceneStatistics statistics = viewer.view().statistics();
    UI::text(trf("Frames drawn: {}", countText(viewer.loop().framesDrawn())));
    UI::text(trf("Scene pictures drawn: {}", countText(statistics.frames)));
    UI::text(trf("Last frame: {:.1f} ms", viewer.loop().lastFrameSeconds() * 1000));
    UI::text(trf("Triangles in the last picture: {}", countText(statistics.triangles)));
}

MouseControlsOverlay::MouseControlsOverlay()
    : Overlay(translatable("Mouse Controls"), GLFW_KEY_F1, Corner::LowerLeft)
{
}

void MouseControlsOverlay::drawContent_(const Viewer&)
{
    drawMouseControls();
}

} // namespace VX
