#pragma once

#include "formats/ObjPieces.h"

#include <VXMesh/Geometry.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VX
{

/// The faces, polylines and dots that one object and group of an OBJ file have, as they stand in the pieces.
struct ObjSection
{
    /// A range of one piece.
    struct Run
    {
        const ObjPiece* piece = nullptr;
        ObjSectionStart begin;
        ObjSectionStart end;
    };

    std::string object; ///< its name; empty before the first one
    std::string group;
    std::vector<Run> runs;

    [[nodiscard]] bool hasFaces() const;
    [[nodiscard]] bool hasLines() const;
    [[nodiscard]] bool hasDots() const;
};

/// Collects the sections that have faces, polylines or dots, in the order in which they first occur.
[[nodiscard]] std::vector<ObjSection> collectObjSections(const std::vector<ObjPiece>& pieces);

/// All points of an OBJ file, and their attributes.
struct ObjPoints
{
    std::vector<Vector3f> points;
    std::vector<Color> colors; ///< one a point, or empty
    std::vector<Vector3f> normals;
};

/// The faces of a section over points of its own, which are those of `all` that it uses in the same order.
[[nodiscard]] RawMesh takeFaces(const ObjSection& section, const ObjPoints& all);

/// The polylines of a section over points of its own. Segments with a point that is not there or not finite are left
/// out.
[[nodiscard]] Lines takeLines(const ObjSection& section, const ObjPoints& all);

/// The dots of a section. Those that are not there or not finite are left out.
[[nodiscard]] PointCloud takeDots(const ObjSection& section, const ObjPoints& all);

/// The normals of points, as the corners of faces refer to them.
/// @param polygons, cornerNormals  pieces of faces, and for each corner the index of its normal; there are as many
/// @return one a point; or none where a corner has none or a point has different ones
[[nodiscard]] std::vector<Vector3f> resolveNormals(const std::vector<Polygons>& polygons,
                                                   const std::vector<std::vector<std::uint32_t>>& cornerNormals,
                                                   const std::vector<Vector3f>& normals, std::size_t pointCount);

} // namespace VX
