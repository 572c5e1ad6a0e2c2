#pragma once

#include "render/GlObjects.h"
#include "render/MeshAnalysis.h"

#include <VXMesh/Geometry.h>

#include <memory>
#include <vector>

namespace VX
{

/// A drawn vertex.
struct GpuVertex
{
    Vector3f position; ///< from the middle of the geometry's box
    OctahedralNormal normal;
};

/// The stand-in of a large mesh: few triangles over the same vertices.
struct StandIn
{
    std::vector<Triangle> triangles;
    std::vector<Color> faceColors; ///< one a triangle, or empty
};

/// Segments between vertices that are in a buffer, read by the line shader.
struct GpuSegments
{
    GpuSegments() = default;

    /// @param points  a buffer of 16 bytes a point, the first three numbers of which are the place
    GpuSegments(const Gl::Buffer& points, const std::vector<Segment>& segments);

    /// Draws all with the line program in use, whose samplers read the texture units 0 (points) and 1 (segments).
    void draw() const;

    Gl::Buffer buffer;
    Gl::Texture pointTexture;
    Gl::Texture segmentTexture;
    GLsizei count = 0;
};

/// A mesh in the graphics memory.
struct GpuMesh
{
    explicit GpuMesh(const Mesh& mesh);

    void setStandIn(const StandIn& standIn);

    /// Draws triangles `first` to `first + count` of the full mesh, or of the stand-in, with a mesh program in use.
    void draw(std::uint32_t first, std::uint32_t count) const;

    Vector3d center;
    Box3f box;                         ///< from the centre
    std::vector<MeshCluster> clusters; ///< their boxes too
    bool solid = false;
    bool hasVertexColors = false;
    bool hasFaceColors = false;
    std::uint32_t triangleCount = 0;
    std::uint32_t standInTriangles = 0; ///< 0 while there is none
    bool standInRequested = false;

    Gl::Buffer vertices;
    Gl::Buffer vertexColors;
    Gl::Buffer indices;
    Gl::Buffer standInIndices;
    Gl::VertexArray full;
    Gl::VertexArray simple;
    Gl::Buffer faceColorBuffer;
    Gl::Texture faceColors;
    Gl::Buffer standInColorBuffer;
    Gl::Texture standInColors;
    GpuSegments edges;
};

/// A point cloud in the graphics memory.
struct GpuPoints
{
    explicit GpuPoints(const PointCloud& cloud);

    /// Draws every `step`th point with a point program in use.
    void draw(std::uint32_t step) const;

    Vector3d center;
    Box3f box; ///< from the centre
    bool hasNormals = false;
    bool hasColors = false;
    std::uint32_t count = 0;

    Gl::Buffer vertices;
    Gl::Buffer colors;
    Gl::VertexArray array;
};

/// Lines in the graphics memory.
struct GpuLines
{
    explicit GpuLines(const Lines& lines);

    Vector3d center;
    Box3f box; ///< from the centre
    Gl::Buffer vertices;
    GpuSegments segments;
};

} // namespace VX
