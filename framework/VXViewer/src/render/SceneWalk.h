#pragma once

#include <VXMesh/Object.h>
#include <VXMesh/ObjectLines.h>
#include <VXViewer/Export.h>

#include <functional>
#include <vector>

namespace VX
{

/// An object that shows in a viewport.
struct VisibleObject
{
    const Object& object;
    Transform world;       ///< from the object's coordinates to those of the scene
    bool selected = false; ///< itself or something above it
};

/// Calls `visit` for `root` and what is below it as far as it is visible in `viewport`, parents first. What is above
/// `root` counts for the place but not for visibility and selection.
VXVIEWER_API void visitVisible(const Object& root, ViewportMask viewport,
                               const std::function<void(const VisibleObject&)>& visit);

/// The points of the object's own geometry, or null.
[[nodiscard]] const std::vector<Vector3f>* pointsOf(const Object& object);

/// Whether these lines hang below a mesh: then they are the sharp edges of the part, shown and hidden as such, and a
/// click on them means the part.
[[nodiscard]] bool isEdgeOfPart(const ObjectLines& lines);

/// The extent in scene coordinates of the object's own geometry, without its children.
[[nodiscard]] Box3d ownWorldBox(const VisibleObject& visible);

} // namespace VX
