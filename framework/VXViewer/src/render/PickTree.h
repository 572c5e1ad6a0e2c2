#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Camera.h>

#include <embree3/rtcore.h>

#include <atomic>
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

    /// Builds the tree on this thread and Embree's own, for speed of building rather than of casting. Keeps `mesh`'s
    /// triangles by reference: hold the mesh as long.
    /// @param stop  ends the building when it becomes true; the tree then meets nothing
    PickTree(RTCDevice device, const Mesh& mesh, std::atomic<bool>& stop);

    /// The triangle that the ray meets first, from whatever side.
    /// @param ray      in the mesh's coordinates; the direction may have any length
    /// @param endless  the ray is a line: what lies behind its origin counts too, and distances may be negative
    [[nodiscard]] std::optional<Hit> cast(const Ray& ray, bool endless) const;

private:
    struct Release
    {
        void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
    };

    std::unique_ptr<RTCSceneTy, Release> scene_;
    Vector3d center_;
    double radius_;
    bool built_ = false;
};

} // namespace VX
