#pragma once

#include <VXMesh/ViewportMask.h>
#include <VXViewer/RibbonMenuItem.h>

namespace VX
{

/// A switch that is on in some viewports and off in others.
/// @threads the UI thread
class VXVIEWER_API ItemEnabledPerViewport : public RibbonMenuItem
{
public:
    using RibbonMenuItem::RibbonMenuItem;

    [[nodiscard]] ViewportMask enabledViewports() const { return enabled_; }

    /// A derived item applies the change and calls this one.
    virtual void setEnabledViewports(ViewportMask viewports);

    /// Off where it is on anywhere, else on everywhere.
    void press() override;

    [[nodiscard]] bool isActive() const override;

private:
    ViewportMask enabled_;
};

} // namespace VX
