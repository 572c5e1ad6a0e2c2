#pragma once

#include <VXMesh/Geometry.h>

namespace VX
{

/// What is selected takes on some of this.
inline const Vector3f accentColor(1.0F, 0.55F, 0.12F);

inline Vector3f toFloats(Color color)
{
    return Vector3f(color.r, color.g, color.b) / 255.0F;
}

inline float opacityOf(Color color)
{
    return static_cast<float>(color.a) / 255.0F;
}

/// For the shaders, which mix colours as squares: what to mix in, and how much of it.
inline Eigen::Vector4f highlightOf(bool selected)
{
    constexpr float strength = 0.55F;
    if (!selected)
        return Eigen::Vector4f::Zero();
    Eigen::Vector4f result;
    result << accentColor.cwiseProduct(accentColor), strength;
    return result;
}

} // namespace VX
