#include <quorvix/menu/AllowTelemetrySetting.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXViewer/Locale.h>
#include <VXViewer/UI.h>

namespace VX
{

const char* AllowTelemetrySetting::getName()
{
    return translatable("Behavior");
}

void AllowTelemetrySetting::draw(float)
{
    const int domain = Locale::findDomain("Quorvix");
    {
        const UI::ScopedDisabled disabled(!SessionLogs::isEnabled());
        bool allowed = SessionLogs::isAllowed();
        if (UI::checkbox(Locale::translate("Collect Usage Statistics", domain), allowed))
        {
            Config::instance().setBool("allowSimpleTelemetry", allowed);
            SessionLogs::allow(allowed);
        }
    }
    UI::tooltip(Locale::translate("Allow application to collect (non-personal) data about tools that are used to "
                                  "improve performance.",
                                  domain));
}

void AllowTelemetrySetting::reset()
{
    if (SessionLogs::isEnabled())
        SessionLogs::allow(true);
}

} // namespace VX
