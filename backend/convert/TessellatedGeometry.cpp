#include "TessellatedGeometry.h"

#include "FaceColors.h"
#include "StepUnits.h"
#include "TriangulatedFace.h"

#include <framework/VXMesh/src/formats/PointOffset.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace VX
{

namespace
{

/// A face to be read, and what is known about it from above.
struct FaceSource
{
    StepIndex face = noStepInstance;
    StepIndex coordinates = noStepInstance;
    double unit = 1;
    std::optional<Color> color;
};

std::vector<FaceSource> findFaces(const StepFile& file, const StepStyles& styles, std::span<const StepItem> items)
{
    std::vector<FaceSource> faces;
    std::unordered_set<StepIndex> seen;
    for (const StepItem& item : items)
    {
        const double unit = stepLengthUnit(file, item.context);
        const std::optional<Color> color = styles.colorOf(item.item, item.representation);
        std::unordered_map<StepIndex, Color> faceColors;
        for (const auto& [face, faceColor] : styles.faceColorsOf(item.item))
            faceColors.emplace(face, faceColor);
        std::vector<StepIndex> indices{item.item};
        if (!isTriangulatedFace(file.type(item.item)))
            indices = file.references(file.record(item.item)[1]);
        for (const StepIndex face : indices)
        {
            if (!isTriangulatedFace(file.type(face)) || !seen.insert(face).second)
                continue;
            const auto found = faceColors.find(face);
            faces.push_back(
                {face, coordinatesListOf(file, face), unit, found == faceColors.end() ? color : found->second});
        }
    }
    return faces;
}

/// Reads the coordinates of all faces, each list once.
std::unordered_map<StepIndex, std::vector<Vector3d>> readCoordinates(const StepFile& file,
                                                                     const std::vector<FaceSource>& faces)
{
    std::vector<StepIndex> lists;
    lists.reserve(faces.size());
    for (const FaceSource& face : faces)
        lists.push_back(face.coordinates);
    std::ranges::sort(lists);
    lists.erase(std::unique(lists.begin(), lists.end()), lists.end());
    std::vector<std::vector<Vector3d>> points(lists.size());
    tbb::parallel_for(std::size_t{0}, lists.size(),
                      [&](std::size_t k) { points[k] = readCoordinatesList(file, lists[k]); });
    std::unordered_map<StepIndex, std::vector<Vector3d>> coordinates;
    for (std::size_t k = 0; k < lists.size(); ++k)
        coordinates.emplace(lists[k], std::move(points[k]));
    return coordinates;
}

/// Puts the faces one behind the other.
class BodyAssembler
{
public:
    void add(const TriangulatedFace& face, const FaceSource& source)
    {
        if (face.triangles.empty())
            return;
        firstTriangles_.push_back(mesh_->triangles.size());
        colors_.push_back(source.color);
        const auto first = static_cast<std::uint32_t>(points_.size());
        for (const Vector3d& point : face.points)
            points_.push_back(point * source.unit);
        hasNormals_ = hasNormals_ && !face.normals.empty();
        mesh_->normals.insert(mesh_->normals.end(), face.normals.begin(), face.normals.end());
        for (const Triangle& triangle : face.triangles)
            mesh_->triangles.emplace_back(triangle.array() + first);
    }

    std::optional<BodyGeometry> finish()
    {
        BodyGeometry body;
        mesh_->points = subtractOffset(points_, body.offset);
        if (!hasNormals_)
            mesh_->normals.clear();
        if (!isDrawable(*mesh_))
            return std::nullopt;
        body.color = applyFaceColors(*mesh_, firstTriangles_, colors_);
        body.mesh = mesh_;
        return body;
    }

private:
    std::shared_ptr<Mesh> mesh_ = std::make_shared<Mesh>();
    std::vector<Vector3d> points_;
    std::vector<std::size_t> firstTriangles_;
    std::vector<std::optional<Color>> colors_;
    bool hasNormals_ = true;
};

} // namespace

std::optional<BodyGeometry> readTessellatedBody(const StepFile& file, const StepStyles& styles,
                                                std::span<const StepItem> items)
{
    const std::vector<FaceSource> sources = findFaces(file, styles, items);
    const std::unordered_map<StepIndex, std::vector<Vector3d>> coordinates = readCoordinates(file, sources);
    std::vector<TriangulatedFace> faces(sources.size());
    tbb::parallel_for(
        std::size_t{0}, faces.size(), [&](std::size_t k)
        { faces[k] = readTriangulatedFace(file, sources[k].face, coordinates.at(sources[k].coordinates)); });
    BodyAssembler body;
    for (std::size_t k = 0; k < faces.size(); ++k)
        body.add(faces[k], sources[k]);
    std::optional<BodyGeometry> geometry = body.finish();
    if (geometry && !geometry->color)
        geometry->color = styles.colorOf(items.front().item, items.front().representation);
    return geometry;
}

} // namespace VX
