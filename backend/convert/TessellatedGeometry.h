#pragma once

#include "BodyGeometry.h"
#include "StepFile.h"
#include "StepStructure.h"
#include "StepStyles.h"

#include <optional>
#include <span>

namespace VX
{

/// Reads the triangles of tessellated bodies: TESSELLATED_SOLID, TESSELLATED_SHELL, and their faces TRIANGULATED_FACE
/// and COMPLEX_TRIANGULATED_FACE (strips and fans) over COORDINATES_LISTs, with the normals and colours of the file.
/// Vertices belong to one face each. Triangles that refer to points which are not there, and such without extent by
/// their indices, are left out. Where no face has normals, the mesh has none.
/// @param items  TESSELLATED items of the structure, which make up one body
/// @return nothing when there is no triangle
/// @threads any; uses the TBB pool
[[nodiscard]] std::optional<BodyGeometry> readTessellatedBody(const StepFile& file, const StepStyles& styles,
                                                              std::span<const StepItem> items);

} // namespace VX
