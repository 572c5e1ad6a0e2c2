#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Camera.h>

#include <embree3/rtcore.h>

#include <memory>
#include <optional>

namespace VX
{

/// A search tree over the triangles of one mesh for ray casts.
/// @threads any, one at a time
class PickTree
{
public:
    struct Hit
    {
        std::uint32_t triangle = 0;
        double distance = 0; ///< from the ray's origin in units of its direction
    };

    /// Builds the tree on this thread and Embree's own. Keeps `mesh`'s triangles by reference: hold the mesh as long.
    PickTree(RTCDevice device, const Mesh& mesh);

    /// The triangle that the ray meets first, from whatever side.
    /// @param ray  in the mesh's coordinates; the direction may have any length
    [[nodiscard]] std::optional<Hit> cast(const Ray& ray) const;

private:
    struct Release
    {
        void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
    };

    std::unique_ptr<RTCSceneTy, Release> scene_;
    Vector3d center_;
    double radius_;
};

} // namespace VX
