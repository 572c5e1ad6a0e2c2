#pragma once

#include <VXMesh/Export.h>

#include <functional>
#include <string>

namespace VX
{

/// Takes the done fraction, 0 to 1, and returns false to ask the operation to stop.
/// An empty callback means no reporting and no cancelling. Called on the thread of the operation.
using ProgressCallback = std::function<bool(float)>;

/// The error of every operation that stopped because its progress callback returned false.
VXMESH_API const std::string& operationCanceledText();

/// Maps the 0 to 1 of a nested operation onto `from` to `to` of `callback`; empty stays empty.
/// @threads any
VXMESH_API ProgressCallback subprogress(ProgressCallback callback, float from, float to);

/// Reports `fraction`; an empty callback counts as a request to go on.
/// @return false when the operation is to stop
VXMESH_API bool reportProgress(const ProgressCallback& callback, float fraction);

} // namespace VX
