#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/RibbonMenuItem.h>

#include <utility>

namespace VX
{

RibbonMenuItem::RibbonMenuItem(std::string name)
    : name_(std::move(name))
{
}

RibbonMenuItem::~RibbonMenuItem() = default;

std::string RibbonMenuItem::unavailableReason() const
{
    return {};
}

bool RibbonMenuItem::isActive() const
{
    return false;
}

bool RibbonMenuItem::isTool() const
{
    return false;
}

void RibbonMenuItem::deactivate()
{
    if (isActive())
        press();
}

void RibbonMenuItem::drawPanel() {}

void ItemEnabledPerViewport::setEnabledViewports(ViewportMask viewports)
{
    enabled_ = viewports;
}

void ItemEnabledPerViewport::press()
{
    setEnabledViewports(enabledViewports().isEmpty() ? ViewportMask::all() : ViewportMask());
}

bool ItemEnabledPerViewport::isActive() const
{
    return !enabledViewports().isEmpty();
}

} // namespace VX
