#pragma once

#include "RibbonButtons.h"
#include "RibbonTabs.h"

#include <functional>

namespace VX
{

class RibbonNotifier;
class RibbonSearch;

/// The row at the top of the ribbon: quick access at the left, then the tabs; at the right the command search, the
/// program's status and account, the list of notifications and the button that collapses the ribbon.
/// @threads the UI thread, within a frame
class RibbonHeader
{
public:
    /// In units.
    static constexpr float height = 32;

    /// What the user did in the header.
    struct Result
    {
        const RibbonLayoutTab* pressed = nullptr;
        bool doubleClicked = false; ///< the tab was, which collapses or expands the ribbon
        bool toggleCollapsed = false;
    };

    /// What the program draws from the cursor on.
    struct Part
    {
        float width = 0; ///< in pixels; 0: nothing is drawn
        std::function<void()> draw;
    };

    struct Parts
    {
        RibbonButtons& buttons;
        RibbonSearch& search;
        RibbonNotifier& notifier;
        std::function<void()> drawQuickAccess; ///< from the cursor on; leaves it behind what it drew
        Part status;
        Part account;
    };

    /// Draws into the current window. @param isBodyShown  the open tab is marked only then
    [[nodiscard]] static Result draw(const RibbonTabs& tabs, const Parts& parts, bool isCollapsed, bool isBodyShown);
};

} // namespace VX
