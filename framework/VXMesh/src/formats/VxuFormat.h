#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// The scene format: the whole tree with everything that its objects have. docs/developer/vxu.md describes it.
[[nodiscard]] FileFormat vxuFormat();

/// Reads the bytes of a vxu file.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readVxu(const Source& source,
                                                                          const ProgressCallback& progress);

} // namespace VX
