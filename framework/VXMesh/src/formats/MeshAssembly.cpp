#include "formats/MeshAssembly.h"

#include "formats/PointOffset.h"
#include "formats/Source.h"
#include "formats/Triangulate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t kGrain = 65536;

template <typename Test>
bool allOf(std::span<const Vector3f> vectors, const Test& test)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, vectors.size(), kGrain), true,
        [&](const tbb::blocked_range<std::size_t>& range, bool good)
        { return good && std::ranges::all_of(vectors.subspan(range.begin(), range.size()), test); },
        [](bool a, bool b) { return a && b; });
}

bool isFinite(const Vector3f& vector)
{
    return vector.allFinite();
}

/// Tells which faces of a piece can be used, and counts why others cannot.
class FaceCheck
{
public:
    explicit FaceCheck(const std::vector<Vector3f>& points)
        : points_(points)
        , allFinite_(allOf(points, isFinite))
    {
    }

    /// The reason to leave a face out as a member of `faces`; null for a good face.
    [[nodiscard]] std::size_t CheckedFaces::* reasonAgainst(std::span<const std::uint32_t> face) const
    {
        if (face.size() < 3)
            return &CheckedFaces::tooSmall;
        for (const std::uint32_t index : face)
        {
            if (index >= points_.size())
                return &CheckedFaces::withoutPoint;
        }
        const auto isPointFinite = [&](std::uint32_t index) { return points_[index].allFinite(); };
        if (!allFinite_ && !std::ranges::all_of(face, isPointFinite))
            return &CheckedFaces::notFinite;
        return nullptr;
    }

private:
    const std::vector<Vector3f>& points_;
    bool allFinite_;
};

/// Whether each corner names one of the points, all of which are finite.
bool areSound(std::span<const Triangle> triangles, const std::vector<Vector3f>& points)
{
    const auto greatest = tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, triangles.size(), kGrain), std::uint32_t{0},
        [&](const tbb::blocked_range<std::size_t>& range, std::uint32_t index)
        {
            for (const Triangle& triangle : triangles.subspan(range.begin(), range.size()))
                index = std::max({index, triangle[0], triangle[1], triangle[2]});
            return index;
        },
        [](std::uint32_t a, std::uint32_t b) { return std::max(a, b); });
    return greatest < points.size() && allOf(points, isFinite);
}

template <typename Visit>
void forEachFace(const Polygons& polygons, const Visit& visit)
{
    const std::span<const std::uint32_t> corners = polygons.corners;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < polygons.count(); ++i)
    {
        const std::size_t size = polygons.sizes.empty() ? 3 : polygons.sizes[i];
        visit(i, corners.subspan(begin, size));
        begin += size;
    }
}

/// Cuts the good faces of one piece into triangles.
class PieceCutter
{
public:
    PieceCutter(const std::vector<Vector3f>& points, const FaceCheck& check)
        : points_(points)
        , check_(check)
    {
    }

    /// @param triangles, colors  where those of the piece begin; `colors` may be null
    void cut(const Polygons& polygons, Triangle* triangles, Color* colors)
    {
        forEachFace(polygons,
                    [&](std::size_t i, std::span<const std::uint32_t> face)
                    {
                        if (check_.reasonAgainst(face))
                            return;
                        const std::size_t count = face.size() - 2;
                        cutFace_(face, {triangles, count});
                        triangles += count;
                        if (colors)
                            colors = std::fill_n(colors, count,
                                                 polygons.colors.empty() ? VisualObject::defaultColor()
                                                                         : polygons.colors[i]);
                    });
    }

private:
    void cutFace_(std::span<const std::uint32_t> face, std::span<Triangle> triangles)
    {
        if (face.size() == 3)
        {
            triangles[0] = Triangle(face[0], face[1], face[2]);
            return;
        }
        corners_.clear();
        for (const std::uint32_t index : face)
            corners_.push_back(points_[index].cast<double>());
        triangulatePolygon(corners_, triangles);
        for (Triangle& triangle : triangles)
            triangle = Triangle(face[triangle[0]], face[triangle[1]], face[triangle[2]]);
    }

    const std::vector<Vector3f>& points_;
    const FaceCheck& check_;
    std::vector<Vector3d> corners_;
};

bool isUnit(const Vector3f& normal)
{
    return std::abs(normal.squaredNorm() - 1.0F) < 1e-4F;
}

/// Unit length for all, or no normals at all where one has no direction.
void normalize(std::vector<Vector3f>& normals)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, normals.size(), kGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                          {
                              if (!isUnit(normals[i]))
                                  normals[i].stableNormalize();
                          }
                      });
    if (!allOf(normals, isUnit))
        normals = {};
}

template <typename Attribute>
void keepAt(std::vector<Attribute>& attributes, const std::vector<std::uint32_t>& newIndex)
{
    for (std::size_t i = 0; i < attributes.size(); ++i)
    {
        if (newIndex[i] != kNoPoint)
            attributes[newIndex[i]] = attributes[i];
    }
    if (!attributes.empty())
        attributes.resize(static_cast<std::size_t>(
            std::ranges::count_if(newIndex, [](std::uint32_t index) { return index != kNoPoint; })));
}

/// Takes out the points that are not finite; no triangle may use them.
/// @return how many there were
std::size_t dropPointsNotFinite(Mesh& mesh)
{
    if (allOf(mesh.points, isFinite))
        return 0;
    const std::size_t count = mesh.points.size();
    std::vector<std::uint32_t> newIndex(count, kNoPoint);
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (mesh.points[i].allFinite())
            newIndex[i] = next++;
    }
    keepAt(mesh.normals, newIndex);
    keepAt(mesh.vertexColors, newIndex);
    keepAt(mesh.points, newIndex);
    for (Triangle& triangle : mesh.triangles)
        triangle = Triangle(newIndex[triangle[0]], newIndex[triangle[1]], newIndex[triangle[2]]);
    return count - next;
}

Polygons asPolygons(std::span<const Triangle> triangles)
{
    Polygons polygons;
    polygons.corners.reserve(3 * triangles.size());
    for (const Triangle& triangle : triangles)
        polygons.corners.insert(polygons.corners.end(), triangle.begin(), triangle.end());
    return polygons;
}

std::shared_ptr<VisualObject> makeObject(Mesh mesh, bool hasFaces)
{
    if (hasFaces)
        return std::make_shared<ObjectMesh>(std::make_shared<Mesh>(std::move(mesh)));
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = std::move(mesh.points);
    cloud->normals = std::move(mesh.normals);
    cloud->colors = std::move(mesh.vertexColors);
    return std::make_shared<ObjectPoints>(std::move(cloud));
}

} // namespace

CheckedFaces checkFaces(const std::vector<Polygons>& polygons, const std::vector<Vector3f>& points)
{
    const FaceCheck check(points);

    struct Counts : CheckedFaces
    {
        std::size_t triangleCount = 0;
    };

    std::vector<Counts> counts(polygons.size());
    tbb::parallel_for(std::size_t{0}, polygons.size(),
                      [&](std::size_t piece)
                      {
                          forEachFace(polygons[piece],
                                      [&](std::size_t, std::span<const std::uint32_t> face)
                                      {
                                          if (const auto reason = check.reasonAgainst(face))
                                              ++(counts[piece].*reason);
                                          else
                                              counts[piece].triangleCount += face.size() - 2;
                                      });
                      });

    CheckedFaces result;
    std::vector<std::size_t> begins(polygons.size() + 1, 0);
    for (std::size_t piece = 0; piece < polygons.size(); ++piece)
    {
        begins[piece + 1] = begins[piece] + counts[piece].triangleCount;
        result.withoutPoint += counts[piece].withoutPoint;
        result.notFinite += counts[piece].notFinite;
        result.tooSmall += counts[piece].tooSmall;
    }
    const bool hasColors = std::ranges::any_of(polygons, [](const Polygons& piece) { return !piece.colors.empty(); });
    result.triangles.resize(begins.back());
    result.colors.resize(hasColors ? begins.back() : 0);
    tbb::parallel_for(std::size_t{0}, polygons.size(),
                      [&](std::size_t piece)
                      {
                          PieceCutter(points, check)
                              .cut(polygons[piece], result.triangles.data() + begins[piece],
                                   hasColors ? result.colors.data() + begins[piece] : nullptr);
                      });
    return result;
}

void warnAboutFaces(const Source& source, const CheckedFaces& faces, std::vector<std::string>& warnings)
{
    const auto warn = [&](std::size_t count, std::string_view what)
    {
        if (count > 0)
            warnings.push_back(source.warning(fmt::format("faces that {} were left out: {}.", what, count)));
    };
    warn(faces.withoutPoint, "refer to points that are not there");
    warn(faces.notFinite, "have coordinates that are not finite numbers");
    warn(faces.tooSmall, "have less than three corners");
}

void warnIfCutOff(const Source& source, std::size_t read, std::size_t stated, std::string_view what,
                  std::vector<std::string>& warnings)
{
    if (read < stated)
        warnings.push_back(
            source.warning(fmt::format("the file ends too early; {} of its {} {} were read.", read, stated, what)));
}

tl::expected<std::shared_ptr<VisualObject>, std::string> assembleObject(const Source& source, RawMesh raw,
                                                                        std::vector<std::string>& warnings)
{
    Mesh mesh;
    Vector3d offset;
    if (raw.precisePoints.empty())
    {
        mesh.points = std::move(raw.points);
        offset = raw.offset ? *raw.offset : subtractOffset(mesh.points);
    }
    else
    {
        mesh.points = subtractOffset(raw.precisePoints, offset);
        raw.precisePoints = {};
    }
    mesh.normals = std::move(raw.normals);
    mesh.vertexColors = std::move(raw.vertexColors);
    normalize(mesh.normals);

    if (mesh.points.size() >= kNoPoint)
        return source.error("it holds more than 4,294,967,294 points.");
    const bool hasPolygons = std::ranges::any_of(raw.polygons, [](const Polygons& piece) { return piece.count() > 0; });
    const bool hasFaces = hasPolygons || !raw.triangles.empty();
    if (!hasPolygons && areSound(raw.triangles, mesh.points))
        mesh.triangles = std::move(raw.triangles);
    else if (hasFaces)
    {
        raw.polygons.insert(raw.polygons.begin(), asPolygons(raw.triangles));
        raw.triangles = {};
        CheckedFaces faces = checkFaces(raw.polygons, mesh.points);
        raw.polygons.clear();
        if (faces.triangles.empty())
            return source.error("none of its faces can be used.");
        warnAboutFaces(source, faces, warnings);
        mesh.triangles = std::move(faces.triangles);
        mesh.faceColors = std::move(faces.colors);
    }
    if (const std::size_t dropped = dropPointsNotFinite(mesh); dropped > 0)
        warnings.push_back(
            source.warning(fmt::format("points whose coordinates are not finite numbers were left out: {}.", dropped)));
    if (mesh.points.empty())
        return source.error("it holds no points.");
    auto object = makeObject(std::move(mesh), hasFaces);
    object->setName(source.stem());
    object->setTransform(Transform(Eigen::Translation3d(offset)));
    return object;
}

tl::expected<LoadedObjects, std::string> assembleFile(const Source& source, RawMesh raw,
                                                      std::vector<std::string> warnings)
{
    auto object = assembleObject(source, std::move(raw), warnings);
    if (!object)
        return tl::unexpected(std::move(object.error()));
    return LoadedObjects{.objects = {std::move(*object)}, .warnings = std::move(warnings)};
}

} // namespace VX
