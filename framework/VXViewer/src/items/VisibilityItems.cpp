#include "ActionItem.h"
#include "ItemGroups.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <unordered_set>

namespace VX
{

namespace
{

void show(SceneEdit& edit, Object& object, bool visible)
{
    if (object.isVisible() == visible)
        return;
    edit.touch(object.shared_from_this());
    object.setVisible(visible);
}

void hideSelected(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Hide"));
    for (const std::shared_ptr<Object>& object : selectedObjects(viewer.scene()))
        show(edit, *object, false);
}

void showAll(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Show All"));
    visitObjects(viewer.scene(), [&](Object& object) { show(edit, object, true); });
}

/// Shows what is selected with all below it and nothing else.
void isolateSelected(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Isolate"));
    std::unordered_set<const Object*> selected;
    std::unordered_set<const Object*> onTheWay;
    for (const std::shared_ptr<Object>& object : selectedObjects(viewer.scene()))
    {
        selected.insert(object.get());
        for (const Object* above = object->parent(); above; above = above->parent())
            onTheWay.insert(above);
    }
    const std::function<void(Object&)> isolateBelow = [&](Object& parent)
    {
        for (const std::shared_ptr<Object>& child : parent.children())
        {
            const bool shown = selected.contains(child.get()) || onTheWay.contains(child.get());
            show(edit, *child, shown);
            if (shown && !selected.contains(child.get()))
                isolateBelow(*child);
        }
    };
    isolateBelow(viewer.scene());
}

std::string whyNotHide(SceneSummary& scene)
{
    if (scene.facts().selected > 0 && scene.facts().selectedHidden == scene.facts().selected)
        return tr("What is selected is hidden already.");
    return scene.needsSelectedObjects();
}

std::string whyNotShowAll(SceneSummary& scene)
{
    return scene.facts().hidden == 0 ? tr("Nothing is hidden.") : std::string();
}

} // namespace

RibbonItems makeVisibilityItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    return {
        std::make_shared<ActionItem>("Hide", ItemActions{.press = [&viewer] { hideSelected(viewer); },
                                                         .unavailableReason = [scene] { return whyNotHide(*scene); }}),
        std::make_shared<ActionItem>("Show All",
                                     ItemActions{.press = [&viewer] { showAll(viewer); },
                                                 .unavailableReason = [scene] { return whyNotShowAll(*scene); }}),
        std::make_shared<ActionItem>(
            "Isolate", ItemActions{.press = [&viewer] { isolateSelected(viewer); },
                                   .unavailableReason = [scene] { return scene->needsSelectedObjects(); }}),
    };
}

} // namespace VX
