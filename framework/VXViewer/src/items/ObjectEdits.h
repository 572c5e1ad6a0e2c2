#pragma once

#include <memory>
#include <vector>

namespace VX
{

class Object;
class SceneEdit;
class Viewer;

// Changes of the selected objects, each a step of the history.
// @threads the UI thread

/// Cuts the selected faces out of their meshes. An object of which nothing is left goes, unless others are below it.
void deleteSelectedFaces(Viewer& viewer);

/// Takes the selected objects with all below them out of the scene.
void deleteSelectedObjects(Viewer& viewer);

/// Takes `objects`, of which none is below another, with all below them out of the scene, as a part of `edit`.
void removeObjects(SceneEdit& edit, const std::vector<std::shared_ptr<Object>>& objects);

/// Puts a copy behind each selected object, which shares its geometry, and selects the copies instead.
void duplicateSelectedObjects(Viewer& viewer);

/// Moves the selected objects into a new group, which is selected then, where the first of them was. They stay where
/// they are in the scene.
void groupSelectedObjects(Viewer& viewer);

} // namespace VX
