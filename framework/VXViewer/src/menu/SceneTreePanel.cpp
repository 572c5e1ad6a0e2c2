#include "SceneTreePanel.h"

#include "Translate.h"

#include <VXMesh/VisualObject.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

constexpr float rowHeight = 28;
constexpr float indentWidth = 16;

/// A group with more children than this starts folded.
constexpr std::size_t maxChildrenExpanded = 40;

ImU32 colorOf(Color color)
{
    return IM_COL32(color.r, color.g, color.b, 255);
}

std::string nameOf(const Object& object)
{
    return object.name().empty() ? tr("Unnamed") : object.name();
}

void drawEyeIcon(ImVec2 center, bool open, ImU32 color)
{
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const float w = UI::px(14) / 2;
    const float h = UI::px(8) / 2;
    const float thickness = UI::scale() * 1.25F;
    const ImVec2 left(center.x - w, center.y);
    const ImVec2 right(center.x + w, center.y);
    draw->AddBezierQuadratic(left, {center.x, center.y - 2 * h}, right, color, thickness);
    draw->AddBezierQuadratic(left, {center.x, center.y + 2 * h}, right, color, thickness);
    if (open)
        draw->AddCircleFilled(center, UI::scale() * 2.25F, color);
    else
        draw->AddLine({center.x - w, center.y + h}, {center.x + w, center.y - h}, color, thickness);
}

} // namespace

SceneTreePanel::SceneTreePanel(Viewer& viewer)
    : viewer_(viewer)
{
}

void SceneTreePanel::draw()
{
    const Object& scene = viewer_.scene();
    for (const std::shared_ptr<Object>& child : scene.children())
    {
        if (known_.insert(child->id()).second && child->children().size() <= maxChildrenExpanded)
            expanded_.insert(child->id());
    }
    if (revision_ != scene.revision())
    {
        revision_ = scene.revision();
        revealSelected_();
    }
    rows_.clear();
    collectRows_(scene, 0);
    hasGroups_ =
        std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return !row.object->children().empty(); });
    if (rows_.empty())
        UI::secondaryText(tr("No objects"));

    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(rows_.size()), UI::px(rowHeight));
    const auto toShow = std::find_if(rows_.begin(), rows_.end(),
                                     [&](const Row& row) { return revealed_ != 0 && row.object->id() == revealed_; });
    if (toShow != rows_.end())
    {
        const float top = static_cast<float>(toShow - rows_.begin()) * UI::px(rowHeight);
        const float scroll = ImGui::GetScrollY();
        if (top < scroll || top + UI::px(rowHeight) > scroll + ImGui::GetWindowHeight())
            ImGui::SetScrollY(std::max(0.0F, top - ImGui::GetWindowHeight() / 2));
    }
    revealed_ = 0;
    while (clipper.Step())
    {
        for (int i = clipper.DisplayStart; i < clipper.DisplayEnd; ++i)
            drawRow_(rows_[static_cast<std::size_t>(i)]);
    }
    ImGui::PopStyleVar();
}

void SceneTreePanel::collectRows_(const Object& parent, int depth)
{
    for (const std::shared_ptr<Object>& child : parent.children())
    {
        rows_.push_back({child.get(), depth});
        if (expanded_.contains(child->id()))
            collectRows_(*child, depth + 1);
    }
}

/// One object that was selected elsewhere, as by a click in the scene, is unfolded and brought into view.
void SceneTreePanel::revealSelected_()
{
    const std::vector<std::shared_ptr<Object>> selected = selectedObjects(viewer_.scene());
    if (selected.size() != 1 || selected.front()->id() == anchor_)
        return;
    anchor_ = selected.front()->id();
    revealed_ = anchor_;
    for (const Object* above = selected.front()->parent(); above; above = above->parent())
        expanded_.insert(above->id());
}

void SceneTreePanel::drawRow_(const Row& row)
{
    Object& object = *row.object;
    ImGui::PushID(&object);
    const ImVec2 start = ImGui::GetCursorPos();
    const ImVec2 screen = ImGui::GetCursorScreenPos();
    const float width = ImGui::GetContentRegionAvail().x;
    const float height = UI::px(rowHeight);
    const float indent = UI::px(indentWidth) * static_cast<float>(row.depth);
    const float labelX = indent + (hasGroups_ ? height : 0);
    const float eyeX = width - height;

    ImDrawList* draw = ImGui::GetWindowDrawList();
    if (object.isSelected())
        draw->AddRectFilled(screen, {screen.x + width, screen.y + height}, ImGui::GetColorU32(ImGuiCol_Header),
                            UI::px(4));
    drawArrow_(object, indent);

    ImGui::SetCursorPos({start.x + labelX, start.y});
    const float labelWidth = std::max(UI::px(rowHeight), eyeX - labelX);
    if (ImGui::InvisibleButton("##row", {labelWidth, height}))
        pressed_(object);
    if (ImGui::IsItemHovered() && ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left))
        viewer_.view().fit({object.shared_from_this()});
    UI::record(UiKind::TreeRow, nameOf(object), object.isSelected() ? "selected" : "");
    if (ImGui::IsItemHovered() && !object.isSelected())
        draw->AddRectFilled(screen, {screen.x + width, screen.y + height}, UI::color(UI::Color::RaisedHovered),
                            UI::px(4));

    float textX = screen.x + labelX;
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
    {
        const float swatch = UI::px(10);
        const float top = screen.y + std::floor((height - swatch) / 2);
        draw->AddRectFilled({textX, top}, {textX + swatch, top + swatch}, colorOf(visual->color()), UI::px(2));
        textX += swatch + UI::px(8);
    }
    const std::string name = nameOf(object);
    const std::string shown = UI::elided(name, screen.x + eyeX - textX - UI::px(4));
    const float textY = screen.y + std::floor((height - ImGui::GetTextLineHeight()) / 2);
    const UI::Color textColor = object.isVisible() ? UI::Color::Text : UI::Color::SecondaryText;
    draw->AddText({textX, textY}, UI::color(textColor), shown.c_str());
    if (shown != name)
        UI::tooltip(name);

    ImGui::SetCursorPos({start.x + eyeX, start.y});
    drawEye_(object);
    ImGui::SetCursorPos({start.x, start.y + height});
    ImGui::PopID();
}

void SceneTreePanel::drawArrow_(const Object& object, float indent)
{
    if (object.children().empty())
        return;
    const float size = UI::px(rowHeight);
    const bool expanded = expanded_.contains(object.id());
    ImGui::SetCursorPosX(ImGui::GetCursorPosX() + indent);
    const ImVec2 min = ImGui::GetCursorScreenPos();
    if (ImGui::InvisibleButton("##arrow", {size, size}))
    {
        if (expanded)
            expanded_.erase(object.id());
        else
            expanded_.insert(object.id());
    }
    UI::record(UiKind::Button, trf(expanded ? "Fold {}" : "Unfold {}", nameOf(object)));
    const UI::Color color = ImGui::IsItemHovered() ? UI::Color::Text : UI::Color::SecondaryText;
    const ImVec2 center(min.x + size / 2, min.y + size / 2);
    const float r = UI::px(4);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const float thickness = UI::scale() * 1.5F;
    const ImVec2 tip = expanded ? ImVec2(center.x, center.y + r / 2) : ImVec2(center.x + r / 2, center.y);
    const ImVec2 from = expanded ? ImVec2(center.x - r, center.y - r / 2) : ImVec2(center.x - r / 2, center.y - r);
    const ImVec2 to = expanded ? ImVec2(center.x + r, center.y - r / 2) : ImVec2(center.x - r / 2, center.y + r);
    draw->AddLine(from, tip, UI::color(color), thickness);
    draw->AddLine(tip, to, UI::color(color), thickness);
}

void SceneTreePanel::drawEye_(Object& object)
{
    const float size = UI::px(rowHeight);
    const ImVec2 min = ImGui::GetCursorScreenPos();
    if (ImGui::InvisibleButton("##eye", {size, size}))
        object.setVisible(!object.isVisible());
    UI::record(UiKind::Checkbox, trf("Show {}", nameOf(object)), object.isVisible() ? "on" : "off");
    const UI::Color color = ImGui::IsItemHovered() ? UI::Color::Text : UI::Color::SecondaryText;
    drawEyeIcon({min.x + size / 2, min.y + size / 2}, object.isVisible(), UI::color(color));
    UI::tooltip(object.isVisible() ? tr("Hide") : tr("Show"));
}

void SceneTreePanel::pressed_(Object& object)
{
    const ImGuiIO& io = ImGui::GetIO();
    const auto rowOf = [&](std::uint64_t id)
    { return std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.object->id() == id; }); };
    const auto anchor = rowOf(anchor_);
    if (io.KeyShift && anchor != rows_.end())
    {
        auto first = anchor;
        auto last = rowOf(object.id());
        if (last < first)
            std::swap(first, last);
        if (!io.KeyCtrl)
            selectOnly(viewer_.scene(), nullptr);
        std::for_each(first, last + 1, [](const Row& row) { row.object->setSelected(true); });
        return;
    }
    if (io.KeyCtrl)
        object.setSelected(!object.isSelected());
    else
        selectOnly(viewer_.scene(), &object);
    anchor_ = object.id();
}

} // namespace VX
