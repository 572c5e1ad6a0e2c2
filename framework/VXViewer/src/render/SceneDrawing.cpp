#include "render/SceneDrawing.h"

#include <Eigen/LU>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

const Eigen::Vector3f accentColor(1.0F, 0.55F, 0.12F);
const Eigen::Vector3f edgeColor(0.07F, 0.08F, 0.10F);
constexpr float highlightStrength = 0.55F;
constexpr float edgeWidth = 1.1F;
constexpr float lineWidth = 1.6F;
constexpr float selectedLineWidth = 2.6F;
constexpr float basisWidth = 2;
constexpr float pointSize = 3;
constexpr float pivotSize = 10;
const Eigen::Vector3f pivotColor(0.95F, 0.95F, 0.95F);

Eigen::Vector3f toFloats(Color color)
{
    return Eigen::Vector3f(color.r, color.g, color.b) / 255.0F;
}

/// Colours are mixed as squares in the shaders.
Eigen::Vector4f highlightOf(bool selected)
{
    if (!selected)
        return Eigen::Vector4f::Zero();
    Eigen::Vector4f result;
    result << accentColor.cwiseProduct(accentColor), highlightStrength;
    return result;
}

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

SceneDrawing::SceneDrawing(const SceneFrame& frame, const SceneContents& contents, GpuScene& gpu,
                           std::uint64_t triangleBudget)
    : frame_(frame)
    , contents_(contents)
    , gpu_(gpu)
    , budget_(triangleBudget)
    , range_(frame.camera.clipRange(drawnBox_()))
    , view_(frame.camera.viewMatrix())
    , projection_(frame.camera.projectionMatrix(frame.size, range_))
{
    if (frame.camera.projection() == Projection::Perspective)
    {
        // From a pixel to the direction to it at depth 1.
        const auto scaleX = static_cast<float>(2 / (projection_(0, 0) * frame.size.width));
        const auto scaleY = static_cast<float>(2 / (projection_(1, 1) * frame.size.height));
        viewRay_ = {scaleX, scaleY, static_cast<float>(-1 / projection_(0, 0)),
                    static_cast<float>(-1 / projection_(1, 1))};
    }
}

bool SceneDrawing::showsBasis_() const
{
    return !(frame_.options.globalBasis & frame_.options.viewport).isEmpty() && !contents_.box.isEmpty();
}

double SceneDrawing::basisLength_() const
{
    return std::max(contents_.box.diagonal().norm() * 0.2, 1e-9);
}

Box3d SceneDrawing::drawnBox_() const
{
    Box3d box = contents_.box;
    if (showsBasis_())
        box.extend(Box3d(Vector3d::Zero(), Vector3d::Constant(basisLength_())));
    if (frame_.pivotMark)
        box.extend(*frame_.pivotMark);
    return box;
}

SceneDrawing::Placement::Placement(const SceneDrawing& drawing, const Transform& world, const Vector3d& center)
    // Composed in double: the large numbers of far-away places cancel before they become floats.
    : toCamera(drawing.view_ * (world * Eigen::Translation3d(center)).matrix())
    , toClip((drawing.projection_ * toCamera).cast<float>())
    , normalToCamera(toCamera.topLeftCorner<3, 3>().inverse().transpose().cast<float>())
{
}

void SceneDrawing::draw()
{
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glDisable(GL_FRAMEBUFFER_SRGB);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LESS);
    glDepthRange(0, 1);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glClearDepth(1);
    glClear(GL_DEPTH_BUFFER_BIT);
    drawBackground_();
    glEnable(GL_DEPTH_TEST);
    drawMeshes_();
    drawPoints_();
    drawLines_();
    drawBasis_();
    drawPivotMark_();
    glDisable(GL_DEPTH_TEST);
    glBindVertexArray(0);
    glUseProgram(0);
}

void SceneDrawing::drawBackground_()
{
    glDisable(GL_DEPTH_TEST);
    const BackgroundProgram& background = gpu_.programs.background();
    background.program.use();
    ShaderProgram::set(background.top, toFloats(frame_.options.backgroundTop));
    ShaderProgram::set(background.bottom, toFloats(frame_.options.backgroundBottom));
    glBindVertexArray(gpu_.marks.emptyArray().name());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

SceneDrawing::MeshInView::MeshInView(const SceneDrawing& drawing, const SceneContents::MeshItem& mesh)
    : item(&mesh)
    , placement(drawing, mesh.world, mesh.gpu->center)
    , volume(placement.toCamera, drawing.projection_, drawing.frame_.camera.projection())
    , depth(drawing.frame_.camera.depth(mesh.world * mesh.gpu->center))
    // Cut open by the near plane, a solid shows its inside.
    , hidesBacks(mesh.gpu->solid && -placedBox(placement.toCamera, mesh.gpu->box).max().z() >= drawing.range_.nearPlane)
{
}

bool SceneDrawing::MeshInView::shows(const MeshCluster& cluster) const
{
    return volume.mayShow(cluster.box) && !(hidesBacks && volume.facesAway(cluster.box, cluster.normals));
}

std::vector<SceneDrawing::MeshInView> SceneDrawing::meshesInView_() const
{
    std::vector<MeshInView> meshes;
    for (const SceneContents::MeshItem& item : contents_.meshes)
    {
        if (item.gpu->levels.empty())
            continue;
        MeshInView mesh(*this, item);
        if (mesh.volume.mayShow(item.gpu->box))
            meshes.push_back(std::move(mesh));
    }
    // Nearest first, so that what is hidden is not shaded.
    std::sort(meshes.begin(), meshes.end(), [](const MeshInView& a, const MeshInView& b) { return a.depth < b.depth; });
    return meshes;
}

std::vector<MeshDetail> SceneDrawing::plan_(const std::vector<MeshInView>& meshes) const
{
    std::vector<std::vector<std::uint64_t>> visible(meshes.size());
    for (std::size_t i = 0; i < meshes.size(); ++i)
    {
        for (const GpuTriangles& level : meshes[i].item->gpu->levels)
        {
            std::uint64_t& sum = visible[i].emplace_back(0);
            for (const MeshCluster& cluster : level.clusters)
                sum += meshes[i].shows(cluster) ? cluster.triangleCount : 0;
        }
    }
    return planDetail(visible, budget_);
}

void SceneDrawing::drawMeshes_()
{
    const std::vector<MeshInView> meshes = meshesInView_();
    const std::vector<MeshDetail> plan = budget_ == 0 ? std::vector<MeshDetail>(meshes.size()) : plan_(meshes);
    // Lines along edges win against the surface they lie on.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1, 1);
    for (std::size_t i = 0; i < meshes.size(); ++i)
        drawMesh_(meshes[i], plan[i]);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDisable(GL_CULL_FACE);
    glFrontFace(GL_CCW);
}

void SceneDrawing::drawMesh_(const MeshInView& mesh, MeshDetail detail)
{
    const SceneContents::MeshItem& item = *mesh.item;
    const Placement& placement = mesh.placement;
    const GpuTriangles& triangles = item.gpu->levels[detail.level];
    simplified_ |= !(detail == MeshDetail{});

    const unsigned flavor = (item.object->isFlatShaded() ? MeshFlavor::flat : 0) |
                            (item.gpu->hasVertexColors ? MeshFlavor::vertexColors : 0) |
                            (item.gpu->hasFaceColors ? MeshFlavor::faceColors : 0);
    const MeshProgram& program = gpu_.programs.mesh(flavor);
    program.program.use();
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.toCamera, Eigen::Matrix4f(placement.toCamera.cast<float>()));
    ShaderProgram::set(program.normalToCamera, placement.normalToCamera);
    ShaderProgram::set(program.viewRay, viewRay_);
    const bool ownColors = item.gpu->hasVertexColors || item.gpu->hasFaceColors;
    ShaderProgram::set(program.color, ownColors ? Eigen::Vector3f::Ones().eval() : toFloats(item.object->color()));
    ShaderProgram::set(program.highlight, highlightOf(item.selected));
    glFrontFace(placement.toCamera.topLeftCorner<3, 3>().determinant() < 0 ? GL_CW : GL_CCW);
    if (mesh.hidesBacks)
        glEnable(GL_CULL_FACE);
    else
        glDisable(GL_CULL_FACE);
    if (item.gpu->hasFaceColors)
        glBindTexture(GL_TEXTURE_BUFFER, triangles.faceColors.name());
    glBindVertexArray(triangles.array.name());
    drawClusters_(mesh, triangles, program, detail.step);
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

void SceneDrawing::drawLines_()
{
    glEnable(GL_BLEND);
    if (frame_.options.featureEdges && !simplified_)
    {
        for (const auto& item : contents_.meshes)
        {
            const Placement placement(*this, item.world, item.gpu->center);
            drawSegments_(item.gpu->edges, placement, edgeColor, edgeWidth);
        }
    }
    for (const auto& item : contents_.lines)
    {
        const Placement placement(*this, item.world, item.gpu->center);
        drawSegments_(item.gpu->segments, placement, item.selected ? accentColor : toFloats(item.object->color()),
                      item.selected ? selectedLineWidth : lineWidth);
    }
    glDisable(GL_BLEND);
}

void SceneDrawing::drawSegments_(const GpuSegments& segments, const Placement& placement, const Eigen::Vector3f& color,
                                 float width)
{
    if (segments.count == 0)
        return;
    const LineProgram& program = gpu_.programs.lines();
    program.program.use();
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.halfViewport, Eigen::Vector2f(frame_.size.width / 2.0F, frame_.size.height / 2.0F));
    ShaderProgram::set(program.halfWidth, width * frame_.options.scale / 2);
    ShaderProgram::set(program.towardsViewer, 0.0F);
    ShaderProgram::set(program.color, color);
    glBindVertexArray(gpu_.marks.emptyArray().name());
    segments.draw();
}

void SceneDrawing::drawPoints_()
{
    glEnable(GL_PROGRAM_POINT_SIZE);
    for (const auto& item : contents_.points)
        drawPointItem_(item);
    glDisable(GL_PROGRAM_POINT_SIZE);
}

void SceneDrawing::drawPointItem_(const SceneContents::PointsItem& item)
{
    const GpuPoints& points = *item.gpu;
    const Placement placement(*this, item.world, points.center);
    if (points.count == 0 ||
        !ViewVolume(placement.toCamera, projection_, frame_.camera.projection()).mayShow(points.box))
        return;
    const PointProgram& program = gpu_.programs.points((points.hasNormals ? PointFlavor::normals : 0) |
                                                       (points.hasColors ? PointFlavor::vertexColors : 0));
    program.program.use();
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.normalToCamera, placement.normalToCamera);
    ShaderProgram::set(program.size, pointSize * frame_.options.scale);
    ShaderProgram::set(program.color,
                       points.hasColors ? Eigen::Vector3f::Ones().eval() : toFloats(item.object->color()));
    ShaderProgram::set(program.highlight, highlightOf(item.selected));
    const std::uint64_t step = budget_ == 0 ? 1 : contents_.pointCount / budget_ + 1;
    simplified_ |= step > 1;
    points.draw(static_cast<std::uint32_t>(std::min<std::uint64_t>(step, points.count)));
}

void SceneDrawing::drawBasis_()
{
    if (!showsBasis_())
        return;
    Transform grown = Transform::Identity();
    grown.linear() *= basisLength_();
    glEnable(GL_BLEND);
    for (int axis = 0; axis < 3; ++axis)
    {
        const GpuLines& arrow = gpu_.marks.arrow(axis);
        drawSegments_(arrow.segments, Placement(*this, grown, arrow.center), axisColor(axis), basisWidth);
    }
    glDisable(GL_BLEND);
}

void SceneDrawing::drawPivotMark_()
{
    if (!frame_.pivotMark)
        return;
    const PointProgram& program = gpu_.programs.points(0);
    program.program.use();
    const Placement placement(*this, Transform::Identity(), *frame_.pivotMark);
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.highlight, Eigen::Vector4f::Zero().eval());
    // Shown through what is in front of it, and not to be found as a point under the cursor.
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_PROGRAM_POINT_SIZE);
    for (const auto& [size, color] : {std::pair(pivotSize, edgeColor), std::pair(pivotSize - 3, pivotColor)})
    {
        ShaderProgram::set(program.size, size * frame_.options.scale);
        ShaderProgram::set(program.color, color);
        gpu_.marks.dot().draw(1);
    }
    glDisable(GL_PROGRAM_POINT_SIZE);
}

} // namespace VX
