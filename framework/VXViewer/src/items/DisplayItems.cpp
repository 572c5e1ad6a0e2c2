#include "ActionItem.h"
#include "ItemGroups.h"
#include "ObjectColorItem.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

/// Shows something in the viewports of a mask of the view's options, which others change too.
class MaskItem : public ItemEnabledPerViewport
{
public:
    MaskItem(std::string name, Viewer& viewer, ViewportMask SceneOptions::* mask)
        : ItemEnabledPerViewport(std::move(name))
        , viewer_(viewer)
        , mask_(mask)
    {
    }

    void setEnabledViewports(ViewportMask viewports) override
    {
        ItemEnabledPerViewport::setEnabledViewports(viewports);
        viewer_.view().options().*mask_ = viewports;
    }

    void press() override { setEnabledViewports(isActive() ? ViewportMask() : ViewportMask::all()); }

    [[nodiscard]] bool isActive() const override { return !(viewer_.view().options().*mask_).isEmpty(); }

private:
    Viewer& viewer_;
    ViewportMask SceneOptions::* mask_;
};

/// The selected meshes; all of them where none is selected.
std::vector<std::shared_ptr<ObjectMesh>> meshesToShade(Viewer& viewer, SceneSummary& scene)
{
    const bool onlySelected = scene.facts().selectedMeshes > 0;
    std::vector<std::shared_ptr<ObjectMesh>> meshes;
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     if (dynamic_cast<ObjectMesh*>(&object) && (object.isSelected() || !onlySelected))
                         meshes.push_back(std::static_pointer_cast<ObjectMesh>(object.shared_from_this()));
                 });
    return meshes;
}

void shade(Viewer& viewer, SceneSummary& scene, bool flat)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(),
                   flat ? translatable("Flat Shading") : translatable("Smooth Shading"));
    for (const std::shared_ptr<ObjectMesh>& mesh : meshesToShade(viewer, scene))
    {
        if (mesh->isFlatShaded() == flat)
            continue;
        edit.touch(mesh);
        mesh->setFlatShaded(flat);
    }
}

/// A switch of the view that is no part of the scene, and so no step of its history.
std::shared_ptr<RibbonMenuItem> makeSwitch(std::string name, Viewer& viewer, bool SceneOptions::* option)
{
    return std::make_shared<ActionItem>(
        std::move(name), ItemActions{.press =
                                         [&viewer, option]
                                     {
                                         bool& on = viewer.view().options().*option;
                                         on = !on;
                                     },
                                     .isActive = [&viewer, option] { return viewer.view().options().*option; }});
}

std::shared_ptr<RibbonMenuItem> makeShading(std::string name, Viewer& viewer,
                                            const std::shared_ptr<SceneSummary>& scene, bool flat)
{
    return std::make_shared<ActionItem>(
        std::move(name), ItemActions{.press = [&viewer, scene, flat] { shade(viewer, *scene, flat); },
                                     .unavailableReason = [scene] { return scene->needsMeshes(); },
                                     .isActive =
                                         [scene, flat]
                                     {
                                         const SceneSummary::Facts& facts = scene->facts();
                                         const bool selected = facts.selectedMeshes > 0;
                                         const std::size_t meshes = selected ? facts.selectedMeshes : facts.meshes;
                                         const std::size_t flatMeshes =
                                             selected ? facts.selectedFlatMeshes : facts.flatMeshes;
                                         return meshes > 0 && flatMeshes == (flat ? meshes : 0);
                                     }});
}

} // namespace

RibbonItems makeDisplayItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    return {
        std::make_shared<MaskItem>("Draw Scale Indicator", viewer, &SceneOptions::scaleIndicator),
        std::make_shared<MaskItem>("Show_Hide Global Basis", viewer, &SceneOptions::globalBasis),
        makeSwitch("Wireframe", viewer, &SceneOptions::wireframe),
        makeSwitch("Edges", viewer, &SceneOptions::featureEdges),
        makeShading("Flat Shading", viewer, scene, true),
        makeShading("Smooth Shading", viewer, scene, false),
        std::make_shared<ObjectColorItem>(viewer, scene),
    };
}

} // namespace VX
