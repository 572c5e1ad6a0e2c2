#pragma once

#include <quorvix/Export.h>

#include <VXViewer/ViewerTitle.h>

#include <string>

namespace VX
{

/// Composes the title of the main window: the framework's title, a blank, and the e-mail address of the signed-in user.
/// @threads the UI thread
class QUORVIX_API QuorvixWindowTitle : public ViewerTitle
{
public:
    /// Without an address the framework's title alone; without that the address alone.
    std::string compose() override;

    /// Empty: nobody is signed in. Another address than before lets the viewer compose the title again.
    void setEmail(std::string email);

private:
    std::string email_;
};

} // namespace VX
