#pragma once

#include <VXViewer/Export.h>

#include <string>

namespace VX
{

/// Composes the title of the viewer's window. A derived class adds to it.
/// @threads the UI thread
class VXVIEWER_API ViewerTitle
{
public:
    virtual ~ViewerTitle();

    /// "SCENE - APPLICATION VERSION"; without the scene where nothing is open, and empty while the viewer has neither.
    virtual std::string compose();

protected:
    /// Lets the viewer compose the title again, if this is its composer.
    void update_();
};

} // namespace VX
