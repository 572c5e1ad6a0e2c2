#include "render/PickTree.h"

#include <algorithm>
#include <limits>

namespace VX
{

namespace
{

RTCGeometry makeGeometry(RTCDevice device, const Mesh& mesh)
{
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    // A copy: Embree reads sixteen bytes for each point, past the end of the last.
    void* const points = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                 sizeof(Vector3f), mesh.points.size());
    std::ranges::copy(mesh.points, static_cast<Vector3f*>(points));
    rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, mesh.triangles.data(), 0,
                               sizeof(Triangle), mesh.triangles.size());
    rtcCommitGeometry(geometry);
    return geometry;
}

Box3f boxOf(const Mesh& mesh)
{
    Box3f box;
    for (const Vector3f& point : mesh.points)
        box.extend(point);
    return box;
}

} // namespace

PickTree::PickTree(RTCDevice device, const Mesh& mesh, std::atomic<bool>& stop)
    : scene_(rtcNewScene(device))
{
    const Box3f box = boxOf(mesh);
    center_ = box.isEmpty() ? Vector3d(Vector3d::Zero()) : Vector3d(box.center().cast<double>());
    radius_ = box.isEmpty() ? 0 : static_cast<double>(box.diagonal().norm()) / 2;
    rtcSetSceneFlags(scene_.get(), static_cast<RTCSceneFlags>(RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_COMPACT));
    // A pick casts one ray: a tree that is built in a fifth of the time serves it better than a perfect one.
    rtcSetSceneBuildQuality(scene_.get(), RTC_BUILD_QUALITY_LOW);
    rtcSetSceneProgressMonitorFunction(
        scene_.get(), [](void* flag, double) { return !static_cast<const std::atomic<bool>*>(flag)->load(); }, &stop);
    RTCGeometry geometry = makeGeometry(device, mesh);
    rtcAttachGeometry(scene_.get(), geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(scene_.get());
    rtcSetSceneProgressMonitorFunction(scene_.get(), nullptr, nullptr);
    built_ = rtcGetDeviceError(device) == RTC_ERROR_NONE;
}

std::optional<PickTree::Hit> PickTree::cast(const Ray& ray, bool endless) const
{
    if (!built_)
        return {};
    // From near the mesh, so that single precision is enough for an eye far away.
    const double length = ray.direction.norm();
    const Vector3d direction = ray.direction / length;
    const double before = (center_ - ray.origin).dot(direction) - 1.01 * radius_;
    const double start = endless ? before : std::max(0.0, before);
    const Vector3f origin = (ray.origin + start * direction).cast<float>();

    RTCRayHit query{};
    query.ray.org_x = origin.x();
    query.ray.org_y = origin.y();
    query.ray.org_z = origin.z();
    query.ray.dir_x = static_cast<float>(direction.x());
    query.ray.dir_y = static_cast<float>(direction.y());
    query.ray.dir_z = static_cast<float>(direction.z());
    query.ray.tfar = std::numeric_limits<float>::infinity();
    query.ray.mask = ~0U;
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(scene_.get(), &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return {};
    return Hit{query.hit.primID, (start + static_cast<double>(query.ray.tfar)) / length};
}

} // namespace VX
