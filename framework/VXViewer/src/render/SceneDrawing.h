#pragma once

#include "render/DetailPlan.h"
#include "render/GeometryCache.h"
#include "render/GpuFaceSet.h"
#include "render/GpuGeometry.h"
#include "render/SceneMarks.h"
#include "render/ScenePrograms.h"
#include "render/SceneWalk.h"
#include "render/ViewVolume.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>
#include <VXViewer/SceneRenderer.h>

#include <vector>

namespace VX
{

/// What the renderer keeps on the graphics between pictures.
struct GpuScene
{
    ScenePrograms programs;
    GeometryCache<Mesh, GpuMesh> meshes;
    GeometryCache<PointCloud, GpuPoints> points;
    GeometryCache<Lines, GpuLines> lines;
    GeometryCache<FaceSet, GpuFaceSet> faceSets;
    SceneMarks marks;
};

/// The visible objects of a picture with what they are drawn from.
struct SceneContents
{
    struct MeshItem
    {
        const ObjectMesh* object;
        GpuMesh* gpu;
        Transform world;
        bool selected;
    };

    struct PointsItem
    {
        const ObjectPoints* object;
        GpuPoints* gpu;
        Transform world;
        bool selected;
    };

    struct LinesItem
    {
        const ObjectLines* object;
        GpuLines* gpu;
        Transform world;
        bool selected;
    };

    /// Uploads what is not on the graphics yet.
    SceneContents(const SceneFrame& frame, GpuScene& gpu, const Box3d& sceneBox);

    std::vector<MeshItem> meshes;
    std::vector<PointsItem> points;
    std::vector<LinesItem> lines;
    Box3d box;
    std::uint64_t pointCount = 0;
};

/// Whether nobody sees the backs of a mesh's triangles in a picture.
/// @param toCamera  from coordinates relative to the mesh's centre
[[nodiscard]] bool hidesBacks(const GpuMesh& mesh, const Eigen::Matrix4d& toCamera, ClipRange range);

/// Draws one picture into the bound framebuffer.
class SceneDrawing
{
public:
    /// @param triangleBudget  about how many triangles to draw at most, and how many points, with stand-ins and parts
    ///                        of the detail; 0: all
    SceneDrawing(const SceneFrame& frame, const SceneContents& contents, GpuScene& gpu, std::uint64_t triangleBudget);

    void draw();

    [[nodiscard]] std::uint64_t drawnTriangles() const { return drawnTriangles_; }

    [[nodiscard]] bool isSimplified() const { return simplified_; }

    /// The depths between which the picture shows everything.
    [[nodiscard]] ClipRange range() const { return range_; }

private:
    /// From the coordinates of some geometry, relative to the middle of its box.
    struct Placement
    {
        Placement(const SceneDrawing& drawing, const Transform& world, const Vector3d& center);

        Eigen::Matrix4d toCamera;
        Eigen::Matrix4f toClip;
        Eigen::Matrix3f normalToCamera;
    };

    /// A mesh that is at least partly in the picture.
    struct MeshInView
    {
        MeshInView(const SceneDrawing& drawing, const SceneContents::MeshItem& mesh);

        /// False only where nothing of the cluster is seen.
        [[nodiscard]] bool shows(const MeshCluster& cluster) const;

        [[nodiscard]] bool isTransparent() const;

        const SceneContents::MeshItem* item;
        Placement placement;
        ViewVolume volume;
        double depth;
        bool hidesBacks;
        MeshDetail detail;
    };

    /// The extent of all that is drawn.
    [[nodiscard]] Box3d drawnBox_() const;
    /// In pixels.
    [[nodiscard]] Eigen::Vector2f halfViewport_() const;
    [[nodiscard]] bool showsBasis_() const;
    [[nodiscard]] double basisLength_() const;
    void drawBackground_();
    /// Fills `meshes_`, nearest first, and says how much of each is drawn.
    void findMeshes_();
    [[nodiscard]] std::vector<MeshDetail> plan_() const;
    void drawOpaqueMeshes_();

    /// Farthest first, each blended with what is there; they hide nothing from what is drawn later.
    void drawTransparentMeshes_();
    void endMeshes_();
    [[nodiscard]] unsigned flavorOf_(const MeshInView& mesh) const;

    /// @param culled  which side of the triangles is left out: GL_FRONT, GL_BACK or GL_NONE
    void drawMesh_(const MeshInView& mesh, GLenum culled);
    void bindMeshTextures_(const MeshInView& mesh, unsigned flavor);
    void drawClusters_(const MeshInView& mesh, const GpuTriangles& triangles, const MeshProgram& program,
                       std::uint32_t step);
    void drawLines_();

    /// The sharp edges of a mesh, where they are wanted.
    void drawEdges_(const SceneContents::MeshItem& item);
    void drawSegments_(const GpuSegments& segments, const Placement& placement, const Eigen::Vector3f& color,
                       float width, float opacity);
    void drawPoints_();
    void drawPointItem_(const SceneContents::PointsItem& item);
    void drawBasis_();
    void drawPivotMark_();

    const SceneFrame& frame_;
    const SceneContents& contents_;
    GpuScene& gpu_;
    std::uint64_t budget_;
    ClipRange range_;
    Eigen::Matrix4d view_;
    Eigen::Matrix4d projection_;
    Eigen::Vector4f viewRay_ = Eigen::Vector4f::Zero();
    std::vector<MeshInView> meshes_;
    std::uint64_t drawnTriangles_ = 0;
    bool simplified_ = false;
};

} // namespace VX
