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
layout(location = 4) in vec3 color;
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
    float light = 0.62 + 0.38 * max((rotation * normal).z, 0.0);
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
    float ink = labelPlace.z < 0.0 ? 0.0 : texture(labels, labelPlace).r;
    result = vec4(mix(shade, vec3(0.10, 0.12, 0.14), ink), 1.0);
}
)";

struct Vertex
{
    Vector3f position;
    Vector3f normal;
    Vector3f part;
    Vector3f label; ///< u, v, and the layer or -1
    Vector3f color;
};

const Vector3f faceColor(0.86F, 0.87F, 0.89F);
const Vector3f seamColor(0.74F, 0.76F, 0.79F);
/// Equal to no part.
const Vector3f noPart(9, 9, 9);

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
                return Vertex{normal + right * a + up * b, normal, part, Vector3f((a + 1) / 2, (1 - b) / 2, layer),
                              row == 1 && column == 1 ? faceColor : seamColor};
            };
            addQuad(vertices, {vertex(column, row), vertex(column + 1, row), vertex(column + 1, row + 1),
                               vertex(column, row + 1)});
        }
    }
}

/// A thin square bar along an edge of the cube, a little outside of it.
void addAxis(std::vector<Vertex>& vertices, int axis)
{
    constexpr float thickness = 0.05F;
    constexpr float start = -1.12F;
    constexpr float end = 1.45F;
    const Vector3f along = Vector3f::Unit(axis);
    const Vector3f a = Vector3f::Unit((axis + 1) % 3) * thickness;
    const Vector3f b = Vector3f::Unit((axis + 2) % 3) * thickness;
    const Vector3f from = Vector3f::Constant(start);
    const Vector3f to = from + along * (end - start);
    const std::array<std::array<Vector3f, 2>, 4> sides{
        {{a, b}, {b, Vector3f(-a)}, {Vector3f(-a), Vector3f(-b)}, {Vector3f(-b), a}}};
    for (const auto& [normal, next] : sides)
    {
        const auto vertex = [&, n = normal](const Vector3f& place, const Vector3f& aside)
        { return Vertex{place + n + aside, n.normalized(), noPart, Vector3f(0, 0, -1), axisColor(axis)}; };
        const Vector3f aside = next;
        addQuad(vertices, {vertex(from, -aside), vertex(from, aside), vertex(to, aside), vertex(to, -aside)});
    }
}

std::vector<Vertex> cubeVertices()
{
    std::vector<Vertex> vertices;
    for (int axis = 0; axis < 3; ++axis)
    {
        addFace(vertices, axis, 1);
        addFace(vertices, axis, -1);
        addAxis(vertices, axis);
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
{
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

void CubeGraphics::draw(const Camera& camera, const std::array<int, 2>& corner, int side,
                        const std::optional<Eigen::Vector3i>& hovered) const
{
    glViewport(corner[0], corner[1], side, side);
    glEnable(GL_SCISSOR_TEST);
    glScissor(corner[0], corner[1], side, side);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
    glDisable(GL_BLEND);
    program_.use();
    ShaderProgram::set(program_.location("rotation"),
                       Eigen::Matrix3f(camera.rotation().toRotationMatrix().cast<float>()));
    ShaderProgram::set(program_.location("halfSide"), static_cast<float>(cubeHalfSide));
    ShaderProgram::set(program_.location("hovered"),
                       hovered ? Vector3f(hovered->cast<float>()) : Vector3f(Vector3f::Zero()));
    ShaderProgram::set(program_.location("labels"), 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_ARRAY, labels_.name());
    glBindVertexArray(array_.name());
    glDrawArrays(GL_TRIANGLES, 0, vertexCount_);
    glBindVertexArray(0);
    glBindTexture(GL_TEXTURE_2D_ARRAY, 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_SCISSOR_TEST);
}

} // namespace VX
