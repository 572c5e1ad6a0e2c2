#pragma once

#include <VXMesh/Object.h>

#include <memory>
#include <vector>

namespace VX
{

/// A scene of `objects` alone, with what is below them, where they stand; they show even where they are hidden. It
/// shares their geometry.
/// @threads the UI thread
[[nodiscard]] std::shared_ptr<const Object> chosenScene(const std::vector<std::shared_ptr<Object>>& objects);

} // namespace VX
