#pragma once

#include "RibbonButtons.h"
#include "RibbonFit.h"
#include "RibbonLayout.h"

namespace VX
{

/// The groups of a tab, side by side, as much of each as there is room for.
/// @threads the UI thread, within a frame
class RibbonBody
{
public:
    /// In units.
    static constexpr float height = 76;

    explicit RibbonBody(RibbonButtons& buttons)
        : buttons_(buttons)
    {
    }

    /// Draws into the current window, from its upper left corner on.
    void draw(const RibbonLayoutTab& tab);

private:
    [[nodiscard]] float width_(const RibbonLayoutGroup& group, RibbonGroupForm form) const;
    void drawGroup_(const RibbonLayoutGroup& group, RibbonGroupForm form, ImVec2 origin, float width);
    void drawButtons_(const RibbonLayoutGroup& group, RibbonGroupForm form, ImVec2 origin);
    void drawDropDown_(const RibbonLayoutGroup& group, ImVec2 origin, float width);

    RibbonButtons& buttons_;
};

} // namespace VX
