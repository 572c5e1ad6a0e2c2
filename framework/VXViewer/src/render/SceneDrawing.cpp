#include "render/SceneDrawing.h"

#include "render/SceneColors.h"

#include <Eigen/LU>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

const Eigen::Vector3f edgeColor(0.07F, 0.08F, 0.10F);
constexpr float edgeWidth = 1.1F;
constexpr float lineWidth = 1.6F;
constexpr float selectedLineWidth = 2.6F;
constexpr float basisWidth = 2;
constexpr float pointSize = 3;
constexpr float pivotSize = 10;
const Eigen::Vector3f pivotColor(0.95F, 0.95F, 0.95F);

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
    findMeshes_();
}

bool SceneDrawing::showsBasis_() const
{
    return !(frame_.options.globalBasis & frame_.options.viewport).isEmpty() && !contents_.box.isEmpty();
}

double SceneDrawing::basisLength_() const
{
    return std::max(contents_.box.diagonal().norm() * 0.2, 1e-9);
}

Eigen::Vector2f SceneDrawing::halfViewport_() const
{
    return Eigen::Vector2f(static_cast<float>(frame_.size.width), static_cast<float>(frame_.size.height)) / 2;
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
    // The alpha of what is there already stays right too, for pictures with a transparent background.
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glClearDepth(1);
    glClear(GL_DEPTH_BUFFER_BIT);
    drawBackground_();
    glEnable(GL_DEPTH_TEST);
    drawOpaqueMeshes_();
    drawPoints_();
    drawLines_();
    drawBasis_();
    drawTransparentMeshes_();
    drawPivotMark_();
    glDisable(GL_DEPTH_TEST);
    glBindVertexArray(0);
    glUseProgram(0);
}

void SceneDrawing::drawBackground_()
{
    if (frame_.options.transparentBackground)
    {
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    glDisable(GL_DEPTH_TEST);
    const BackgroundProgram& background = gpu_.programs.background();
    background.program.use();
    ShaderProgram::set(background.top, toFloats(frame_.options.backgroundTop));
    ShaderProgram::set(background.bottom, toFloats(frame_.options.backgroundBottom));
    glBindVertexArray(gpu_.marks.emptyArray().name());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

void SceneDrawing::drawLines_()
{
    glEnable(GL_BLEND);
    for (const auto& item : contents_.meshes)
    {
        if (opacityOf(item.object->color()) == 1)
            drawEdges_(item);
    }
    for (const auto& item : contents_.lines)
    {
        const Placement placement(*this, item.world, item.gpu->center);
        drawSegments_(item.gpu->segments, placement, item.selected ? accentColor : toFloats(item.object->color()),
                      item.selected ? selectedLineWidth : lineWidth, opacityOf(item.object->color()));
    }
    glDisable(GL_BLEND);
}

void SceneDrawing::drawEdges_(const SceneContents::MeshItem& item)
{
    if (!frame_.options.featureEdges || simplified_)
        return;
    const Placement placement(*this, item.world, item.gpu->center);
    drawSegments_(item.gpu->edges, placement, edgeColor, edgeWidth, opacityOf(item.object->color()));
}

void SceneDrawing::drawSegments_(const GpuSegments& segments, const Placement& placement, const Eigen::Vector3f& color,
                                 float width, float opacity)
{
    if (segments.count == 0)
        return;
    const LineProgram& program = gpu_.programs.lines();
    program.program.use();
    ShaderProgram::set(program.toClip, placement.toClip);
    ShaderProgram::set(program.halfViewport, halfViewport_());
    ShaderProgram::set(program.halfWidth, width * frame_.options.scale / 2);
    ShaderProgram::set(program.towardsViewer, 0.0F);
    ShaderProgram::set(program.color, color);
    ShaderProgram::set(program.opacity, opacity);
    glBindVertexArray(gpu_.marks.emptyArray().name());
    segments.draw();
}

void SceneDrawing::drawPoints_()
{
    glEnable(GL_PROGRAM_POINT_SIZE);
    glEnable(GL_BLEND);
    for (const auto& item : contents_.points)
        drawPointItem_(item);
    glDisable(GL_BLEND);
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
    ShaderProgram::set(program.opacity, opacityOf(item.object->color()));
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
        drawSegments_(arrow.segments, Placement(*this, grown, arrow.center), axisColor(axis), basisWidth, 1);
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
    ShaderProgram::set(program.opacity, 1.0F);
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
