#include "SceneSummary.h"

#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

/// Whether `object` or something that it is below is selected.
bool isSelectedWithin(const Object& object)
{
    for (const Object* each = &object; each; each = each->parent())
    {
        if (each->isSelected())
            return true;
    }
    return false;
}

} // namespace

const SceneSummary::Facts& SceneSummary::facts()
{
    const Object& root = viewer_.scene();
    if (root_ != &root || revision_ != root.revision())
    {
        root_ = &root;
        revision_ = root.revision();
        update_();
    }
    return facts_;
}

void SceneSummary::update_()
{
    facts_ = {};
    visitObjects(*root_,
                 [this](const Object& object)
                 {
                     if (&object == root_)
                         return;
                     const std::size_t selected = object.isSelected() ? 1 : 0;
                     ++facts_.objects;
                     facts_.selected += selected;
                     if (!object.isVisible())
                     {
                         ++facts_.hidden;
                         facts_.selectedHidden += selected;
                     }
                     if (dynamic_cast<const VisualObject*>(&object))
                     {
                         facts_.selectedVisual += selected;
                         facts_.colorsSelected = facts_.colorsSelected || isSelectedWithin(object);
                     }
                     const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
                     if (!mesh || !mesh->mesh() || mesh->mesh()->triangles.empty())
                         return;
                     ++facts_.meshes;
                     facts_.selectedMeshes += selected;
                     if (mesh->isFlatShaded())
                     {
                         ++facts_.flatMeshes;
                         facts_.selectedFlatMeshes += selected;
                     }
                     if (mesh->selectedFaces())
                         (isShown(object) ? facts_.facesSelected : facts_.hiddenFacesSelected) = true;
                 });
}

std::string SceneSummary::needsObjects()
{
    return facts().objects == 0 ? tr("The scene is empty.") : std::string();
}

std::string SceneSummary::needsSelectedObjects()
{
    return facts().selected == 0 ? tr("No object is selected.") : std::string();
}

std::string SceneSummary::needsSelectedColors()
{
    if (std::string reason = needsSelectedObjects(); !reason.empty())
        return reason;
    return facts().colorsSelected ? std::string() : tr("Nothing that is selected has a color.");
}

std::string SceneSummary::needsSelectedFaces()
{
    return facts().facesSelected ? std::string() : tr("No faces are selected.");
}

std::string SceneSummary::needsAnySelection()
{
    return facts().hiddenFacesSelected ? std::string() : needsAnyShownSelection();
}

std::string SceneSummary::needsAnyShownSelection()
{
    return facts().selected == 0 && !facts().facesSelected ? tr("Nothing is selected.") : std::string();
}

std::string SceneSummary::needsMeshes()
{
    return facts().meshes == 0 ? tr("There is no mesh in the scene.") : std::string();
}

} // namespace VX
