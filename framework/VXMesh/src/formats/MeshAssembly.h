#pragma once

#include <VXMesh/Geometry.h>
#include <VXMesh/ObjectFile.h>
#include <VXMesh/VisualObject.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

class Source;

/// Stands for an index that names no point.
inline constexpr std::uint32_t kNoPoint = std::numeric_limits<std::uint32_t>::max();

/// Faces as a piece of a file has them, not checked yet.
struct Polygons
{
    std::vector<std::uint32_t> corners; ///< of all faces, one after another
    std::vector<std::uint32_t> sizes;   ///< the number of corners of each face; empty while all have three
    std::vector<Color> colors;          ///< of each face, or empty

    [[nodiscard]] std::size_t count() const { return sizes.empty() ? corners.size() / 3 : sizes.size(); }

    void add(std::span<const std::uint32_t> face)
    {
        if (sizes.empty() && face.size() != 3)
            sizes.assign(corners.size() / 3, 3);
        if (!sizes.empty() || face.size() != 3)
            sizes.push_back(static_cast<std::uint32_t>(face.size()));
        corners.insert(corners.end(), face.begin(), face.end());
    }
};

/// What a reader gathered of one object, not checked yet. Points stand in one of the two arrays.
struct RawMesh
{
    std::vector<Vector3d> precisePoints;
    std::vector<Vector3f> points;
    std::vector<Vector3f> normals;   ///< one a point, or empty
    std::vector<Color> vertexColors; ///< one a point, or empty
    std::vector<Triangle> triangles; ///< faces that are known to have three corners, before all others
    std::vector<Polygons> polygons;  ///< pieces in the order of the file
    std::optional<Vector3d> offset;  ///< what was subtracted from the points already
};

/// Triangles that faces were cut into, and what was wrong with the others.
struct CheckedFaces
{
    std::vector<Triangle> triangles;
    std::vector<Color> colors;    ///< of each triangle, or empty
    std::size_t withoutPoint = 0; ///< faces left out since a corner names no point
    std::size_t notFinite = 0;    ///< faces left out since a corner has a coordinate that is not finite
    std::size_t tooSmall = 0;     ///< faces left out since they have less than three corners
};

/// Cuts faces into triangles and leaves out those that cannot be used.
/// @threads any; uses the TBB pool
[[nodiscard]] CheckedFaces checkFaces(const std::vector<Polygons>& polygons, const std::vector<Vector3f>& points);

/// Adds the sentences that tell what `faces` left out.
void warnAboutFaces(const Source& source, const CheckedFaces& faces, std::vector<std::string>& warnings);

/// Adds a sentence where a file has fewer elements than it states.
/// @param what  their name: "points"
void warnIfCutOff(const Source& source, std::size_t read, std::size_t stated, std::string_view what,
                  std::vector<std::string>& warnings);

/// Checks what a reader gathered and makes a mesh of it, or a point cloud where there are no faces.
/// @param[out] warnings  sentences about what was left out
/// @return the object; or one sentence for the user
/// @threads any; uses the TBB pool
[[nodiscard]] tl::expected<std::shared_ptr<VisualObject>, std::string>
assembleObject(const Source& source, RawMesh raw, std::vector<std::string>& warnings);

/// The same for a file that holds nothing but this object.
/// @param warnings  what the reader has to say, which comes first
[[nodiscard]] tl::expected<LoadedObjects, std::string> assembleFile(const Source& source, RawMesh raw,
                                                                    std::vector<std::string> warnings);

} // namespace VX
