#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

namespace VX
{

// Simple shapes in scene units, about the origin with their axis along z. But for the plane they are closed, and
// triangles run counter-clockwise seen from outside. Lengths are greater than 0; round shapes are cut into as many
// segments as asked for, at least 3.

struct CubeShape
{
    float width = 10;  ///< along x
    float depth = 10;  ///< along y
    float height = 10; ///< along z
};

struct CylinderShape
{
    float radius = 5;
    float height = 10;
    int segments = 64;
};

struct SphereShape
{
    float radius = 5;
    int segments = 64; ///< around; from pole to pole there are half as many
};

struct PrismShape
{
    float radius = 5; ///< of the circle through the corners
    float height = 10;
    int sides = 6;
};

struct TorusShape
{
    float radius = 5;        ///< from the middle of the ring to the middle of its tube
    float tubeRadius = 1.5F; ///< less than `radius`
    int segments = 96;
    int tubeSegments = 32;
};

/// Its foot is at the origin.
struct ArrowShape
{
    float length = 10; ///< head included
    float shaftRadius = 0.5F;
    float headLength = 3;    ///< less than `length`
    float headRadius = 1.2F; ///< more than `shaftRadius`
    int segments = 48;
};

struct PlaneShape
{
    float width = 10; ///< along x
    float depth = 10; ///< along y
};

struct ConeShape
{
    float radius = 5;
    float height = 10;
    int segments = 64;
};

/// @threads any
[[nodiscard]] VXMESH_API Mesh makeCube(const CubeShape& shape);
[[nodiscard]] VXMESH_API Mesh makeCylinder(const CylinderShape& shape);
[[nodiscard]] VXMESH_API Mesh makeSphere(const SphereShape& shape);
[[nodiscard]] VXMESH_API Mesh makePrism(const PrismShape& shape);
[[nodiscard]] VXMESH_API Mesh makeTorus(const TorusShape& shape);
[[nodiscard]] VXMESH_API Mesh makeArrow(const ArrowShape& shape);

/// Facing along z.
[[nodiscard]] VXMESH_API Mesh makePlane(const PlaneShape& shape);
[[nodiscard]] VXMESH_API Mesh makeCone(const ConeShape& shape);

} // namespace VX
