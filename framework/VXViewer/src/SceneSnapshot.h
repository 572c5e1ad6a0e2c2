#pragma once

#include <VXViewer/Export.h>

#include <memory>

namespace VX
{

class Object;

/// A copy of `object` and everything below it, which shares the geometry: a worker reads it while the user goes on to
/// change the scene.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::shared_ptr<Object> copyTree(const Object& object);

} // namespace VX
