#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/FaceSet.h>
#include <VXMesh/Geometry.h>

#include <cstdint>
#include <functional>

namespace VX
{

class MeshTopology;

/// `faces` and every face that shares a point with one of them. Points at the same place count as one.
/// @param faces  of `mesh`
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API FaceSet expandFaces(const Mesh& mesh, const FaceSet& faces);

/// `faces` without those that share a point, or a place, with a face outside. The border of the surface takes nothing
/// away.
/// @param faces  of `mesh`
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API FaceSet shrinkFaces(const Mesh& mesh, const FaceSet& faces);

/// The faces that are not in `faces`.
/// @threads any
[[nodiscard]] VXMESH_API FaceSet invertFaces(const FaceSet& faces);

/// The flat or smoothly curved region around a face: all that is reached from it over edges at which the surface turns
/// by no more than the tolerance, so that a region goes round a bend but stops at a sharp edge. Region growing under
/// the smoothness constraint of Rabbani, van den Heuvel and Vosselman (Segmentation of point clouds using smoothness
/// constraint, 2006), with faces and their edges in the place of points and their neighbours. A degenerate face has no
/// direction: it belongs to the region that reaches it and passes on the direction from which it was reached.
/// Neighbours that are oriented against each other count as if they were not.
/// @param topology  of `mesh`
/// @param seedFace  less than M
/// @param angleToleranceDegrees  between the normals of neighbouring faces, 0 to 180
/// @param isToStop  asked now and then: true ends the search with what was found till then; may be empty
/// @threads any
[[nodiscard]] VXMESH_API FaceSet growRegion(const Mesh& mesh, const MeshTopology& topology, std::uint32_t seedFace,
                                            double angleToleranceDegrees, const std::function<bool()>& isToStop = {});

} // namespace VX
