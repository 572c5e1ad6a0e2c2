#include "render/DetailPlan.h"

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

MeshDetail detailFor(const std::vector<std::uint64_t>& levels, double share)
{
    const auto fitting = std::find_if(levels.begin(), levels.end(), [share](std::uint64_t triangles)
                                      { return static_cast<double>(triangles) <= share; });
    if (fitting != levels.end())
        return {static_cast<std::size_t>(fitting - levels.begin()), 1};
    if (levels.size() > 1)
        return {levels.size() - 1, 1};
    return {0, static_cast<std::uint32_t>(std::ceil(static_cast<double>(levels.front()) / std::max(share, 1.0)))};
}

} // namespace

std::vector<MeshDetail> planDetail(const std::vector<std::vector<std::uint64_t>>& visible, std::uint64_t budget)
{
    std::uint64_t total = 0;
    for (const auto& levels : visible)
        total += levels.front();
    std::vector<MeshDetail> plan(visible.size());
    if (total <= budget)
        return plan;
    const double part = static_cast<double>(budget) / static_cast<double>(total);
    std::transform(visible.begin(), visible.end(), plan.begin(), [part](const auto& levels)
                   { return detailFor(levels, part * static_cast<double>(levels.front())); });
    return plan;
}

} // namespace VX
