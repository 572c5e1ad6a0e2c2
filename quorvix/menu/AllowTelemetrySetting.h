#pragma once

#include <quorvix/Export.h>

#include <VXViewer/ViewerSettingsPlugin.h>

namespace VX
{

/// The switch for usage statistics in the settings. It shows and sets `SessionLogs::isAllowed`, and is kept in the
/// user's configuration as "allowSimpleTelemetry"; where the command line forbids telemetry it cannot be used.
/// @threads the UI thread
class QUORVIX_API AllowTelemetrySetting : public ViewerSettingsPlugin::ExternalSettings
{
public:
    /// The section: "Behavior".
    const char* getName() override;

    void draw(float scale) override;

    /// Allows usage statistics, unless the command line forbids them.
    void reset() override;
};

} // namespace VX
