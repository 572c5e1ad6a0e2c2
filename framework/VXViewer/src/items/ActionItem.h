#pragma once

#include <VXViewer/RibbonMenuItem.h>

#include <functional>
#include <string>
#include <utility>

namespace VX
{

/// What a command or a switch does; all but `press` may be empty.
struct ItemActions
{
    std::function<void()> press;
    std::function<std::string()> unavailableReason = {}; ///< asked in each frame
    std::function<bool()> isActive = {};                 ///< asked in each frame
};

/// An item without a window of its own.
/// @threads the UI thread
class ActionItem : public RibbonMenuItem
{
public:
    ActionItem(std::string name, ItemActions actions)
        : RibbonMenuItem(std::move(name))
        , actions_(std::move(actions))
    {
    }

    void press() override { actions_.press(); }

    [[nodiscard]] std::string unavailableReason() const override
    {
        return actions_.unavailableReason ? actions_.unavailableReason() : std::string();
    }

    [[nodiscard]] bool isActive() const override { return actions_.isActive && actions_.isActive(); }

private:
    ItemActions actions_;
};

} // namespace VX
