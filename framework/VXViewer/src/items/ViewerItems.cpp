#include "ItemGroups.h"
#include "SceneSummary.h"

#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/ViewerItems.h>
#include <VXViewer/ViewerSettingsPlugin.h>

namespace VX
{

void registerViewerItems(Viewer& viewer)
{
    const auto scene = std::make_shared<SceneSummary>(viewer);
    for (const RibbonItems& items :
         {makeFileItems(viewer, scene), makeHistoryItems(viewer), makeObjectItems(viewer, scene),
          makeSelectionItems(viewer, scene), makeVisibilityItems(viewer, scene), makeCameraItems(viewer, scene),
          makeDisplayItems(viewer, scene), makeToolItems(viewer, scene), makeWindowItems(viewer)})
    {
        for (const std::shared_ptr<RibbonMenuItem>& item : items)
            RibbonSchemaHolder::addItem(item);
    }
    RibbonSchemaHolder::addItem(ViewerSettingsPlugin::instance());
}

} // namespace VX
