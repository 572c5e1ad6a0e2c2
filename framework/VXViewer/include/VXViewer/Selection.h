#pragma once

#include <VXViewer/Export.h>

#include <memory>
#include <vector>

namespace VX
{

class Object;

/// The selected objects below `root`, parents first.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::shared_ptr<Object>> selectedObjects(Object& root);

/// Selects `object` and nothing else below `root`; null selects nothing.
/// @threads the UI thread
VXVIEWER_API void selectOnly(Object& root, const Object* object);

/// Takes the selected objects below `root`, and with them what is below them, out of the tree.
/// @return how many were taken out, those below another not counted
/// @threads the UI thread
VXVIEWER_API std::size_t removeSelected(Object& root);

} // namespace VX
