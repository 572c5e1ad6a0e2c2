#pragma once

#include <quorvix/menu/StartupModal.h>

namespace VX
{

/// Tells the user once that the use of the tools is reported. It is done with, and never shown again, when the user has
/// pressed one of its buttons: the configuration then has 0 under "telemetryDisclaimerModalShowed".
/// @threads the UI thread, within a frame
class TelemetryDisclaimer
{
public:
    /// Opens the window where it is due, in the first frame with no other modal window. Never where telemetry is not
    /// possible.
    void openIfDue();

    [[nodiscard]] bool isShown() const { return modal_.isOpen(); }

    /// Draws the window while it is open.
    void draw();

private:
    void drawButtons_();
    void accept_();
    void manageSettings_();

    StartupModal modal_{"TelemetryDisclaimer##TelemetryDisclaimer"};
    bool pending_ = true;
};

} // namespace VX
