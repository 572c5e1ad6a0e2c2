#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// Stereolithography: binary is read and written, text is read. Corners with equal coordinates become one point.
[[nodiscard]] FileFormat stlFormat();

/// Reads the bytes of an STL file into one mesh.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readStl(const Source& source,
                                                                          const ProgressCallback& progress);

} // namespace VX
