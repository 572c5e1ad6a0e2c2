#include <VXMesh/Version.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerTitle.h>

namespace VX
{

ViewerTitle::~ViewerTitle() = default;

std::string ViewerTitle::compose()
{
    const Viewer& viewer = getViewerInstance();
    std::string title = viewer.sceneName();
    if (viewer.applicationName().empty())
        return title;
    if (!title.empty())
        title += " - ";
    return title + viewer.applicationName() + " " + GetVXVersionString();
}

void ViewerTitle::update_()
{
    Viewer& viewer = getViewerInstance();
    if (viewer.windowTitle().get() == this)
        viewer.updateTitle();
}

} // namespace VX
