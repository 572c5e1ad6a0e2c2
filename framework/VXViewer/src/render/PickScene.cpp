#include "render/PickScene.h"

#include "render/SceneWalk.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <algorithm>
#include <limits>

namespace VX
{

namespace
{

/// How far from the cursor a point or line is still hit, in units of the design.
constexpr double reach = 5;

/// A point or line this part of the distance behind a surface lies on it rather than under it.
constexpr double onSurface = 0.002;

struct Candidate
{
    std::uint32_t element = 0;
    Vector3d point = Vector3d::Zero();
    double depth = 0;
};

/// The position along the line from `a` to `b`, 0 to 1, that is nearest to `pixel`.
double nearestOnSegment(const Vector2d& pixel, const Vector2d& a, const Vector2d& b)
{
    const Vector2d along = b - a;
    const double length = along.squaredNorm();
    return length > 0 ? std::clamp((pixel - a).dot(along) / length, 0.0, 1.0) : 0.0;
}

void keepNearer(std::optional<Candidate>& best, std::uint32_t element, const Vector3d& point, const PickScene& scene)
{
    const double depth = scene.camera.depth(point);
    if (!best || depth < best->depth)
        best = Candidate{element, point, depth};
}

std::optional<Candidate> pickPoints(const PickScene& scene, const PickScene::Item& item)
{
    std::optional<Candidate> best;
    for (std::uint32_t i = 0; i < item.points->points.size(); ++i)
    {
        const Vector3d point = item.world * item.points->points[i].cast<double>();
        const auto pixel = scene.camera.project(point, scene.size);
        if (pixel && (*pixel - scene.pixel).norm() <= reach * scene.scale)
            keepNearer(best, i, point, scene);
    }
    return best;
}

std::optional<Candidate> pickLines(const PickScene& scene, const PickScene::Item& item)
{
    std::optional<Candidate> best;
    for (std::uint32_t i = 0; i < item.lines->segments.size(); ++i)
    {
        const Segment& segment = item.lines->segments[i];
        const Vector3d a = item.world * item.lines->points[segment[0]].cast<double>();
        const Vector3d b = item.world * item.lines->points[segment[1]].cast<double>();
        const auto pixelA = scene.camera.project(a, scene.size);
        const auto pixelB = scene.camera.project(b, scene.size);
        if (!pixelA || !pixelB)
            continue;
        const double s = nearestOnSegment(scene.pixel, *pixelA, *pixelB);
        if ((*pixelA + s * (*pixelB - *pixelA) - scene.pixel).norm() > reach * scene.scale)
            continue;
        // Perspective foreshortens the farther part of the segment.
        const bool flat = scene.camera.projection() == Projection::Orthographic;
        const double weightA = flat ? 1 : 1 / scene.camera.depth(a);
        const double weightB = flat ? 1 : 1 / scene.camera.depth(b);
        const double t = s * weightB / ((1 - s) * weightA + s * weightB);
        keepNearer(best, i, a + t * (b - a), scene);
    }
    return best;
}

} // namespace

PickScene::PickScene(const ScenePicker::Request& request)
    : camera(request.camera)
    , size(request.size)
    , pixel(request.pixel)
    , scale(request.scale)
{
    if (!request.root)
        return;
    visitVisible(*request.root, request.viewport,
                 [this](const VisibleObject& visible)
                 {
                     Item item;
                     item.world = visible.world;
                     item.object = std::const_pointer_cast<Object>(visible.object.weak_from_this().lock());
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&visible.object))
                         item.mesh = mesh->mesh();
                     else if (const auto* points = dynamic_cast<const ObjectPoints*>(&visible.object))
                         item.points = points->pointCloud();
                     else if (const auto* lines = dynamic_cast<const ObjectLines*>(&visible.object);
                              lines && !isEdgeOfPart(*lines))
                         item.lines = lines->lines();
                     if (item.mesh || item.points || item.lines)
                         items.push_back(std::move(item));
                 });
}

PickTrees::PickTrees()
    : device_(rtcNewDevice(nullptr))
{
}

PickTrees::~PickTrees()
{
    trees_.clear();
    rtcReleaseDevice(device_);
}

const PickTree& PickTrees::treeOf_(const std::shared_ptr<const Mesh>& mesh, std::atomic<bool>& stop)
{
    std::erase_if(trees_, [](const auto& entry) { return entry.second.mesh.expired(); });
    Entry& entry = trees_[mesh.get()];
    if (!entry.tree)
        entry = {mesh, std::make_unique<PickTree>(device_, *mesh, stop)};
    return *entry.tree;
}

std::optional<PickResult> PickTrees::pick(const PickScene& scene, std::atomic<bool>& stop)
{
    const Ray ray = scene.camera.ray(scene.pixel, scene.size);
    // In an orthographic picture the eye may stand inside the scene, and what is behind it shows too.
    const bool endless = scene.camera.projection() == Projection::Orthographic;
    std::optional<PickResult> best;
    double bestDepth = 0;
    for (const PickScene::Item& item : scene.items)
    {
        if (!item.mesh || item.mesh->triangles.empty() || std::abs(item.world.linear().determinant()) == 0)
            continue;
        const Transform toLocal = item.world.inverse();
        const Ray localRay{toLocal * ray.origin, Vector3d(toLocal.linear() * ray.direction)};
        const auto hit = treeOf_(item.mesh, stop).cast(localRay, endless);
        if (!hit)
            continue;
        const Vector3d point = ray.origin + hit->distance * ray.direction;
        const double depth = scene.camera.depth(point);
        if (!best || depth < bestDepth)
        {
            best = PickResult{item.object, hit->triangle, point};
            bestDepth = depth;
        }
    }
    // What lies on the surface is hit before it.
    double limit = best ? bestDepth + onSurface * scene.camera.distance() : std::numeric_limits<double>::infinity();
    for (const PickScene::Item& item : scene.items)
    {
        if (item.mesh)
            continue;
        const auto candidate = item.points ? pickPoints(scene, item) : pickLines(scene, item);
        if (!candidate || candidate->depth > limit)
            continue;
        best = PickResult{item.object, candidate->element, candidate->point};
        limit = candidate->depth;
    }
    return best;
}

} // namespace VX
