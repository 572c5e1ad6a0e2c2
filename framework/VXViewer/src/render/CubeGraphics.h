#pragma once

#include "render/GpuGeometry.h"
#include "render/ScenePrograms.h"

#include <VXViewer/Camera.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// The view cube on the graphics: its faces in nine parts each with their labels, and the axes along its edges.
/// @threads the UI thread, with the context current
class CubeGraphics
{
public:
    /// @param labels  in the order +x, -x, +y, -y, +z, -z
    /// @param labelPixels  the side of a face's label picture
    CubeGraphics(const std::array<std::string, 6>& labels, int labelPixels);

    [[nodiscard]] int labelPixels() const { return labelPixels_; }

    /// Draws into the bound framebuffer, in the square at `corner` (OpenGL's window coordinates) of `side` pixels.
    /// @param scale    pixels in a unit of design
    /// @param hovered  the part to highlight
    void draw(const Camera& camera, const std::array<int, 2>& corner, int side, float scale,
              const std::optional<Eigen::Vector3i>& hovered) const;

private:
    void drawFaces_(const Eigen::Matrix3f& rotation, const std::optional<Eigen::Vector3i>& hovered) const;
    void drawLines_(const GpuLines& lines, const Eigen::Matrix3f& rotation, int side, const Vector3f& color,
                    float width) const;

    int labelPixels_;
    ShaderProgram program_;
    Gl::VertexArray array_;
    Gl::Buffer vertices_;
    Gl::Texture labels_;
    int vertexCount_ = 0;
    LineProgram lineProgram_;
    Gl::VertexArray noVertices_;
    GpuLines edges_;
    std::vector<GpuLines> axes_;
};

/// Half the side of the cube as a part of half the side of its area; leaves room for its corners and the axes.
inline constexpr double cubeHalfSide = 0.46;

/// A face's middle reaches so far from its centre, as a part of half its side; beyond are edges and corners.
inline constexpr double cubeMiddle = 0.66;

} // namespace VX
