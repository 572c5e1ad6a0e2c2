#pragma once

#include <VXViewer/Export.h>

#include <functional>
#include <string>

namespace VX
{

/// Opens `url` (http, https or mailto; anything else is refused with a line in the log) in the user's browser or mail
/// program. Does not wait for it; where it cannot be opened, which may be known only later, a message of the menu says
/// so.
/// @return false where it was refused or cannot be opened
/// @threads any
VXVIEWER_API bool OpenLink(const std::string& url);

/// From now on links go to `opener` instead; an empty one ends it. For tests.
/// @threads any
VXVIEWER_API void setLinkOpener(std::function<void(const std::string&)> opener);

} // namespace VX
