#include "SceneTreePanel.h"

#include "Translate.h"
#include "panels/ObjectRename.h"

#include <VXMesh/VisualObject.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr float rowHeight = 28;
constexpr float indentWidth = 16;
constexpr float iconSide = 16;
constexpr float swatchSide = 10;

/// In so many frames the field of a name gets the keyboard, or does without.
constexpr int maxFocusTries = 8;

ImU32 colorOf(Color color)
{
    return IM_COL32(color.r, color.g, color.b, 255);
}

std::string nameOf(const Object& object)
{
    return object.name().empty() ? tr("Unnamed") : object.name();
}

const char* iconOf(const Object& object)
{
    if (object.typeName() == "ObjectMesh")
        return "cube";
    if (object.typeName() == "ObjectPoints")
        return "grain";
    return object.typeName() == "ObjectLines" ? "line" : "folder";
}

void drawCentered(const char* icon, float side, ImU32 color)
{
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    UI::drawIcon(*ImGui::GetWindowDrawList(), icon, {(min.x + max.x) / 2, (min.y + max.y) / 2}, side, color);
}

} // namespace

SceneTreePanel::SceneTreePanel(Viewer& viewer, std::function<void()> openContextMenu)
    : viewer_(viewer)
    , openContextMenu_(std::move(openContextMenu))
{
}

void SceneTreePanel::rename(const std::shared_ptr<Object>& object)
{
    filter_.clear();
    renamed_ = object;
    newName_ = object->name();
    focusTries_ = maxFocusTries;
    rows_.expandTo(*object);
    revealed_ = object->id();
    viewer_.incrementForceRedrawFrames(3);
}

void SceneTreePanel::draw()
{
    if (revision_ != viewer_.scene().revision())
    {
        revision_ = viewer_.scene().revision();
        revealSelected_();
    }
    drawSearch_();
    rows_.setFilter(filter_);
    rows_.update(viewer_.scene());
    ImGui::BeginChild("##rows", {0, 0}, 0, ImGuiWindowFlags_NavFlattened);
    if (rows_.rows().empty())
        UI::secondaryText(filter_.empty() ? tr("No objects") : tr("Nothing found"));
    drawRows_();
    ImGui::EndChild();
}

void SceneTreePanel::drawSearch_()
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const float width = ImGui::GetContentRegionAvail().x;
    const float clear = filter_.empty() ? 0 : UI::px(rowHeight);
    ImGui::SetNextItemWidth(width - clear);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(UI::px(28), ImGui::GetStyle().FramePadding.y));
    UI::inputText("##search", filter_,
                  {.limit = 256, .hint = tr("Search"), .flags = ImGuiInputTextFlags_EscapeClearsAll});
    ImGui::PopStyleVar();
    const float height = ImGui::GetItemRectSize().y;
    UI::drawIcon(*ImGui::GetWindowDrawList(), "search", {min.x + UI::px(14), min.y + height / 2}, UI::px(iconSide),
                 UI::color(UI::Color::SecondaryText));
    if (clear <= 0)
        return;
    ImGui::SameLine(0, 0);
    if (UI::iconButton("x", tr("Clear the search")))
        filter_.clear();
}

void SceneTreePanel::drawRows_()
{
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    if (const auto line = revealed_ != 0 ? rows_.find(std::exchange(revealed_, 0)) : std::nullopt)
        scrollTo_(*line);
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(rows_.rows().size()), UI::px(rowHeight));
    while (clipper.Step())
    {
        for (int i = clipper.DisplayStart; i < clipper.DisplayEnd; ++i)
            drawRow_(rows_.rows()[static_cast<std::size_t>(i)]);
    }
    ImGui::PopStyleVar();
}

void SceneTreePanel::scrollTo_(std::size_t line) const
{
    const float height = UI::px(rowHeight);
    const float top = static_cast<float>(line) * height;
    const float scroll = ImGui::GetScrollY();
    if (top < scroll || top + height > scroll + ImGui::GetWindowHeight())
        ImGui::SetScrollY(std::max(0.0F, top - ImGui::GetWindowHeight() / 2));
}

/// One object that was selected elsewhere, as by a click in the scene, is unfolded and brought into view.
void SceneTreePanel::revealSelected_()
{
    const std::vector<std::shared_ptr<Object>> selected = selectedObjects(viewer_.scene());
    if (selected.size() != 1 || selected.front()->id() == anchor_)
        return;
    anchor_ = selected.front()->id();
    revealed_ = anchor_;
    rows_.expandTo(*selected.front());
}

void SceneTreePanel::drawRow_(const SceneRow& row)
{
    Object& object = *row.object;
    ImGui::PushID(&object);
    const ImVec2 start = ImGui::GetCursorPos();
    const ImVec2 screen = ImGui::GetCursorScreenPos();
    const float width = ImGui::GetContentRegionAvail().x;
    const float height = UI::px(rowHeight);
    const float indent = UI::px(indentWidth) * static_cast<float>(row.depth);
    const float labelX = indent + (rows_.hasGroups() ? height : 0);
    const float eyeX = width - height;

    ImDrawList* draw = ImGui::GetWindowDrawList();
    const ImVec2 end(screen.x + width, screen.y + height);
    if (object.isSelected())
        draw->AddRectFilled(screen, end, ImGui::GetColorU32(ImGuiCol_Header), UI::px(4));
    else if (ImGui::IsWindowHovered() && ImGui::IsMouseHoveringRect(screen, end))
        draw->AddRectFilled(screen, end, UI::color(UI::Color::RaisedHovered), UI::px(4));
    drawArrow_(object, indent);
    ImGui::SetCursorPos({start.x + labelX, start.y});
    if (renamed_.lock().get() == &object)
        drawNameField_(object, screen.x + labelX, screen.x + eyeX);
    else
        drawLabel_(object, screen.x + labelX, screen.x + eyeX);
    ImGui::SetCursorPos({start.x + eyeX, start.y});
    drawEye_(object);
    ImGui::SetCursorPos({start.x, start.y + height});
    ImGui::PopID();
}

void SceneTreePanel::drawLabel_(Object& object, float left, float right)
{
    const float height = UI::px(rowHeight);
    const float top = ImGui::GetCursorScreenPos().y;
    if (ImGui::InvisibleButton("##row", {std::max(height, right - left), height}))
        pressed_(object);
    // With Ctrl or Shift it is two changes of the selection.
    const bool isPlain = ImGui::GetIO().KeyMods == ImGuiMod_None;
    if (isPlain && ImGui::IsItemHovered() && ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left))
        rename(object.shared_from_this());
    if (ImGui::IsItemClicked(ImGuiMouseButton_Right))
    {
        if (!object.isSelected())
            selectOnly(viewer_.scene(), &object);
        anchor_ = object.id();
        openContextMenu_();
    }
    const std::string name = nameOf(object);
    UI::record(UiKind::TreeRow, name, object.isSelected() ? "selected" : "");

    ImDrawList* draw = ImGui::GetWindowDrawList();
    const ImU32 color = UI::color(object.isVisible() ? UI::Color::Text : UI::Color::SecondaryText);
    const float iconWidth = UI::px(iconSide);
    UI::drawIcon(*draw, iconOf(object), {left + UI::px(4) + iconWidth / 2, top + height / 2}, iconWidth, color);
    const float textLeft = left + UI::px(4) + iconWidth + UI::px(8);
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
    {
        const float side = UI::px(swatchSide);
        right -= side + UI::px(8);
        const float swatchTop = top + std::floor((height - side) / 2);
        draw->AddRectFilled({right, swatchTop}, {right + side, swatchTop + side}, colorOf(visual->color()), UI::px(2));
    }
    const std::string shown = UI::elided(name, right - UI::px(8) - textLeft);
    draw->AddText({textLeft, top + std::floor((height - ImGui::GetTextLineHeight()) / 2)}, color, shown.c_str());
    if (shown != name)
        UI::tooltip(name);
}

/// The text stands where the name stood.
void SceneTreePanel::drawNameField_(const Object& object, float left, float right)
{
    const ImVec2 start = ImGui::GetCursorScreenPos();
    const float height = UI::px(rowHeight);
    const float side = UI::px(iconSide);
    UI::drawIcon(*ImGui::GetWindowDrawList(), iconOf(object), {left + UI::px(4) + side / 2, start.y + height / 2}, side,
                 UI::color(UI::Color::Text));
    const float fieldLeft = left + UI::px(4) + side + UI::px(4);
    ImGui::SetCursorScreenPos({fieldLeft, start.y});
    // A window that gets the focus in the same frame, as after a pop-up has closed, takes it away again.
    if (focusTries_ > 0)
    {
        --focusTries_;
        // Only within the window that has the focus can the keyboard be given to an item.
        ImGui::SetWindowFocus();
        ImGui::SetKeyboardFocusHere();
        // This frame counts as one of them.
        viewer_.incrementForceRedrawFrames(2);
    }
    ImGui::SetNextItemWidth(right - fieldLeft);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(UI::px(4), ImGui::GetStyle().FramePadding.y));
    const bool entered =
        ImGui::InputText("##name", &newName_, ImGuiInputTextFlags_EnterReturnsTrue | ImGuiInputTextFlags_AutoSelectAll);
    ImGui::PopStyleVar();
    if (ImGui::IsItemActive())
        focusTries_ = 0;
    UI::record(UiKind::TextInput, tr("Name"), newName_);
    if (entered)
        endRename_(true);
    else if (ImGui::IsItemDeactivated())
        endRename_(!ImGui::IsKeyPressed(ImGuiKey_Escape, false));
}

void SceneTreePanel::endRename_(bool keep)
{
    if (const std::shared_ptr<Object> object = std::exchange(renamed_, {}).lock(); object && keep)
        renameObject(viewer_, object, newName_);
}

void SceneTreePanel::drawArrow_(const Object& object, float indent)
{
    if (object.children().empty())
        return;
    const float size = UI::px(rowHeight);
    const bool expanded = rows_.isExpanded(object);
    ImGui::SetCursorPosX(ImGui::GetCursorPosX() + indent);
    if (ImGui::InvisibleButton("##arrow", {size, size}))
        rows_.setExpanded(object, !expanded);
    UI::record(UiKind::Button, trf(expanded ? translatable("Fold {}") : translatable("Unfold {}"), nameOf(object)));
    const UI::Color color = ImGui::IsItemHovered() ? UI::Color::Text : UI::Color::SecondaryText;
    drawCentered(expanded ? "chevron-down" : "chevron-right", UI::px(iconSide), UI::color(color));
}

void SceneTreePanel::drawEye_(Object& object)
{
    const float size = UI::px(rowHeight);
    if (ImGui::InvisibleButton("##eye", {size, size}))
        toggleVisibility_(object);
    UI::record(UiKind::Checkbox, trf("Show {}", nameOf(object)), object.isVisible() ? "on" : "off");
    const UI::Color color = ImGui::IsItemHovered() ? UI::Color::Text : UI::Color::SecondaryText;
    drawCentered(object.isVisible() ? "eye" : "eye-off", UI::px(iconSide), UI::color(color));
    UI::tooltip(object.isVisible() ? tr("Hide") : tr("Show"));
}

void SceneTreePanel::toggleVisibility_(Object& object)
{
    SceneEdit edit(*viewer_.getGlobalHistoryStore(), object.isVisible() ? translatable("Hide") : translatable("Show"));
    edit.touch(object.shared_from_this());
    object.setVisible(!object.isVisible());
}

void SceneTreePanel::pressed_(Object& object)
{
    const ImGuiIO& io = ImGui::GetIO();
    const std::optional<std::size_t> anchor = rows_.find(anchor_);
    const std::optional<std::size_t> line = rows_.find(object.id());
    if (io.KeyShift && anchor && line)
    {
        if (!io.KeyCtrl)
            selectOnly(viewer_.scene(), nullptr);
        const auto [first, last] = std::minmax(*anchor, *line);
        for (std::size_t i = first; i <= last; ++i)
            rows_.rows()[i].object->setSelected(true);
        return;
    }
    if (io.KeyCtrl)
        object.setSelected(!object.isSelected());
    else
        selectOnly(viewer_.scene(), &object);
    anchor_ = object.id();
}

} // namespace VX
