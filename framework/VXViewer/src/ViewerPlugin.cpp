#include <VXViewer/ViewerPlugin.h>

namespace VX
{

ViewerPlugin::~ViewerPlugin() = default;

void ViewerPlugin::init(Viewer*) {}

void ViewerPlugin::shutdown() {}

void ViewerPlugin::draw() {}

bool ViewerPlugin::handleSceneInput(const InputEvent&)
{
    return false;
}

} // namespace VX
