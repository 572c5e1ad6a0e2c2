#pragma once

#include <VXViewer/Export.h>

namespace VX
{

class Viewer;

/// Makes the items that the viewer itself has known to `RibbonSchemaHolder`: files, editing, selection, view. Their
/// looks and places are in the installed layout of the ribbon.
/// @param viewer  outlives the items
/// @threads the UI thread
VXVIEWER_API void registerViewerItems(Viewer& viewer);

} // namespace VX
