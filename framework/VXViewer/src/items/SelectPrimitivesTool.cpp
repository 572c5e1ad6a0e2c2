#include "SelectPrimitivesTool.h"

#include "LastingEdit.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <GLFW/glfw3.h>

#include <utility>

namespace VX
{

namespace
{

constexpr float panelWidth = 240;
constexpr float sliderWidth = 120;
constexpr float usualTolerance = 20;
constexpr float smallestTolerance = 1;
constexpr float largestTolerance = 90;

/// A press that moves farther is a drag, in units of the design.
constexpr float clickReach = 4;

} // namespace

SelectPrimitivesTool::SelectPrimitivesTool(Viewer& viewer, std::shared_ptr<SceneSummary> scene)
    : SceneTool("Select Primitives", viewer, {translatable("Select Primitives"), panelWidth})
    , scene_(std::move(scene))
    , tolerance_(usualTolerance)
{
}

SelectPrimitivesTool::~SelectPrimitivesTool() = default;

std::string SelectPrimitivesTool::unavailableReason() const
{
    return isActive() ? std::string() : scene_->needsMeshes();
}

void SelectPrimitivesTool::drawContent_()
{
    const bool busy = !picking_.expired() || finder_.isBusy();
    UI::secondaryText(busy ? tr("Looking for the region.") : tr("Click a face to select its region."));
    ImGui::SetNextItemWidth(UI::px(sliderWidth));
    if (UI::slider(tr("Angle tolerance"), tolerance_, smallestTolerance, largestTolerance, {"\u00B0", 0}))
        regrow_();
    UI::tooltip(tr("A region ends where its surface turns by more than this"));
    drawFaceSelectionFacts(viewer_());
    if (edit_ && !ImGui::IsAnyItemActive() && !finder_.isBusy())
        edit_.reset();
}

void SelectPrimitivesTool::ended_()
{
    finder_.clear();
    edit_.reset();
    seed_.reset();
    life_.reset();
    // The release will not come to the tool any more, and so not to the view.
    if (std::exchange(press_, std::nullopt) && dragging_)
        viewer_().view().cancelDrag();
}

bool SelectPrimitivesTool::handleInput_(const InputEvent& event)
{
    if (const auto* button = std::get_if<MouseButtonEvent>(&event))
        return handleButton_(*button);
    if (const auto* move = std::get_if<MouseMoveEvent>(&event))
        return handleMove_(*move);
    if (std::holds_alternative<FocusEvent>(event))
        press_.reset();
    return false;
}

bool SelectPrimitivesTool::handleButton_(const MouseButtonEvent& event)
{
    SceneView& view = viewer_().view();
    const bool left = event.button == GLFW_MOUSE_BUTTON_LEFT;
    if (!press_)
    {
        if (!event.pressed || !left || event.clicks > 1 || (event.mods & GLFW_MOD_ALT) != 0 ||
            view.isOnCube(event.position))
            return false;
        press_ = event;
        dragging_ = false;
        return true;
    }
    if (dragging_)
        view.handle(event);
    if (!event.pressed && left)
    {
        const MouseButtonEvent press = *std::exchange(press_, std::nullopt);
        if (!dragging_)
            click_(press);
    }
    return true;
}

bool SelectPrimitivesTool::handleMove_(const MouseMoveEvent& event)
{
    if (!press_)
        return false;
    SceneView& view = viewer_().view();
    if (!dragging_ && (event.position - press_->position).norm() > UI::px(clickReach))
    {
        dragging_ = true;
        view.handle(*press_);
    }
    if (dragging_)
        view.handle(event);
    return true;
}

void SelectPrimitivesTool::click_(const MouseButtonEvent& press)
{
    edit_.reset();
    seed_.reset();
    life_ = std::make_shared<int>();
    const auto pick = std::make_shared<int>();
    picking_ = pick;
    viewer_().view().pick(press.position,
                          [this, pick, life = std::weak_ptr(life_),
                           mode = faceSelectionMode(press.mods)](const std::optional<PickResult>& hit)
                          {
                              if (!life.expired())
                                  take_(hit, mode);
                          });
}

void SelectPrimitivesTool::take_(const std::optional<PickResult>& hit, FaceSelectionMode mode)
{
    const auto object = std::dynamic_pointer_cast<ObjectMesh>(hit ? hit->object.lock() : nullptr);
    // The mesh may be another one than when the search began.
    if (!object || !object->mesh() || hit->element >= object->mesh()->triangles.size())
    {
        if (mode == FaceSelectionMode::Replace)
            selectFaces(viewer_(), translatable("Select Primitives"), {}, mode);
        return;
    }
    seed_ = {object, object->mesh(), hit->element, mode, object->selectedFaces(), object->selectedFaces(), false};
    grow_();
}

void SelectPrimitivesTool::grow_()
{
    finder_.find(seed_->mesh, seed_->face, static_cast<double>(tolerance_),
                 [this](const FaceSet& region)
                 {
                     if (seed_ && seed_->selected)
                         replace_(region);
                     else
                         select_(region);
                 });
}

void SelectPrimitivesTool::select_(const FaceSet& region)
{
    const std::shared_ptr<ObjectMesh> object = seed_ ? seed_->object.lock() : nullptr;
    if (!object || object->mesh() != seed_->mesh)
        return;
    seed_->before = object->selectedFaces();
    selectFaces(viewer_(), translatable("Select Primitives"), {{object.get(), region}}, seed_->mode);
    seed_->shown = object->selectedFaces();
    seed_->selected = true;
}

void SelectPrimitivesTool::regrow_()
{
    const std::shared_ptr<ObjectMesh> object = seed_ ? seed_->object.lock() : nullptr;
    if (!object || object->mesh() != seed_->mesh || object->selectedFaces() != seed_->shown)
    {
        seed_.reset();
        return;
    }
    grow_();
}

void SelectPrimitivesTool::replace_(const FaceSet& region)
{
    const std::shared_ptr<ObjectMesh> object = seed_ ? seed_->object.lock() : nullptr;
    if (!object || object->mesh() != seed_->mesh || object->selectedFaces() != seed_->shown)
        return;
    if (!edit_)
        edit_ = std::make_unique<LastingEdit>(*viewer_().getGlobalHistoryStore(), translatable("Select Primitives"));
    edit_->touch(object);
    object->setSelectedFaces(combineFaces(seed_->before, region, seed_->mode));
    seed_->shown = object->selectedFaces();
}

} // namespace VX
