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

/// A simplified form of a large mesh: few triangles over the same vertices.
struct StandIn
{
    std::vector<Triangle> triangles;
    std::vector<MeshCluster> clusters;
    std::vector<Color> faceColors; ///< one a triangle, or empty
};

/// Triangles over the vertices of a mesh, in the graphics memory.
struct GpuTriangles
{
    /// Draws triangles `first` to `first + count` with a mesh program in use.
    void draw(std::uint32_t first, std::uint32_t count) const;

    std::uint32_t count = 0;
    std::vector<MeshCluster> clusters; ///< their boxes are from the mesh's centre
    Gl::Buffer indices;
    Gl::VertexArray array;
    Gl::Buffer faceColorBuffer;
    Gl::Texture faceColors;
};

/// What the shader of triangles reads to find the sides of the one it draws.
struct GpuSides
{
    Gl::Texture points;
    Gl::Texture corners;
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

    /// @param simplified  each with fewer triangles than the one before
    void setStandIns(std::vector<StandIn> simplified);

    /// Of the full mesh, which has triangles; made at the first call. Null where the graphics cannot read as many.
    const GpuSides* sides();

    Vector3d center;
    Box3f box; ///< from the centre
    bool solid = false;
    bool hasVertexColors = false;
    bool hasFaceColors = false;
    bool standInsRequested = false;

    Gl::Buffer vertices;
    Gl::Buffer vertexColors;
    std::vector<GpuTriangles> levels; ///< the full mesh, then its stand-ins; none without triangles
    GpuSegments edges;

private:
    void addLevel_(Gl::Buffer indices, std::vector<MeshCluster> clusters, const std::vector<Color>& faceColors);

    GpuSides sides_;
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
