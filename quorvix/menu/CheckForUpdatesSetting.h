#pragma once

#include <quorvix/Export.h>

#include <VXViewer/ViewerSettingsPlugin.h>

namespace VX
{

/// The switch in the settings for asking the service for the latest version. It is kept in the user's configuration as
/// "checkForUpdates", true where there is none.
/// @threads the UI thread
class QUORVIX_API CheckForUpdatesSetting : public ViewerSettingsPlugin::ExternalSettings
{
public:
    /// Whether the user wants it.
    [[nodiscard]] static bool isOn();

    /// The section: "Behavior".
    const char* getName() override;

    void draw(float scale) override;

    /// Switches it on.
    void reset() override;
};

} // namespace VX
