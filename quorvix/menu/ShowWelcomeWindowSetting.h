#pragma once

#include <quorvix/Export.h>

#include <VXViewer/ViewerSettingsPlugin.h>

namespace VX
{

/// The switch of the welcome window in the settings, kept in the user's configuration as "cShowWelcomeWindow".
/// @threads the UI thread
class QUORVIX_API ShowWelcomeWindowSetting : public ViewerSettingsPlugin::ExternalSettings
{
public:
    /// The key of the switch in the configuration.
    static constexpr const char* configKey = "cShowWelcomeWindow";

    /// @param showOnStartup  the switch, which outlives this
    explicit ShowWelcomeWindowSetting(bool& showOnStartup);

    const char* getName() override;

    void draw(float scale) override;

    /// Switches it on until the program ends; what the configuration has stays.
    void reset() override;

private:
    bool& showOnStartup_;
};

} // namespace VX
