#include "ActionItem.h"
#include "ItemGroups.h"
#include "ObjectEdits.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

void deleteSelection(Viewer& viewer, SceneSummary& scene)
{
    if (scene.facts().facesSelected)
        deleteSelectedFaces(viewer);
    else
        deleteSelectedObjects(viewer);
}

std::string whyNotRename(Viewer& viewer, SceneSummary& scene)
{
    if (scene.facts().selected > 1)
        return tr("Several objects are selected. Select the one to rename.");
    if (std::string reason = scene.needsSelectedObjects(); !reason.empty())
        return reason;
    const bool listShown = viewer.getMenuPlugin() && viewer.getMenuPlugin()->leftPanelWidth() > 0;
    return listShown ? std::string() : tr("The scene list, in which names are changed, is not shown.");
}

void rename(Viewer& viewer)
{
    viewer.getMenuPlugin()->renameInSceneList(selectedObjects(viewer.scene()).front());
}

} // namespace

RibbonItems makeObjectItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    const auto needsObjects = [scene] { return scene->needsSelectedObjects(); };
    return {
        std::make_shared<ActionItem>(
            "Delete Selection", ItemActions{.press = [&viewer, scene] { deleteSelection(viewer, *scene); },
                                            .unavailableReason = [scene] { return scene->needsAnyShownSelection(); }}),
        std::make_shared<ActionItem>("Duplicate", ItemActions{.press = [&viewer] { duplicateSelectedObjects(viewer); },
                                                              .unavailableReason = needsObjects}),
        std::make_shared<ActionItem>("Group", ItemActions{.press = [&viewer] { groupSelectedObjects(viewer); },
                                                          .unavailableReason = needsObjects}),
        std::make_shared<ActionItem>(
            "Rename", ItemActions{.press = [&viewer] { rename(viewer); },
                                  .unavailableReason = [&viewer, scene] { return whyNotRename(viewer, *scene); }}),
    };
}

} // namespace VX
