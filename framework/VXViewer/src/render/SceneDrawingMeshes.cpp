#include "render/SceneColors.h"
#include "render/SceneDrawing.h"

#include <Eigen/LU>

#include <algorithm>

namespace VX
{

namespace
{

constexpr GLuint markSlot = 3;
constexpr float wireWidth = 1;

Box3d placedBox(const Eigen::Matrix4d& place, const Box3f& box)
{
    Box3d result;
    if (box.isEmpty())
        return result;
    for (int i = 0; i < 8; ++i)
    {
        const Vector3d corner = box.cast<double>().corner(static_cast<Box3d::CornerType>(i));
        result.extend(Vector3d((place * corner.homogeneous()).head<3>()));
    }
    return result;
}

} // namespace

bool hidesBacks(const GpuMesh& mesh, const Eigen::Matrix4d& toCamera, ClipRange range)
{
    // Cut open by the near plane, a solid shows its inside.
    return mesh.solid && -placedBox(toCamera, mesh.box).max().z() >= range.nearPlane;
}

SceneDrawing::MeshInView::MeshInView(const SceneDrawing& drawing, const SceneContents::MeshItem& mesh)
    : item(&mesh)
    , placement(drawing, mesh.world, mesh.gpu->center)
    , volume(placement.toCamera, drawing.projection_, drawing.frame_.camera.projection())
    , depth(drawing.frame_.camera.depth(mesh.world * mesh.gpu->center))
    , hidesBacks(VX::hidesBacks(*mesh.gpu, placement.toCamera, drawing.range_))
{
}

bool SceneDrawing::MeshInView::isTransparent() const
{
    return item->object->color().a < 255;
}

bool SceneDrawing::MeshInView::shows(const MeshCluster& cluster) const
{
    return volume.mayShow(cluster.box) && !(hidesBacks && volume.facesAway(cluster.box, cluster.normals));
}

void SceneDrawing::findMeshes_()
{
    for (const SceneContents::MeshItem& item : contents_.meshes)
    {
        if (item.gpu->levels.empty())
            continue;
        MeshInView mesh(*this, item);
        if (mesh.volume.mayShow(item.gpu->box))
            meshes_.push_back(std::move(mesh));
    }
    // Nearest first, so that what is hidden is not shaded.
    std::ranges::sort(meshes_, {}, &MeshInView::depth);
    if (budget_ == 0)
        return;
    const std::vector<MeshDetail> plan = plan_();
    for (std::size_t i = 0; i < meshes_.size(); ++i)
    {
        meshes_[i].detail = plan[i];
        simplified_ |= !(plan[i] == MeshDetail{});
    }
}

std::vector<MeshDetail> SceneDrawing::plan_() const
{
    std::vector<std::vector<std::uint64_t>> visible(meshes_.size());
    for (std::size_t i = 0; i < meshes_.size(); ++i)
    {
        for (const GpuTriangles& level : meshes_[i].item->gpu->levels)
        {
            std::uint64_t& sum = visible[i].emplace_back(0);
            for (const MeshCluster& cluster : level.clusters)
                sum += meshes_[i].shows(cluster) ? cluster.triangleCount : 0;
        }
    }
    return planDetail(visible, budget_);
}

void SceneDrawing::drawOpaqueMeshes_()
{
    // Lines along edges win against the surface they lie on.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1, 1);
    for (const MeshInView& mesh : meshes_)
    {
        if (!mesh.isTransparent())
            drawMesh_(mesh, mesh.hidesBacks ? GL_BACK : GL_NONE);
    }
    glDisable(GL_POLYGON_OFFSET_FILL);
    endMeshes_();
}

void SceneDrawing::drawTransparentMeshes_()
{
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    for (auto mesh = meshes_.rbegin(); mesh != meshes_.rend(); ++mesh)
    {
        if (!mesh->isTransparent())
            continue;
        glEnable(GL_POLYGON_OFFSET_FILL);
        // What shows its back is farther away, but for few folds.
        if (!mesh->hidesBacks)
            drawMesh_(*mesh, GL_FRONT);
        drawMesh_(*mesh, GL_BACK);
        glDisable(GL_POLYGON_OFFSET_FILL);
        endMeshes_();
        drawEdges_(*mesh->item);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

void SceneDrawing::endMeshes_()
{
    glDisable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glFrontFace(GL_CCW);
}

unsigned SceneDrawing::flavorOf_(const MeshInView& mesh) const
{
    const SceneContents::MeshItem& item = *mesh.item;
    const bool wire = frame_.options.wireframe && mesh.detail == MeshDetail{} && item.gpu->sides() != nullptr;
    const unsigned selected = mesh.detail.level == 0 ? MeshFlavor::selectedFaces : MeshFlavor::selectedPoints;
    return (item.object->isFlatShaded() ? MeshFlavor::flat : 0) |
           (item.gpu->hasVertexColors ? MeshFlavor::vertexColors : 0) |
           (item.gpu->hasFaceColors ? MeshFlavor::faceColors : 0) | (item.object->selectedFaces() ? selected : 0) |
           (wire ? MeshFlavor::wire : 0);
}

void SceneDrawing::drawMesh_(const MeshInView& mesh, GLenum culled)
{
    const SceneContents::MeshItem& item = *mesh.item;
    const Placement& placement = mesh.placement;
    const unsigned flavor = flavorOf_(mesh);
    const MeshProgram& program = gpu_.programs.mesh(flavor);
    program.program.use();
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.toCamera, Eigen::Matrix4f(placement.toCamera.cast<float>()));
    ShaderProgram::set(program.normalToCamera, placement.normalToCamera);
    ShaderProgram::set(program.viewRay, viewRay_);
    const bool ownColors = item.gpu->hasVertexColors || item.gpu->hasFaceColors;
    ShaderProgram::set(program.color, ownColors ? Eigen::Vector3f::Ones().eval() : toFloats(item.object->color()));
    ShaderProgram::set(program.opacity, opacityOf(item.object->color()));
    ShaderProgram::set(program.highlight, highlightOf(item.selected));
    ShaderProgram::set(program.selectionColor, toFloats(frame_.options.selectedFaces));
    ShaderProgram::set(program.halfViewport, halfViewport_());
    ShaderProgram::set(program.halfWireWidth, wireWidth * frame_.options.scale / 2);
    glFrontFace(placement.toCamera.topLeftCorner<3, 3>().determinant() < 0 ? GL_CW : GL_CCW);
    if (culled == GL_NONE)
    {
        glDisable(GL_CULL_FACE);
    }
    else
    {
        glEnable(GL_CULL_FACE);
        glCullFace(culled);
    }
    const GpuTriangles& triangles = item.gpu->levels[mesh.detail.level];
    glBindVertexArray(triangles.array.name());
    bindMeshTextures_(mesh, flavor);
    drawClusters_(mesh, triangles, program, mesh.detail.step);
    if ((flavor & MeshFlavor::selectedPoints) != 0)
        glDisableVertexAttribArray(markSlot);
}

void SceneDrawing::bindMeshTextures_(const MeshInView& mesh, unsigned flavor)
{
    GpuMesh& gpu = *mesh.item->gpu;
    const ObjectMesh& object = *mesh.item->object;
    const std::shared_ptr<const FaceSet>& faces = object.selectedFaces();
    // Before anything is bound: what is made for the first time here is bound while it is made.
    GpuFaceSet* selected = faces ? &gpu_.faceSets.get(faces) : nullptr;
    if ((flavor & MeshFlavor::selectedPoints) != 0)
    {
        glBindBuffer(GL_ARRAY_BUFFER, selected->pointMarks(*object.mesh(), *faces).name());
        glEnableVertexAttribArray(markSlot);
        glVertexAttribPointer(markSlot, 1, GL_UNSIGNED_BYTE, GL_TRUE, 1, nullptr);
    }
    const auto bind = [](int unit, const Gl::Texture& texture)
    {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glBindTexture(GL_TEXTURE_BUFFER, texture.name());
    };
    if ((flavor & MeshFlavor::faceColors) != 0)
        bind(MeshTextureUnit::faceColors, gpu.levels[mesh.detail.level].faceColors);
    if ((flavor & MeshFlavor::selectedFaces) != 0)
        bind(MeshTextureUnit::selectedFaces, selected->texture());
    if ((flavor & MeshFlavor::wire) != 0)
    {
        bind(MeshTextureUnit::points, gpu.sides()->points);
        bind(MeshTextureUnit::corners, gpu.sides()->corners);
    }
    glActiveTexture(GL_TEXTURE0);
}

void SceneDrawing::drawClusters_(const MeshInView& mesh, const GpuTriangles& triangles, const MeshProgram& program,
                                 std::uint32_t step)
{
    // Neighbours that show are drawn in one go.
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    const auto flush = [&]
    {
        if (count == 0)
            return;
        ShaderProgram::set(program.firstTriangle, static_cast<int>(first));
        triangles.draw(first, count);
        drawnTriangles_ += count;
        count = 0;
    };
    for (const MeshCluster& cluster : triangles.clusters)
    {
        if (!mesh.shows(cluster))
        {
            flush();
            continue;
        }
        const std::uint32_t shown = std::max(1U, cluster.triangleCount / step);
        if (count == 0 || first + count != cluster.firstTriangle)
        {
            flush();
            first = cluster.firstTriangle;
        }
        count += shown;
    }
    flush();
}

} // namespace VX
