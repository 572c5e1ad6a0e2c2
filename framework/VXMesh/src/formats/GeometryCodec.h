#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace VX
{

/// The geometry of one object, whatever its kind.
using AnyGeometry =
    std::variant<std::shared_ptr<const Mesh>, std::shared_ptr<const PointCloud>, std::shared_ptr<const Lines>>;

/// The bytes of one geometry entry of a vxu file; docs/developer/vxu.md describes them. Nothing is lost, but the
/// corners of a triangle may come back turned (b, c, a for a, b, c).
/// @param geometry  not null
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API std::string encodeGeometry(const AnyGeometry& geometry);

/// The geometry of such bytes: indices and coordinates are checked, and no memory is taken that the number of bytes
/// does not justify.
/// @return nothing where the bytes are damaged or of a kind that this version does not know
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API std::optional<AnyGeometry> decodeGeometry(std::span<const std::byte> bytes);

} // namespace VX
