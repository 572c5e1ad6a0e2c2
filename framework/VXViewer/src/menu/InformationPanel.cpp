#include "InformationPanel.h"

#include "Translate.h"

#include <VXMesh/FaceSet.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <utility>

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
    return object.typeName() == "ObjectLines" ? tr("Lines") : trc("object", "Group");
}

std::string titleText(const std::vector<std::shared_ptr<Object>>& selected)
{
    if (selected.empty())
        return tr("Whole scene");
    if (selected.size() > 1)
        return trf("{} selected", countText(selected.size()));
    return selected.front()->name().empty() ? tr("Unnamed") : selected.front()->name();
}

std::string vectorText(const Vector3d& v)
{
    // A comma within the numbers cannot stand between them as well.
    const std::string between = numberSigns().decimal == ',' ? ";  " : ",  ";
    return lengthText(v.x()) + between + lengthText(v.y()) + between + lengthText(v.z());
}

void row(const std::string& name, const std::string& value)
{
    const float start = ImGui::GetCursorPosX();
    UI::secondaryText(name);
    ImGui::SameLine(start + std::max(UI::px(88), ImGui::CalcTextSize(name.c_str()).x + UI::px(8)));
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
    selected_ = selectedObjects(viewer_.scene());
    facts_ = {};
    selectedFaces_ = 0;
    visitObjects(std::as_const(viewer_.scene()),
                 [this](const Object& object)
                 {
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object); mesh && mesh->selectedFaces())
                         selectedFaces_ += mesh->selectedFaces()->count();
                 });
    measure_();
    if (selected_.empty())
        facts_.add(viewer_.scene());
    for (const std::shared_ptr<Object>& object : selected_)
    {
        const Object* above = object->parent();
        while (above && !above->isSelected())
            above = above->parent();
        // What lies below a selected object is counted with it.
        if (!above)
            facts_.add(*object);
    }
}

/// Has a worker measure the one mesh that is selected, unless that was done.
void InformationPanel::measure_()
{
    const auto* mesh = selected_.size() == 1 ? dynamic_cast<const ObjectMesh*>(selected_.front().get()) : nullptr;
    if (!mesh || !mesh->mesh())
    {
        measured_.reset();
        return;
    }
    const Measured wanted{mesh->mesh(), mesh->worldTransform()};
    if (measured_ && measured_->of.mesh == wanted.mesh && measured_->of.toScene.linear() == wanted.toScene.linear())
        return;
    measured_ = std::make_shared<Measure>(Measure{wanted, std::nullopt});
    worker_.start(
        [wanted, result = std::weak_ptr(measured_)]
        {
            if (result.expired())
                return;
            CommandLoop::appendCommand(
                [found = measureMesh(*wanted.mesh, wanted.toScene), result]
                {
                    if (const std::shared_ptr<Measure> measure = result.lock())
                        measure->found = found;
                });
        });
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
        UI::text(UI::elided(titleText(selected_), ImGui::GetContentRegionAvail().x));
    }
    if (selected_.size() == 1)
        row(tr("Type"), typeText(*selected_.front()));
    if (facts_.objects > 1)
        countRow(tr("Objects"), facts_.objects);
    countRow(tr("Triangles"), facts_.triangles);
    countRow(tr("Vertices"), facts_.vertices);
    countRow(tr("Points"), facts_.points);
    countRow(tr("Segments"), facts_.segments);
    countRow(tr("Selected faces"), selectedFaces_);
    if (!facts_.box.isEmpty())
    {
        const Vector3d size = facts_.box.sizes();
        row(tr("Size"), lengthText(size.x()) + " \u00D7 " + lengthText(size.y()) + " \u00D7 " + lengthText(size.z()));
        row(tr("Minimum"), vectorText(facts_.box.min()));
        row(tr("Maximum"), vectorText(facts_.box.max()));
    }
    drawMeasure_();
    ImGui::PopStyleVar();
}

void InformationPanel::drawMeasure_() const
{
    if (!measured_ || !measured_->found)
        return;
    row(tr("Area"), lengthText(measured_->found->area));
    if (measured_->found->volume)
        row(tr("Volume"), lengthText(*measured_->found->volume));
}

} // namespace VX
