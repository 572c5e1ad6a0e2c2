#pragma once

#include <VXMesh/Object.h>
#include <VXViewer/Viewer.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace VX
{

/// Selects `objects` and nothing else, whole or in part, in the step of the history that is open, so that what works on
/// the selection works on them.
/// @threads the UI thread
void selectForStep(Viewer& viewer, const std::vector<std::shared_ptr<Object>>& objects);

/// How many triangles are selected below `root` that are cut out where the selection is deleted: not those of hidden
/// objects.
/// @threads the UI thread
[[nodiscard]] std::size_t countShownSelectedFaces(Object& root);

} // namespace VX
