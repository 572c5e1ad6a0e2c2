#include "ActionItem.h"
#include "ItemGroups.h"
#include "SceneSummary.h"
#include "menu/Translate.h"

#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <array>

namespace VX
{

namespace
{

struct ViewItem
{
    const char* name;
    StandardView view;
};

constexpr std::array viewItems{
    ViewItem{"View Front", StandardView::Front},
    ViewItem{"View Back", StandardView::Back},
    ViewItem{"View Left", StandardView::Left},
    ViewItem{"View Right", StandardView::Right},
    ViewItem{"View Top", StandardView::Top},
    ViewItem{"View Bottom", StandardView::Bottom},
    ViewItem{"View Isometric", StandardView::Isometric},
};

/// Switches between perspective and parallel projection, in the viewports in which that is allowed.
class ProjectionItem : public ItemEnabledPerViewport
{
public:
    explicit ProjectionItem(Viewer& viewer)
        : ItemEnabledPerViewport("Toggle Projection Mode")
        , viewer_(viewer)
    {
        ItemEnabledPerViewport::setEnabledViewports(ViewportMask::all());
    }

    void press() override { viewer_.view().toggleProjection(); }

    [[nodiscard]] bool isActive() const override
    {
        return viewer_.view().camera().projection() == Projection::Orthographic;
    }

    /// It has no window that could be closed.
    void deactivate() override {}

    [[nodiscard]] std::string unavailableReason() const override
    {
        return enabledViewports().contains(viewer_.view().options().viewport)
                   ? std::string()
                   : tr("The projection of this view is fixed.");
    }

private:
    Viewer& viewer_;
};

} // namespace

RibbonItems makeCameraItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    RibbonItems items;
    for (const ViewItem& item : viewItems)
        items.push_back(std::make_shared<ActionItem>(
            item.name, ItemActions{.press = [&viewer, view = item.view] { viewer.view().showFrom(view); }}));
    items.push_back(std::make_shared<ProjectionItem>(viewer));
    items.push_back(std::make_shared<ActionItem>(
        "Fit", ItemActions{.press = [&viewer] { viewer.view().fitAll(); },
                           .unavailableReason = [scene] { return scene->needsObjects(); }}));
    items.push_back(std::make_shared<ActionItem>(
        "Fit Selected", ItemActions{.press = [&viewer] { viewer.view().fit(selectedObjects(viewer.scene())); },
                                    .unavailableReason = [scene] { return scene->needsSelectedObjects(); }}));
    return items;
}

} // namespace VX
