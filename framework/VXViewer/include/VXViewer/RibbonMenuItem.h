#pragma once

#include <VXViewer/Export.h>

#include <string>

namespace VX
{

/// Something that the user can do: a command, a switch or a tool. It is found by its name; how it looks and where it
/// stands says the schema of the ribbon.
/// @threads the UI thread
class VXVIEWER_API RibbonMenuItem
{
public:
    explicit RibbonMenuItem(std::string name);
    virtual ~RibbonMenuItem();

    RibbonMenuItem(const RibbonMenuItem&) = delete;
    RibbonMenuItem& operator=(const RibbonMenuItem&) = delete;

    /// Never changes; not shown to the user.
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Runs it; a tool or a switch goes on or off. Called only while `unavailableReason` is empty.
    virtual void press() = 0;

    /// Why it cannot be pressed now, a sentence in the user's language; empty: it can be.
    [[nodiscard]] virtual std::string unavailableReason() const;

    /// Drawn as pressed in.
    [[nodiscard]] virtual bool isActive() const;

    /// While it is active it is listed in the window, where it can be ended; Escape ends it too.
    [[nodiscard]] virtual bool isTool() const;

    /// Ends it; does nothing while it is not active. Here, it presses an active item.
    virtual void deactivate();

    /// Draws the window of a tool; called in each frame while it is active.
    virtual void drawPanel();

private:
    std::string name_;
};

} // namespace VX
