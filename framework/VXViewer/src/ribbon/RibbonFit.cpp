#include "RibbonFit.h"

#include <algorithm>

namespace VX
{

std::vector<RibbonGroupForm> fitRibbonGroups(const std::vector<RibbonGroupWidths>& groups, float available)
{
    std::vector<RibbonGroupForm> forms(groups.size(), RibbonGroupForm::Full);
    float total = 0;
    for (const RibbonGroupWidths& widths : groups)
        total += widths.front();
    for (std::size_t step = 1; step < RibbonGroupWidths().size(); ++step)
    {
        for (std::size_t i = groups.size(); i-- > 0 && total > available;)
        {
            const float saved = groups[i].at(static_cast<std::size_t>(forms[i])) - groups[i].at(step);
            if (saved <= 0)
                continue;
            forms[i] = static_cast<RibbonGroupForm>(step);
            total -= saved;
        }
    }
    // A group that gave much leaves room for others to take back what they gave.
    for (std::size_t i = 0; i < groups.size(); ++i)
    {
        const float room = available - total + groups[i].at(static_cast<std::size_t>(forms[i]));
        const auto fitting = std::ranges::find_if(groups[i], [&](float width) { return width <= room; });
        const auto form = static_cast<RibbonGroupForm>(fitting - groups[i].begin());
        if (form >= forms[i])
            continue;
        total += *fitting - groups[i].at(static_cast<std::size_t>(forms[i]));
        forms[i] = form;
    }
    return forms;
}

} // namespace VX
