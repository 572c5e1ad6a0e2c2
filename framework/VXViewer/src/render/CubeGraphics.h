#pragma once

#include "render/GlObjects.h"
#include "render/ShaderProgram.h"

#include <VXViewer/Camera.h>

#include <array>
#include <optional>
#include <string>

namespace VX
{

/// The view cube on the graphics: its faces in nine parts each with their labels, and the axes beside it.
/// @threads the UI thread, with the context current
class CubeGraphics
{
public:
    /// @param labels  in the order +x, -x, +y, -y, +z, -z
    /// @param labelPixels  the side of a face's label picture
    CubeGraphics(const std::array<std::string, 6>& labels, int labelPixels);

    [[nodiscard]] int labelPixels() const { return labelPixels_; }

    /// Draws into the bound framebuffer, in the square at `corner` (OpenGL's window coordinates) of `side` pixels.
    /// @param hovered  the part to highlight
    void draw(const Camera& camera, const std::array<int, 2>& corner, int side,
              const std::optional<Eigen::Vector3i>& hovered) const;

private:
    int labelPixels_;
    ShaderProgram program_;
    Gl::VertexArray array_;
    Gl::Buffer vertices_;
    Gl::Texture labels_;
    int vertexCount_ = 0;
};

/// Half the side of the cube as a part of half the side of its area; leaves room for its corners and the axes.
inline constexpr double cubeHalfSide = 0.42;

/// A face's middle reaches so far from its centre, as a part of half its side; beyond are edges and corners.
inline constexpr double cubeMiddle = 0.62;

} // namespace VX
