#include "ObjectColorItem.h"

#include "ColorField.h"
#include "LastingEdit.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <utility>

namespace VX
{

namespace
{

constexpr float panelWidth = 260;
constexpr float fieldWidth = 140;
constexpr int percent = 100;
constexpr int opaque = 255;

int transparencyOf(Color color)
{
    return ((opaque - color.a) * percent + opaque / 2) / opaque;
}

std::uint8_t alphaOf(int transparency)
{
    return static_cast<std::uint8_t>(opaque - (transparency * opaque + percent / 2) / percent);
}

} // namespace

ObjectColorItem::ObjectColorItem(Viewer& viewer, std::shared_ptr<SceneSummary> scene)
    : PanelItem("Object Color", viewer, {translatable("Object Color"), panelWidth})
    , scene_(std::move(scene))
{
}

ObjectColorItem::~ObjectColorItem() = default;

std::string ObjectColorItem::unavailableReason() const
{
    // An open window can be closed.
    return isActive() ? std::string() : scene_->needsSelectedColors();
}

std::vector<std::shared_ptr<VisualObject>> ObjectColorItem::targets_() const
{
    std::vector<std::shared_ptr<VisualObject>> targets;
    for (const std::shared_ptr<Object>& selected : topmostSelectedObjects(viewer_().scene()))
    {
        visitObjects(*selected,
                     [&](Object& object)
                     {
                         if (dynamic_cast<VisualObject*>(&object))
                             targets.push_back(std::static_pointer_cast<VisualObject>(object.shared_from_this()));
                     });
    }
    return targets;
}

void ObjectColorItem::change_(const std::vector<std::shared_ptr<VisualObject>>& targets,
                              const std::function<Color(Color)>& newColor)
{
    if (!edit_)
        edit_ = std::make_unique<LastingEdit>(*viewer_().getGlobalHistoryStore(), translatable("Object Color"));
    for (const std::shared_ptr<VisualObject>& target : targets)
    {
        edit_->touch(target);
        target->setColor(newColor(target->color()));
    }
}

void ObjectColorItem::drawContent_()
{
    const std::vector<std::shared_ptr<VisualObject>> targets = targets_();
    if (targets.empty())
    {
        UI::secondaryText(tr("No object is selected."));
    }
    else
    {
        Color color = targets.front()->color();
        int transparency = transparencyOf(color);
        ImGui::SetNextItemWidth(UI::px(fieldWidth));
        if (colorField(tr("Color"), color))
            change_(targets, [&](Color old) { return Color{color.r, color.g, color.b, old.a}; });
        ImGui::SetNextItemWidth(UI::px(fieldWidth));
        if (UI::sliderInt(tr("Transparency"), transparency, 0, percent, "%"))
            change_(targets, [&](Color old) { return Color{old.r, old.g, old.b, alphaOf(transparency)}; });
        if (UI::button(tr("Reset")))
            change_(targets, [](Color) { return VisualObject::defaultColor(); });
        UI::tooltip(tr("Gives the objects the color that new ones have"));
    }
    if (edit_ && !ImGui::IsAnyItemActive())
        edit_.reset();
}

void ObjectColorItem::closed_()
{
    edit_.reset();
}

} // namespace VX
