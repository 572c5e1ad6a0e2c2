#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>

#include <memory>

namespace VX
{

void QuorvixSetup::setupConfiguration(Viewer* viewer) const
{
    ViewerSetup::setupConfiguration(viewer);
    viewer->setWindowTitle(std::make_shared<QuorvixWindowTitle>());
    // Before there are actions to gather, and once the viewer has its command line.
    CommandLoop::appendCommand([] { SessionLogs::followSetting(); });
}

} // namespace VX
