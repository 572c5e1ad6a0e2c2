#pragma once

#include <VXMesh/Export.h>

#include <string>

namespace VX
{

/// The version of the product, four numbers: "1.0.0.0"; a development build has a "D" in front.
/// @threads any
[[nodiscard]] VXMESH_API std::string GetVXVersionString();

} // namespace VX
