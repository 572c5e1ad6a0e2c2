#pragma once

#include "render/GpuGeometry.h"

#include <array>
#include <memory>

namespace VX
{

/// Red, green and blue for the x, y and z axes, wherever they are drawn; 0 to 1.
[[nodiscard]] Vector3f axisColor(int axis);

/// The geometry of what is drawn beside the user's objects, made when it is needed first.
class SceneMarks
{
public:
    /// An arrow of length 1 from the origin along `axis`.
    const GpuLines& arrow(int axis);

    /// A point at the origin.
    const GpuPoints& dot();

    /// For shaders that make their vertices from numbers alone.
    const Gl::VertexArray& emptyArray();

private:
    std::array<std::unique_ptr<GpuLines>, 3> arrows_;
    std::unique_ptr<GpuPoints> dot_;
    Gl::VertexArray emptyArray_;
};

} // namespace VX
