#pragma once

#include <VXViewer/Export.h>

#include <memory>
#include <vector>

namespace VX
{

class Object;
class ObjectMesh;

/// The selected objects below `root`, parents first.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::shared_ptr<Object>> selectedObjects(Object& root);

/// The same without those below another selected one.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::shared_ptr<Object>> topmostSelectedObjects(Object& root);

/// The meshes below `root` of which faces are selected, parents first.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::shared_ptr<ObjectMesh>> meshesWithSelectedFaces(Object& root);

/// The same without those that are hidden.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::shared_ptr<ObjectMesh>> shownMeshesWithSelectedFaces(Object& root);

/// Whether the own switch of `object` and those of all above it are on.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API bool isShown(const Object& object);

/// Selects `object` and nothing else below `root`; null selects nothing.
/// @threads the UI thread
VXVIEWER_API void selectOnly(Object& root, const Object* object);

} // namespace VX
