#include "ActionItem.h"
#include "ItemGroups.h"
#include "SceneSummary.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/VisualObject.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <functional>
#include <utility>

namespace VX
{

namespace
{

using FaceFunction = std::function<FaceSet(const Mesh&, const FaceSet&)>;

using Meshes = std::vector<std::shared_ptr<ObjectMesh>>;

/// Gives each of `meshes`, which have selected faces, those that `change` makes of them.
void changeFaces(Viewer& viewer, const char* name, const Meshes& meshes, const FaceFunction& change)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), name);
    for (const std::shared_ptr<ObjectMesh>& object : meshes)
    {
        edit.touch(object);
        auto faces = std::make_shared<FaceSet>(change(*object->mesh(), *object->selectedFaces()));
        // The same faces as before are no step.
        if (*faces != *object->selectedFaces())
            object->setSelectedFaces(std::move(faces));
    }
}

/// The same for all that show.
void changeShownFaces(Viewer& viewer, const char* name, const FaceFunction& change)
{
    changeFaces(viewer, name, shownMeshesWithSelectedFaces(viewer.scene()), change);
}

/// Selects each object below the root or not, as `choose` says.
void chooseObjects(Viewer& viewer, const char* name, const std::function<bool(const Object&)>& choose)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), name);
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     const bool chosen = choose(object);
                     if (!object.parent() || object.isSelected() == chosen)
                         return;
                     edit.touch(object.shared_from_this());
                     object.setSelected(chosen);
                 });
}

void selectAll(Viewer& viewer, SceneSummary& scene)
{
    const char* name = translatable("Select All");
    if (scene.facts().facesSelected)
        changeShownFaces(viewer, name, [](const Mesh&, const FaceSet& faces) { return FaceSet(faces.size(), true); });
    else
        chooseObjects(viewer, name,
                      [&](const Object& object) { return object.isSelected() || object.parent() == &viewer.scene(); });
}

/// What can be selected below `object` and is not, also as a part of something selected, in the order of the tree.
/// What has a shape of its own stands for all below it, and groups follow from what is in them.
void collectUnselected(const Object& object, std::vector<const Object*>& found)
{
    for (const std::shared_ptr<Object>& child : object.children())
    {
        if (child->isSelected())
            continue;
        if (child->children().empty() || dynamic_cast<const VisualObject*>(child.get()))
            found.push_back(child.get());
        else
            collectUnselected(*child, found);
    }
}

void invertSelection(Viewer& viewer, SceneSummary& scene)
{
    const char* name = translatable("Invert Selection");
    if (scene.facts().facesSelected)
    {
        changeShownFaces(viewer, name, [](const Mesh&, const FaceSet& faces) { return invertFaces(faces); });
        return;
    }
    std::vector<const Object*> chosen;
    collectUnselected(viewer.scene(), chosen);
    std::size_t next = 0;
    chooseObjects(viewer, name,
                  [&](const Object& object)
                  {
                      const bool found = next < chosen.size() && chosen[next] == &object;
                      next += found ? 1 : 0;
                      return found;
                  });
}

void clearSelections(Viewer& viewer)
{
    const HistoryScope scope(*viewer.getGlobalHistoryStore(), translatable("Clear Selections"));
    changeFaces(viewer, translatable("Clear Selections"), meshesWithSelectedFaces(viewer.scene()),
                [](const Mesh&, const FaceSet& faces) { return FaceSet(faces.size()); });
    chooseObjects(viewer, translatable("Clear Selections"), [](const Object&) { return false; });
}

} // namespace

RibbonItems makeSelectionItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    const auto needsFaces = [scene] { return scene->needsSelectedFaces(); };
    const auto needsObjects = [scene] { return scene->needsObjects(); };
    return {
        std::make_shared<ActionItem>("Select all", ItemActions{.press = [&viewer, scene] { selectAll(viewer, *scene); },
                                                               .unavailableReason = needsObjects}),
        std::make_shared<ActionItem>("Invert Selection",
                                     ItemActions{.press = [&viewer, scene] { invertSelection(viewer, *scene); },
                                                 .unavailableReason = needsObjects}),
        std::make_shared<ActionItem>("Clear Selections",
                                     ItemActions{.press = [&viewer] { clearSelections(viewer); },
                                                 .unavailableReason = [scene] { return scene->needsAnySelection(); }}),
        std::make_shared<ActionItem>(
            "Expand Selected Faces",
            ItemActions{.press = [&viewer]
                        { changeShownFaces(viewer, translatable("Expand Selected Faces"), expandFaces); },
                        .unavailableReason = needsFaces}),
        std::make_shared<ActionItem>(
            "Shrink selection",
            ItemActions{.press = [&viewer] { changeShownFaces(viewer, translatable("Shrink Selection"), shrinkFaces); },
                        .unavailableReason = needsFaces}),
    };
}

} // namespace VX
