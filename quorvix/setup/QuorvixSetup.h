#pragma once

#include <quorvix/Export.h>

#include <VXViewer/ViewerSetup.h>

namespace VX
{

/// Makes the product of the bare viewer.
/// @threads the UI thread
class QUORVIX_API QuorvixSetup : public ViewerSetup
{
public:
    /// Fills the callbacks: at the start the log begins to go to the deployment's log service too, at the end what of
    /// it waits is sent.
    QuorvixSetup();

    /// The application's menu and its texts' domain, "Quorvix". From here on requests go through OpenSSL; where that
    /// cannot be, the log says so and the program goes on: "Failed to set SSL backend for cURL: error code 0xN"
    /// (level warning). Once the viewer closes, no more of the log is sent before the end.
    void setupBasePlugins(Viewer* viewer) const override;

    /// The product has none of the framework's overlays.
    void setupFrameStatistics(Viewer* viewer) const override;
    void setupMouseControls(Viewer* viewer) const override;

    /// After the framework's own step: the title with the user's e-mail address, and agents may use what `checkMcpTool`
    /// lets them. Telemetry follows the user's setting
    /// and the command line from the start of the loop on.
    void setupConfiguration(Viewer* viewer) const override;
};

} // namespace VX
