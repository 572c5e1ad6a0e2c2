#pragma once

#include <VXMesh/Object.h>

namespace VX
{

/// An object with geometry to draw in one colour where the geometry has none of its own.
class VXMESH_API VisualObject : public Object
{
public:
    [[nodiscard]] Color color() const { return color_; }

    void setColor(Color color);

private:
    Color color_{200, 204, 210, 255};
};

} // namespace VX
