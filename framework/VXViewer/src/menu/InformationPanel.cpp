#include "InformationPanel.h"

#include "Translate.h"

#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

std::string typeText(const Object& object)
{
    if (object.typeName() == "ObjectMesh")
        return tr("Mesh");
    if (object.typeName() == "ObjectPoints")
        return tr("Point cloud");
    return object.typeName() == "ObjectLines" ? tr("Lines") : tr("Group");
}

std::string vectorText(const Vector3d& v)
{
    return lengthText(v.x()) + ",  " + lengthText(v.y()) + ",  " + lengthText(v.z());
}

void row(const std::string& name, const std::string& value)
{
    const float start = ImGui::GetCursorPosX();
    UI::secondaryText(name);
    ImGui::SameLine(start + UI::px(88));
    UI::text(UI::elided(value, ImGui::GetContentRegionAvail().x));
}

void countRow(const std::string& name, std::uint64_t count)
{
    if (count > 0)
        row(name, countText(count));
}

} // namespace

InformationPanel::InformationPanel(Viewer& viewer)
    : viewer_(viewer)
{
}

void InformationPanel::update_()
{
    const std::vector<std::shared_ptr<Object>> selected = selectedObjects(viewer_.scene());
    facts_ = {};
    type_.clear();
    if (selected.empty())
    {
        title_ = tr("Whole scene");
        facts_.add(viewer_.scene());
        return;
    }
    title_ = selected.size() == 1 ? selected.front()->name() : trf("{} selected", selected.size());
    if (selected.size() == 1)
        type_ = typeText(*selected.front());
    for (const std::shared_ptr<Object>& object : selected)
    {
        const Object* above = object->parent();
        while (above && !above->isSelected())
            above = above->parent();
        // What lies below a selected object is counted with it.
        if (!above)
            facts_.add(*object);
    }
}

void InformationPanel::draw()
{
    if (revision_ != viewer_.scene().revision())
    {
        revision_ = viewer_.scene().revision();
        update_();
    }
    if (viewer_.scene().children().empty())
        return;
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(UI::px(8), UI::px(4)));
    {
        const UI::ScopedFont semiBold(UI::Font::SemiBold);
        UI::text(UI::elided(title_, ImGui::GetContentRegionAvail().x));
    }
    if (!type_.empty())
        row(tr("Type"), type_);
    if (facts_.objects > 1)
        countRow(tr("Objects"), facts_.objects);
    countRow(tr("Triangles"), facts_.triangles);
    countRow(tr("Vertices"), facts_.vertices);
    countRow(tr("Points"), facts_.points);
    countRow(tr("Segments"), facts_.segments);
    if (!facts_.box.isEmpty())
    {
        const Vector3d size = facts_.box.sizes();
        row(tr("Size"), lengthText(size.x()) + " \u00D7 " + lengthText(size.y()) + " \u00D7 " + lengthText(size.z()));
        row(tr("Minimum"), vectorText(facts_.box.min()));
        row(tr("Maximum"), vectorText(facts_.box.max()));
    }
    ImGui::PopStyleVar();
}

} // namespace VX
