#pragma once

#include "formats/MeshAssembly.h"

#include <VXMesh/Geometry.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// A change of the current object ("o") or group ("g"), and how much the piece had before it.
struct ObjSectionStart
{
    bool isGroup = false;
    std::string name;
    std::size_t faces = 0;
    std::size_t corners = 0;
    std::size_t lines = 0;
    std::size_t lineCorners = 0;
    std::size_t dots = 0;
};

/// What one piece of an OBJ file says. Indices count from 0; those that the file gives relative to the last point are
/// relative to the begin of the piece until `resolveObjIndices`.
struct ObjPiece
{
    std::vector<Vector3d> points;
    std::vector<Vector3f> colors; ///< as the file gives them, one a point, NaN where there is none; or empty
    std::vector<Vector3f> normals;
    Polygons faces;
    std::vector<std::uint32_t> faceNormals; ///< of each corner of `faces`, or empty
    Polygons lines;                         ///< polylines
    std::vector<std::uint32_t> dots;        ///< points that are to be seen by themselves
    std::vector<ObjSectionStart> sections;

    std::vector<std::size_t> relativeCorners;
    std::vector<std::size_t> relativeNormals;
    std::vector<std::size_t> relativeLineCorners;
    std::vector<std::size_t> relativeDots;
};

/// True where a piece may begin at `position`: the line before goes not on there.
[[nodiscard]] bool mayObjPieceStart(std::string_view text, std::size_t position);

/// Reads one piece.
/// @threads any
[[nodiscard]] ObjPiece readObjPiece(std::string_view text);

/// Makes relative indices count from the begin of the file.
/// @param firstPoint, firstNormal  the number of points and normals in the pieces before
void resolveObjIndices(ObjPiece& piece, std::size_t firstPoint, std::size_t firstNormal);

} // namespace VX
