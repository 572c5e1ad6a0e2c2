#pragma once

#include <VXMesh/Object.h>

namespace VX
{

/// An object with geometry to draw in one colour where the geometry has none of its own.
class VXMESH_API VisualObject : public Object
{
public:
    /// A light grey: what an object has until it gets a colour.
    [[nodiscard]] static constexpr Color defaultColor() { return {200, 204, 210, 255}; }

    [[nodiscard]] Color color() const { return color_; }

    void setColor(Color color);

private:
    Color color_ = defaultColor();
};

} // namespace VX
