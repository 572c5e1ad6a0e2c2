#pragma once

#include <VXMesh/FaceSet.h>
#include <VXViewer/VisibleFaces.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class Object;
class Viewer;

/// What is done with faces that were found.
enum class FaceSelectionMode
{
    Replace, ///< all others are selected no longer
    Add,
    Remove
};

/// Shift adds, Ctrl removes. @param mods  GLFW's bits
[[nodiscard]] FaceSelectionMode faceSelectionMode(int mods);

/// `before` (null: none) with `found`, which is of the same mesh. @return null for none
[[nodiscard]] std::shared_ptr<const FaceSet> combineFaces(const std::shared_ptr<const FaceSet>& before,
                                                          const FaceSet& found, FaceSelectionMode mode);

/// Changes the selected faces of the scene, as one step of the history called `name`, or none where nothing changes.
/// @threads the UI thread
void selectFaces(Viewer& viewer, const std::string& name, const std::vector<VisibleFaces>& found,
                 FaceSelectionMode mode);

/// How many faces are selected below `root`.
[[nodiscard]] std::size_t countSelectedFaces(const Object& root);

/// The lines that the windows of tools for faces end in: what the keys do, and how many faces are selected.
/// @threads the UI thread, within a frame
void drawFaceSelectionFacts(const Viewer& viewer);

} // namespace VX
