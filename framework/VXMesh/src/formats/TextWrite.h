#pragma once

#include "formats/FileWriter.h"

#include <VXMesh/Geometry.h>

#include <string>

namespace VX
{

/// Appends the three numbers of a vector, a blank before each.
template <typename Vector>
void appendVector(std::string& text, const Vector& vector)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        text += ' ';
        appendNumber(text, vector[axis]);
    }
}

/// Appends a point in scene coordinates, in single precision where that is enough.
inline void appendPoint(std::string& text, const Vector3d& point, bool isPrecise)
{
    if (isPrecise)
        appendVector(text, point);
    else
        appendVector(text, Vector3f(point.cast<float>()));
}

} // namespace VX
