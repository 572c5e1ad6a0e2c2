#pragma once

#include <memory>

namespace VX
{

class Object;

/// A copy of `object` and everything below it, which shares the geometry: a worker reads it while the user goes on to
/// change the scene.
/// @threads the UI thread
[[nodiscard]] std::shared_ptr<Object> copyTree(const Object& object);

} // namespace VX
