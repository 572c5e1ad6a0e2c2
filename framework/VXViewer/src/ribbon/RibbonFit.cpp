#include "RibbonFit.h"

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
    return forms;
}

} // namespace VX
