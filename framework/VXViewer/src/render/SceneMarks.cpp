#include "render/SceneMarks.h"

namespace VX
{

namespace
{

Lines makeArrow(int axis)
{
    constexpr float headLength = 0.08F;
    constexpr float headWidth = 0.03F;
    const Vector3f along = Vector3f::Unit(axis);
    Lines lines;
    lines.points = {Vector3f::Zero(), along};
    lines.segments = {{0, 1}};
    for (const int side : {1, 2})
    {
        for (const float sign : {-1.0F, 1.0F})
        {
            const Vector3f aside = Vector3f::Unit((axis + side) % 3) * sign;
            lines.segments.emplace_back(1, static_cast<std::uint32_t>(lines.points.size()));
            lines.points.emplace_back(along * (1 - headLength) + aside * headWidth);
        }
    }
    return lines;
}

} // namespace

Vector3f axisColor(int axis)
{
    static const std::array<Vector3f, 3> colors{Vector3f(0.90F, 0.30F, 0.30F), Vector3f(0.42F, 0.76F, 0.36F),
                                                Vector3f(0.32F, 0.55F, 0.95F)};
    return colors.at(static_cast<std::size_t>(axis));
}

const GpuLines& SceneMarks::arrow(int axis)
{
    auto& arrow = arrows_.at(static_cast<std::size_t>(axis));
    if (!arrow)
        arrow = std::make_unique<GpuLines>(makeArrow(axis));
    return *arrow;
}

const GpuPoints& SceneMarks::dot()
{
    if (!dot_)
    {
        PointCloud cloud;
        cloud.points = {Vector3f::Zero()};
        dot_ = std::make_unique<GpuPoints>(cloud);
    }
    return *dot_;
}

const Gl::VertexArray& SceneMarks::emptyArray()
{
    if (!emptyArray_)
        emptyArray_ = Gl::VertexArray::create();
    return emptyArray_;
}

} // namespace VX
