#include "render/CubeGraphics.h"

#include "render/CubeLabels.h"
#include "render/SceneMarks.h"

#include <vector>

namespace VX
{

namespace
{

constexpr std::string_view vertexSource = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec3 part;
layout(location = 3) in vec3 label;
uniform vec3 color;
uniform mat3 rotation;
uniform float halfSide;
uniform vec3 hovered;
out vec3 labelPlace;
out vec3 shade;
void main()
{
    vec3 turned = rotation * position * halfSide;
    gl_Position = vec4(turned.xy, -turned.z * 0.5, 1.0);
    labelPlace = label;
    float light = 0.60 + 0.40 * max(dot(rotation * normal, vec3(-0.303, 0.505, 0.808)), 0.0);
    vec3 base = part == hovered ? vec3(0.30, 0.55, 1.0) : color;
    shade = base * light;
}
)";

constexpr std::string_view fragmentSource = R"(
in vec3 labelPlace;
in vec3 shade;
uniform sampler2DArray labels;
out vec4 result;
void main()
{
    // One mipmap finer than it would be by itself: letters this small are better a little rough than blurred.
    float ink = texture(labels, labelPlace, -1.0).r;
    result = vec4(mix(shade, vec3(0.10, 0.12, 0.14), ink), 1.0);
}
)";

struct Vertex
{
    Vector3f position;
    Vector3f normal;
    Vector3f part;
    Vector3f label; ///< u, v and the layer
};

const Vector3f faceColor(0.82F, 0.84F, 0.87F);
const Vector3f edgeColor(0.30F, 0.33F, 0.37F);
constexpr float edgeWidth = 1.2F;
constexpr float axisWidth = 2.4F;

/// Right and up of a face as it is read from outside, for the axis and its sign.
std::array<Vector3f, 2> readingDirections(int axis, float sign)
{
    if (axis == 2)
        return {Vector3f(1, 0, 0), Vector3f(0, sign, 0)};
    const Vector3f up(0, 0, 1);
    return {up.cross(Vector3f(Vector3f::Unit(axis) * sign)), up};
}

void addQuad(std::vector<Vertex>& vertices, const std::array<Vertex, 4>& corners)
{
    for (const std::size_t corner : {0U, 1U, 2U, 0U, 2U, 3U})
        vertices.push_back(corners.at(corner));
}

void addFace(std::vector<Vertex>& vertices, int axis, float sign)
{
    const auto middle = static_cast<float>(cubeMiddle);
    const std::array stops{-1.0F, -middle, middle, 1.0F};
    const auto [right, up] = readingDirections(axis, sign);
    const Vector3f normal = Vector3f::Unit(axis) * sign;
    const auto layer = static_cast<float>(2 * axis + (sign > 0 ? 0 : 1));
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            const Vector3f part = normal + right * static_cast<float>(column - 1) + up * static_cast<float>(row - 1);
            const auto vertex = [&](int x, int y)
            {
                const float a = stops.at(static_cast<std::size_t>(x));
                const float b = stops.at(static_cast<std::size_t>(y));
                return Vertex{normal + right * a + up * b, normal, part, Vector3f((a + 1) / 2, (1 - b) / 2, layer)};
            };
            addQuad(vertices, {vertex(column, row), vertex(column + 1, row), vertex(column + 1, row + 1),
                               vertex(column, row + 1)});
        }
    }
}

/// The twelve edges.
Lines cubeEdges()
{
    Lines lines;
    for (std::uint32_t corner = 0; corner < 8; ++corner)
    {
        const auto sign = [&](std::uint32_t bit) { return (corner & bit) != 0 ? 1.0F : -1.0F; };
        lines.points.emplace_back(sign(1), sign(2), sign(4));
        for (const std::uint32_t bit : {1U, 2U, 4U})
        {
            if ((corner & bit) == 0)
                lines.segments.emplace_back(corner, corner | bit);
        }
    }
    return lines;
}

/// An axis from the corner of the cube where all coordinates are least, a little outside of its edge.
Lines cubeAxis(int axis)
{
    constexpr float start = -1.14F;
    constexpr float end = 1.42F;
    Lines lines;
    lines.points.assign(2, Vector3f::Constant(start));
    lines.points[1][axis] = end;
    lines.segments.emplace_back(0, 1);
    return lines;
}

std::vector<Vertex> cubeVertices()
{
    std::vector<Vertex> vertices;
    for (int axis = 0; axis < 3; ++axis)
    {
        addFace(vertices, axis, 1);
        addFace(vertices, axis, -1);
    }
    return vertices;
}

} // namespace

CubeGraphics::CubeGraphics(const std::array<std::string, 6>& labels, int labelPixels)
    : labelPixels_(labelPixels)
    , program_("", vertexSource, fragmentSource)
    , array_(Gl::VertexArray::create())
    , vertices_(Gl::Buffer::create())
    , labels_(makeCubeLabels(labels, labelPixels))
    , noVertices_(Gl::VertexArray::create())
    , edges_(cubeEdges())
{
    for (int axis = 0; axis < 3; ++axis)
        axes_.emplace_back(cubeAxis(axis));
    const auto vertices = cubeVertices();
    vertexCount_ = static_cast<int>(vertices.size());
    glBindVertexArray(array_.name());
    glBindBuffer(GL_ARRAY_BUFFER, vertices_.name());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)), vertices.data(),
                 GL_STATIC_DRAW);
    for (GLuint slot = 0; slot < sizeof(Vertex) / sizeof(Vector3f); ++slot)
    {
        glEnableVertexAttribArray(slot);
        glVertexAttribPointer(slot, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<const void*>(slot * sizeof(Vector3f)));
    }
    glBindVertexArray(0);
}

void CubeGraphics::draw(const Camera& camera, const std::array<int, 2>& corner, int side, float scale,
                        const std::optional<Eigen::Vector3i>& hovered) const
{
    const Eigen::Matrix3f rotation = camera.rotation().toRotationMatrix().cast<float>();
    glViewport(corner[0], corner[1], side, side);
    glEnable(GL_SCISSOR_TEST);
    glScissor(corner[0], corner[1], side, side);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
    glDisable(GL_BLEND);
    drawFaces_(rotation, hovered);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glBindVertexArray(noVertices_.name());
    lineProgram_.program.use();
    drawLines_(edges_, rotation, side, edgeColor, edgeWidth * scale);
    for (int axis = 0; axis < 3; ++axis)
        drawLines_(axes_[static_cast<std::size_t>(axis)], rotation, side, axisColor(axis), axisWidth * scale);
    glBindVertexArray(0);
    glUseProgram(0);
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_SCISSOR_TEST);
}

void CubeGraphics::drawFaces_(const Eigen::Matrix3f& rotation, const std::optional<Eigen::Vector3i>& hovered) const
{
    program_.use();
    ShaderProgram::set(program_.location("rotation"), rotation);
    ShaderProgram::set(program_.location("halfSide"), static_cast<float>(cubeHalfSide));
    ShaderProgram::set(program_.location("color"), faceColor);
    ShaderProgram::set(program_.location("hovered"),
                       hovered ? Vector3f(hovered->cast<float>()) : Vector3f(Vector3f::Zero()));
    ShaderProgram::set(program_.location("labels"), 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_ARRAY, labels_.name());
    glBindVertexArray(array_.name());
    glDrawArrays(GL_TRIANGLES, 0, vertexCount_);
    glBindTexture(GL_TEXTURE_2D_ARRAY, 0);
}

void CubeGraphics::drawLines_(const GpuLines& lines, const Eigen::Matrix3f& rotation, int side, const Vector3f& color,
                              float width) const
{
    Eigen::Matrix4f toClip = Eigen::Matrix4f::Identity();
    toClip.topLeftCorner<3, 3>() = rotation * static_cast<float>(cubeHalfSide);
    toClip.topRightCorner<3, 1>() = toClip.topLeftCorner<3, 3>() * lines.center.cast<float>();
    toClip.row(2) *= -0.5F;
    ShaderProgram::set(lineProgram_.toClip, toClip);
    ShaderProgram::set(lineProgram_.halfViewport, Eigen::Vector2f::Constant(static_cast<float>(side) / 2).eval());
    ShaderProgram::set(lineProgram_.halfWidth, width / 2);
    ShaderProgram::set(lineProgram_.towardsViewer, 0.01F);
    ShaderProgram::set(lineProgram_.color, color);
    ShaderProgram::set(lineProgram_.opacity, 1.0F);
    lines.segments.draw();
}

} // namespace VX
