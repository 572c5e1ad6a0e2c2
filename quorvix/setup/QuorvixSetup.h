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
    /// After the framework's own step: the title with the user's e-mail address. Telemetry follows the user's setting
    /// and the command line from the start of the loop on.
    void setupConfiguration(Viewer* viewer) const override;
};

} // namespace VX
