#pragma once

#include "StepFile.h"

#include <VXMesh/Geometry.h>

#include <vector>

namespace VX
{

/// The triangles of one face, with vertices of its own.
struct TriangulatedFace
{
    std::vector<Vector3d> points;
    std::vector<Vector3f> normals; ///< as many, or none
    std::vector<Triangle> triangles;
};

/// Whether `type` is that of a face that `readTriangulatedFace` reads.
[[nodiscard]] bool isTriangulatedFace(StepType type);

/// The COORDINATES_LIST of a face, or `noStepInstance`.
[[nodiscard]] StepIndex coordinatesListOf(const StepFile& file, StepIndex face);

/// The points of a COORDINATES_LIST, in the file's units.
[[nodiscard]] std::vector<Vector3d> readCoordinatesList(const StepFile& file, StepIndex list);

/// @param coordinates  of the face's COORDINATES_LIST
/// @threads any
[[nodiscard]] TriangulatedFace readTriangulatedFace(const StepFile& file, StepIndex face,
                                                    const std::vector<Vector3d>& coordinates);

} // namespace VX
