#include "ActionItem.h"
#include "ItemGroups.h"
#include "OpenRecentItem.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

std::string whyNotSave(const Viewer& viewer, SceneSummary& scene)
{
    if (std::string reason = scene.needsObjects(); !reason.empty())
        return reason;
    return hasUnsavedChanges(viewer) ? std::string() : tr("Everything is saved.");
}

} // namespace

RibbonItems makeFileItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    const auto files = [&viewer]() -> SceneFiles& { return viewer.getMenuPlugin()->sceneFiles(); };
    return {
        std::make_shared<ActionItem>("Open files",
                                     ItemActions{.press = [&viewer] { viewer.getMenuPlugin()->chooseFilesToOpen(); }}),
        std::make_shared<OpenRecentItem>(viewer),
        std::make_shared<ActionItem>(
            "Save", ItemActions{.press = [files] { files().save(); },
                                .unavailableReason = [&viewer, scene] { return whyNotSave(viewer, *scene); }}),
        std::make_shared<ActionItem>("Save Scene As",
                                     ItemActions{.press = [files] { files().saveAs(); },
                                                 .unavailableReason = [scene] { return scene->needsObjects(); }}),
        std::make_shared<ActionItem>(
            "Save selected", ItemActions{.press = [files] { files().saveSelected(); },
                                         .unavailableReason = [scene] { return scene->needsSelectedObjects(); }}),
    };
}

} // namespace VX
